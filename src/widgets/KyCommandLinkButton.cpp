#include "KyCommandLinkButton.h"

#include <QPointer>

namespace Kyte {

KyCommandLinkButton::KyCommandLinkButton(QWidget *parent)
    : QCommandLinkButton(parent)
{
    setup();
}

KyCommandLinkButton::KyCommandLinkButton(const QString &text, QWidget *parent)
    : QCommandLinkButton(text, parent)
{
    setup();
}

KyCommandLinkButton::KyCommandLinkButton(const QString &text, const QString &description, QWidget *parent)
    : QCommandLinkButton(text, description, parent)
{
    setup();
}

KyCommandLinkButton::KyCommandLinkButton(const QString &text,
                                         const QString &description,
                                         int buttonId,
                                         QWidget *parent)
    : QCommandLinkButton(text, description, parent)
    , m_buttonId(buttonId)
{
    setup();
}

int KyCommandLinkButton::buttonId() const
{
    return m_buttonId;
}

void KyCommandLinkButton::setButtonId(int buttonId)
{
    m_buttonId = buttonId;
}

void KyCommandLinkButton::showEvent(QShowEvent *event)
{
    if (accessibleDescription().isEmpty())
        setAccessibleDescription(description());
    QCommandLinkButton::showEvent(event);
}

void KyCommandLinkButton::onClicked(bool checked)
{
    Q_UNUSED(checked)
    const QPointer<KyCommandLinkButton> guard(
        this); // a listener may close, and so delete, what holds the button
    emit clicked(this);
    if (guard)
        emit clicked(m_buttonId);
}

void KyCommandLinkButton::setup()
{
    connect(this, SIGNAL(clicked(bool)), this, SLOT(onClicked(bool)));
}

} // namespace Kyte
