#pragma once

#include <KyInputNameChecker.h>

#include <QMainWindow>
#include <QString>

class QDockWidget;

namespace Kyte {

class KyStage;

class StageNameChecker : public KyInputNameChecker
{
    Q_OBJECT

public:
    bool validateText(const QString &text) override;
};

/** What the examples of dialogs and docks have around them in an application's window. */
class KyWidgetExamples : public QMainWindow
{
    Q_OBJECT

public:
    bool mayClose();
    void tellSaved();
    void askName(const KyStage *stage);
    void storeDocks(const QList<QDockWidget *> &docks);
    void restoreDocks(const QList<QDockWidget *> &docks, const QList<QDockWidget *> &docksThatAreNotStacked);

    bool saved = false;
    QString name;

private:
    bool save();
    void rename(const QString &newName);
};

} // namespace Kyte
