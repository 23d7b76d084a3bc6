#include "KyCommandLinkDialog.h"

#include "KyCommandLinkButton.h"

#include <QApplication>
#include <QDialogButtonBox>
#include <QLabel>
#include <QPointer>
#include <QPushButton>
#include <QShowEvent>
#include <QTimer>
#include <QVBoxLayout>
#include <QWindow>

namespace Kyte {

static const QSize MINIMUM_SIZE(380, 120);
static const int NUDGE_DELAY = 1; // milliseconds

KyCommandLinkDialog::KyCommandLinkDialog(QWidget *parent, Qt::WindowFlags flags)
    : QDialog(parent, flags)
{
    setup();
}

int KyCommandLinkDialog::addButton(const QString &text, const QString &description)
{
    const int id = m_commandButtons.size() + 1;
    auto *button = new KyCommandLinkButton(text, description, id, this);
    m_commandButtons.append(button);
    // The button also emits clicked(int). Connecting that as well would make every command fire twice.
    connect(button, SIGNAL(clicked(KyCommandLinkButton *)), this,
            SLOT(onCommandButtonClicked(KyCommandLinkButton *)));
    m_commandButtonLayout->addWidget(button);
    setTabOrder(button, m_cancelButton); // Cancel stays last
    return id;
}

QString KyCommandLinkDialog::mainMessage() const
{
    return m_mainMessageLabel->text();
}

void KyCommandLinkDialog::setMainMessage(const QString &message)
{
    m_mainMessageLabel->setText(message);
    describe();
}

QString KyCommandLinkDialog::subMessage() const
{
    return m_subMessageLabel->text();
}

void KyCommandLinkDialog::setSubMessage(const QString &message)
{
    m_subMessageLabel->setText(message);
    describe();
}

void KyCommandLinkDialog::setActiveButton(int buttonId)
{
    for (KyCommandLinkButton *button : qAsConst(m_commandButtons)) {
        if (button->buttonId() == buttonId) {
            button->setFocus(Qt::OtherFocusReason);
            return;
        }
    }
}

int KyCommandLinkDialog::show(QWidget *parent,
                              const QString &title,
                              const QString &mainMessage,
                              const QString &subMessage,
                              const QString &text1,
                              const QString &description1,
                              const QString &text2,
                              const QString &description2,
                              const QString &text3,
                              const QString &description3,
                              const QString &text4,
                              const QString &description4,
                              const QString &text5,
                              const QString &description5)
{
    // The parent may go while the dialog is open, and takes the dialog with it.
    const QPointer<KyCommandLinkDialog> dialog(new KyCommandLinkDialog(parent));
    dialog->setWindowTitle(title);
    dialog->setMainMessage(mainMessage);
    dialog->setSubMessage(subMessage);
    const QPair<QString, QString> commands[] = {{text1, description1},
                                                {text2, description2},
                                                {text3, description3},
                                                {text4, description4},
                                                {text5, description5}};
    for (const auto &command : commands) {
        if (!command.first.isEmpty())
            dialog->addButton(command.first, command.second);
    }
    dialog->setActiveButton(1);
    const int result = dialog->exec();
    delete dialog;
    return result;
}

void KyCommandLinkDialog::setVisible(bool visible)
{
    if (visible && !isVisible())
        growToContents(); // before it is placed: a size that changes afterwards moves some windows
    QDialog::setVisible(visible);
}

bool KyCommandLinkDialog::event(QEvent *event)
{
    const bool isHandled = QDialog::event(event);
    if (event->type() == QEvent::LayoutRequest && isVisible())
        growToContents();
    return isHandled;
}

void KyCommandLinkDialog::showEvent(QShowEvent *event)
{
    QDialog::showEvent(event);
    if (event->spontaneous())
        return;
    // Some window systems lay out and paint the command buttons correctly only once the window has moved.
    QTimer::singleShot(NUDGE_DELAY, this, SLOT(nudge()));
}

void KyCommandLinkDialog::hideEvent(QHideEvent *event)
{
    nudgeBack(); // the frame that its position includes may be another one when it is shown again
    QDialog::hideEvent(event);
}

void KyCommandLinkDialog::onCommandButtonClicked(KyCommandLinkButton *button)
{
    if (!button)
        return;
    const int id = button->buttonId();
    const QPointer<KyCommandLinkDialog> guard(this);
    emit commandButtonClicked(id);
    if (guard)
        done(id);
}

void KyCommandLinkDialog::onCommandButtonClicked(int buttonId)
{
    setResult(buttonId);
    const QPointer<KyCommandLinkDialog> guard(this);
    emit commandButtonClicked(buttonId);
    if (guard)
        done(buttonId);
}

void KyCommandLinkDialog::onButtonBoxClicked(QAbstractButton *button)
{
    if (!button)
        return;
    const QPointer<KyCommandLinkDialog> guard(this);
    emit rejected();
    if (guard)
        done(0);
}

void KyCommandLinkDialog::nudge()
{
    if (m_isNudged || !isVisible()) // shown again before it was back: the origin is known already
        return;
    if (!windowHandle()->isExposed()) {
        // A window manager is still giving it a place and a frame, and until then pos() is not where it will
        // be.
        if (!testAttribute(Qt::WA_DontShowOnScreen))
            QTimer::singleShot(NUDGE_DELAY, this, SLOT(nudge()));
        return;
    }
    m_isNudged = true;
    m_origin = pos();
    move(m_origin - QPoint(1, 1));
    QTimer::singleShot(NUDGE_DELAY, this, SLOT(nudgeBack()));
}

/** Back to where it was, rather than on by one pixel: a window manager may not have moved it yet. */
void KyCommandLinkDialog::nudgeBack()
{
    if (!m_isNudged)
        return;
    m_isNudged = false;
    move(m_origin);
    if (isVisible())
        growToContents(); // moving asks for the size as well, which may have been the one from before a
                          // growth
}

void KyCommandLinkDialog::setup()
{
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(createMessagePanel());
    layout->addWidget(createButtonPanel());
    setMinimumSize(MINIMUM_SIZE);
    resize(MINIMUM_SIZE);
}

QWidget *KyCommandLinkDialog::createMessagePanel()
{
    auto *panel = new QWidget(this);
    QPalette light = panel->palette();
    light.setColor(QPalette::Window, QApplication::palette().color(QPalette::Light));
    panel->setPalette(light);
    panel->setAutoFillBackground(true);

    m_mainMessageLabel = new QLabel(panel);
    m_mainMessageLabel->setWordWrap(true);
    m_subMessageLabel = new QLabel(panel);
    m_subMessageLabel->setWordWrap(true);
    m_commandButtonLayout = new QVBoxLayout;
    auto *layout = new QVBoxLayout(panel);
    layout->addWidget(m_mainMessageLabel);
    layout->addWidget(m_subMessageLabel);
    layout->addLayout(m_commandButtonLayout);
    layout->addSpacerItem(new QSpacerItem(10, 0, QSizePolicy::Minimum, QSizePolicy::Expanding));
    return panel;
}

QWidget *KyCommandLinkDialog::createButtonPanel()
{
    auto *panel = new QWidget(this);
    auto *buttonBox = new QDialogButtonBox(QDialogButtonBox::Cancel, panel);
    connect(buttonBox, SIGNAL(clicked(QAbstractButton *)), this, SLOT(onButtonBoxClicked(QAbstractButton *)));
    m_cancelButton = buttonBox->button(QDialogButtonBox::Cancel);
    auto *layout = new QVBoxLayout(panel);
    layout->addWidget(buttonBox);
    return panel;
}

/** A screen reader tells the messages when the dialog opens. */
void KyCommandLinkDialog::describe()
{
    QStringList messages({mainMessage(), subMessage()});
    messages.removeAll(QString());
    setAccessibleDescription(messages.join(QLatin1Char('\n')));
}

/** The fixed minimum makes the layout leave the size alone, and more than one button needs more height. */
void KyCommandLinkDialog::growToContents()
{
    for (int i = 0; i < layout()->count(); ++i)
        layout()->itemAt(i)->widget()->layout()->activate(); // or their last measures are taken
    const QSize smallest = layout()->totalMinimumSize().expandedTo(MINIMUM_SIZE);
    const int width = qMax(smallest.width(), this->width());
    const int height =
        layout()->hasHeightForWidth() ? layout()->totalHeightForWidth(width) : smallest.height();
    resize(size().expandedTo(QSize(width, height)));
}

} // namespace Kyte
