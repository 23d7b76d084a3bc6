#include "KyWidgetExamples.h"

#include <KyCommandLinkDialog.h>
#include <KyCommonInputNameDialog.h>
#include <KyEditorCommon.h>
#include <KyEditorUserConfig.h>
#include <KyMessageBoxWithCheckBox.h>
#include <KyStage.h>

#include <QDockWidget>

namespace Kyte {

bool StageNameChecker::validateText(const QString &text)
{
    setErrorMessage(tr("A name is missing."));
    return !text.isEmpty();
}

bool KyWidgetExamples::mayClose()
{
    switch (KyCommandLinkDialog::show(this, tr("Editor"), tr("The stage has unsaved changes."),
                                      tr("What do you want to do with them?"), tr("&Save"),
                                      tr("The stage takes the place of the saved one."), tr("&Discard"),
                                      tr("The changes are lost."))) {
    case 1:
        return save();
    case 2:
        return true;
    default:
        return false; // cancelled
    }
}

bool KyWidgetExamples::save()
{
    saved = true;
    return true;
}

void KyWidgetExamples::tellSaved()
{
    KyMessageBoxWithCheckBox box(QMessageBox::Information, tr("Editor"), tr("The stage was saved."),
                                 QMessageBox::Ok, this);
    box.setSettings(KyEditorUserConfig::settings());
    box.exec(); // 1024 at once where the user said so before
}

void KyWidgetExamples::askName(const KyStage *stage)
{
    KyCommonInputNameDialog dialog(this, tr("Rename"), tr("Name of the stage"), stage->name(),
                                   new StageNameChecker, true);
    if (dialog.exec() == QDialog::Accepted)
        rename(dialog.text());
}

void KyWidgetExamples::rename(const QString &newName)
{
    name = newName;
}

void KyWidgetExamples::storeDocks(const QList<QDockWidget *> &docks)
{
    for (QDockWidget *dock : docks)
        KyEditorCommon::storeDockWidgetGeometry(dock, this);
    KyEditorCommon::storeTabifiedSettings("main", this);
}

void KyWidgetExamples::restoreDocks(const QList<QDockWidget *> &docks,
                                    const QList<QDockWidget *> &docksThatAreNotStacked)
{
    for (QDockWidget *dock : docks)
        KyEditorCommon::restoreDockWidgetGeometry(dock, this);
    KyEditorCommon::restoreTabifiedSettings("main", this);
    KyEditorCommon::reorderDockWidgets(docksThatAreNotStacked, this);
}

} // namespace Kyte
