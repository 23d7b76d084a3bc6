#include "MessageBar.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QStyle>
#include <QToolButton>

// Of their own in light and dark palettes alike.
static const QString ERROR_COLORS = QStringLiteral("background:#fdecea; color:#611a15;");
static const QString WARNING_COLORS = QStringLiteral("background:#fff4dc; color:#5c4300;");
static const QString SUCCESS_COLORS = QStringLiteral("background:#e6f4e7; color:#1e4620;");

MessageBar::MessageBar(QWidget *parent)
    : QFrame(parent)
    , m_text(new QLabel(this))
    , m_command(new QToolButton(this))
{
    setObjectName(QStringLiteral("messageBar"));
    m_text->setWordWrap(true);
    m_text->setTextInteractionFlags(Qt::TextSelectableByMouse);
    m_text->setTextFormat(Qt::PlainText);
    auto *close = new QToolButton(this);
    close->setAutoRaise(true);
    close->setIcon(style()->standardIcon(QStyle::SP_TitleBarCloseButton));
    close->setToolTip(tr("Close this message"));
    close->setAccessibleName(close->toolTip());

    auto *layout = new QHBoxLayout(this);
    layout->setContentsMargins(8, 4, 4, 4);
    layout->addWidget(m_text, 1);
    layout->addWidget(m_command);
    layout->addWidget(close);
    connect(m_command, SIGNAL(clicked()), this, SIGNAL(commandChosen()));
    connect(close, SIGNAL(clicked()), this, SLOT(clear()));
    hide();
}

QString MessageBar::text() const
{
    return m_text->text();
}

void MessageBar::offer(const QString &command)
{
    m_command->setText(command);
    m_command->setVisible(!command.isEmpty());
}

void MessageBar::showError(const QString &text)
{
    showMessage(text, ERROR_COLORS);
}

void MessageBar::showWarning(const QString &text)
{
    showMessage(text, WARNING_COLORS);
}

void MessageBar::showSuccess(const QString &text)
{
    showMessage(text, SUCCESS_COLORS);
}

void MessageBar::clear()
{
    m_text->clear();
    hide();
}

void MessageBar::showMessage(const QString &text, const QString &colors)
{
    setStyleSheet(QStringLiteral("#messageBar, #messageBar QLabel { %1 }").arg(colors));
    m_text->setText(text.trimmed());
    offer(QString());
    show();
}
