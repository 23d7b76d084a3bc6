#include "Exhibits.h"

#include <KyColorWidget.h>
#include <KyCommandLinkButton.h>
#include <KyCommandLinkDialog.h>
#include <KyCommonInputNameDialog.h>
#include <KyEditorDrawingLayerWidget.h>
#include <KyInputNameChecker.h>
#include <KyMenuAction.h>
#include <KyMessageBoxWithCheckBox.h>
#include <KyReadOnlyLineEdit.h>
#include <KyWaitingImageWidget.h>

#include <QCoreApplication>
#include <QEnterEvent>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPainter>
#include <QPushButton>

using namespace Kyte;

static const QString LONG_TEXT = QStringLiteral(
    "The stage \"Foyer\" was changed by another user while it was open here. Its screens, events and "
    "captions may "
    "differ from what you see, and what you save now takes the place of what the other user has saved.");

/** Finds every name in use but "Foyer 2". */
class Checker : public KyInputNameChecker
{
    Q_OBJECT

public:
    Checker()
        : KyInputNameChecker(nullptr)
    {
        setErrorMessage(
            QStringLiteral("There is a stage with this name already. Please enter another name."));
    }
    bool validateText(const QString &text) override
    {
        return text == QLatin1String("Foyer 2");
    }
};

static QWidget *commandDialog()
{
    auto *dialog = new KyCommandLinkDialog;
    dialog->setWindowTitle(QStringLiteral("Editor"));
    dialog->setMainMessage(QStringLiteral("The stage \"Foyer\" has unsaved changes."));
    dialog->setSubMessage(QStringLiteral("What do you want to do with them?"));
    dialog->addButton(QStringLiteral("&Save"), QStringLiteral("The stage takes the place of the saved one."));
    dialog->addButton(QStringLiteral("Save &as a copy"),
                      QStringLiteral("The saved stage stays as it is, and the copy gets a name of its own."));
    dialog->addButton(QStringLiteral("&Discard"), QStringLiteral("The changes are lost."));
    dialog->setActiveButton(1);
    return dialog;
}

static QWidget *longCommandDialog()
{
    auto *dialog = new KyCommandLinkDialog;
    dialog->setWindowTitle(QStringLiteral("Editor"));
    dialog->setMainMessage(LONG_TEXT);
    dialog->setSubMessage(LONG_TEXT);
    dialog->addButton(QStringLiteral("&Replace"), QString());
    return dialog;
}

static KyMessageBoxWithCheckBox *messageBox(QMessageBox::Icon icon, const QString &text)
{
    auto *box = new KyMessageBoxWithCheckBox(icon, QStringLiteral("Editor"), text,
                                             QMessageBox::Ok | QMessageBox::Cancel);
    box->setDefaultButton(QMessageBox::Ok);
    return box;
}

static QWidget *plainMessageBox()
{
    return messageBox(QMessageBox::NoIcon, QStringLiteral("The stage was saved."));
}

static QWidget *questionBox()
{
    return messageBox(QMessageBox::Question, QStringLiteral("Do you want to upload the stage now?"));
}

static QWidget *longMessageBox()
{
    KyMessageBoxWithCheckBox *box = messageBox(QMessageBox::Warning, LONG_TEXT);
    box->setInformativeText(QStringLiteral("Compare the two before you save."));
    box->setDetailedText(QStringLiteral("Screen 1: moved\nScreen 2: removed\nCaption: text changed"));
    return box;
}

static QWidget *nameDialog()
{
    auto *dialog =
        new KyCommonInputNameDialog(nullptr, QStringLiteral("New stage"), QStringLiteral("Name of the stage"),
                                    QStringLiteral("Foyer"), new Checker, false);
    dialog->findChild<QLineEdit *>()->selectAll();
    return dialog;
}

static QWidget *refusedNameDialog()
{
    QWidget *dialog = nameDialog();
    dialog->findChild<QPushButton *>(QStringLiteral("pushButton_ok"))->click();
    return dialog;
}

static QWidget *emptyNameDialog()
{
    QWidget *dialog = nameDialog();
    auto *edit = dialog->findChild<QLineEdit *>();
    edit->selectAll();
    edit->del();
    return dialog;
}

static KyColorWidget *swatch(const QColor &color, QWidget *parent)
{
    auto *widget = new KyColorWidget(parent);
    widget->setFixedSize(96, 24);
    widget->setAlphaSettingEnabled(true);
    widget->setBackColor(color);
    return widget;
}

static QWidget *swatches()
{
    auto *window = new QWidget;
    auto *layout = new QFormLayout(window);
    const QColor color(0x2a, 0x6f, 0xdb);
    layout->addRow(QStringLiteral("Opaque"), swatch(color, window));
    QColor translucent = color;
    translucent.setAlpha(128);
    layout->addRow(QStringLiteral("Translucent"), swatch(translucent, window));
    layout->addRow(QStringLiteral("Transparent"), swatch(Qt::transparent, window));
    KyColorWidget *hovered = swatch(color, window);
    QEnterEvent enter(QPointF(1, 1), QPointF(1, 1), QPointF(1, 1));
    QCoreApplication::sendEvent(hovered, &enter);
    layout->addRow(QStringLiteral("Under the mouse"), hovered);
    KyColorWidget *disabled = swatch(color, window);
    disabled->setEnabled(false);
    layout->addRow(QStringLiteral("Disabled"), disabled);
    return window;
}

static QPixmap disc(const QColor &color)
{
    QPixmap pixmap(80, 80);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(color);
    painter.drawEllipse(pixmap.rect());
    return pixmap;
}

static QWidget *layers()
{
    auto *window = new QLabel(QStringLiteral("A panel under two layers"));
    window->setAlignment(Qt::AlignCenter);
    window->setFixedSize(260, 120);
    auto *overlay = new KyEditorDrawingLayerWidget(window);
    overlay->setPixmap(disc(QColor(0xff, 0xc0, 0x40)), 0);
    overlay->setPixmapPos(QPoint(60, 20), 0);
    overlay->setPixmap(disc(QColor(0x60, 0xc0, 0xff)), 1);
    overlay->setPixmapPos(QPoint(110, 20), 1);
    return window;
}

static QWidget *smallWidgets()
{
    auto *window = new QWidget;
    auto *layout = new QFormLayout(window);
    auto *address = new KyReadOnlyLineEdit(QStringLiteral("10.0.0.7"), window);
    address->setMinimumWidth(220);
    layout->addRow(QStringLiteral("Address"), address);
    layout->addRow(QStringLiteral("Uploading"), new KyWaitingImageWidget(window));
    layout->addRow(
        new KyCommandLinkButton(QStringLiteral("Upload"), QStringLiteral("To all destinations."), 1, window));
    return window;
}

static QWidget *menu()
{
    auto *window = new QMenu;
    for (const QString &text :
         {QStringLiteral("&Open"), QStringLiteral("&Rename"), QStringLiteral("&Delete")}) {
        auto *action = new KyMenuAction(text, window);
        action->setObjectName(text.mid(1).toLower());
        action->setCheckable(text == QLatin1String("&Rename"));
        action->setChecked(true);
        window->addAction(action);
    }
    return window;
}

QList<Exhibit> exhibits()
{
    return {{QStringLiteral("KyCommandLinkDialog"), commandDialog},
            {QStringLiteral("KyCommandLinkDialog, long texts"), longCommandDialog},
            {QStringLiteral("KyMessageBoxWithCheckBox"), plainMessageBox},
            {QStringLiteral("KyMessageBoxWithCheckBox, icon"), questionBox},
            {QStringLiteral("KyMessageBoxWithCheckBox, all texts"), longMessageBox},
            {QStringLiteral("KyCommonInputNameDialog"), nameDialog},
            {QStringLiteral("KyCommonInputNameDialog, refused"), refusedNameDialog},
            {QStringLiteral("KyCommonInputNameDialog, empty"), emptyNameDialog},
            {QStringLiteral("KyColorWidget"), swatches},
            {QStringLiteral("KyEditorDrawingLayerWidget"), layers},
            {QStringLiteral("Small widgets"), smallWidgets},
            {QStringLiteral("KyMenuAction"), menu}};
}

#include "Exhibits.moc"
