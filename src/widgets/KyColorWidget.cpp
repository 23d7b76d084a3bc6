#include "KyColorWidget.h"

#include <QColorDialog>
#include <QFocusEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QPointer>

namespace Kyte {

static const QString BACKGROUND_IMAGE = QStringLiteral(":/images/transparent_background.png");
static const QSize DEFAULT_SIZE(32, 20);

static QPen linePen(const QColor &color)
{
    return QPen(color, 1, Qt::SolidLine, Qt::SquareCap, Qt::BevelJoin);
}

KyColorWidget::KyColorWidget(QWidget *parent)
    : QWidget(parent)
    , m_backgroundImage(BACKGROUND_IMAGE)
{
    if (!m_backgroundImage.isNull()) // painting on an image takes a format with all colours
        m_backgroundImage = m_backgroundImage.convertToFormat(QImage::Format_ARGB32_Premultiplied);
    setFocusPolicy(Qt::TabFocus);
    setAccessibleName(tr("Please select a color."));
}

QColor KyColorWidget::backColor() const
{
    return m_backColor;
}

void KyColorWidget::setBackColor(QColor color)
{
    if (color == m_backColor)
        return;
    const QColor oldColor = m_backColor;
    m_backColor = color;
    setAccessibleDescription(color.name(QColor::HexArgb));
    update();
    emit colorChanged(color, oldColor);
}

bool KyColorWidget::alphaSettingEnabled() const
{
    return m_alphaSettingEnabled;
}

void KyColorWidget::setAlphaSettingEnabled(bool enabled)
{
    m_alphaSettingEnabled = enabled;
}

QSize KyColorWidget::sizeHint() const
{
    return DEFAULT_SIZE;
}

void KyColorWidget::paintEvent(QPaintEvent *event)
{
    Q_UNUSED(event)
    QPainter painter(this);
    if (isEnabled()) {
        painter.setPen(linePen(Qt::darkGray));
        painter.setBrush(swatchBrush());
    } else {
        const QColor disabled = palette().color(QPalette::Disabled, QPalette::Text);
        painter.setPen(linePen(disabled));
        painter.setBrush(disabled);
    }
    painter.drawRect(1, 1, width() - 3, height() - 3);

    if (isEnabled() && (m_hovered || m_focusedByKey)) {
        painter.setPen(linePen(Qt::cyan));
        painter.setBrush(Qt::transparent);
        painter.drawRect(0, 0, width() - 1, height() - 1);
    }
}

void KyColorWidget::enterEvent(QEvent *event)
{
    if (isEnabled()) {
        m_hovered = true;
        update();
    }
    QWidget::enterEvent(event);
}

void KyColorWidget::leaveEvent(QEvent *event)
{
    // A swatch that was disabled under the mouse keeps its frame for when it is enabled again: dialogs that
    // disable themselves for a moment must not let it flicker.
    if (isEnabled()) {
        m_hovered = false;
        update();
    }
    QWidget::leaveEvent(event);
}

void KyColorWidget::mousePressEvent(QMouseEvent *event)
{
    const QPointer<KyColorWidget> guard(this); // who hears of the new colour may delete the widget
    if (event->button() == Qt::LeftButton)
        showColorPicker();
    if (guard)
        QWidget::mousePressEvent(event);
}

void KyColorWidget::keyPressEvent(QKeyEvent *event)
{
    switch (event->key()) {
    case Qt::Key_Space:
    case Qt::Key_Select:
    case Qt::Key_Return:
    case Qt::Key_Enter:
        showColorPicker();
        return;
    default:
        QWidget::keyPressEvent(event);
    }
}

void KyColorWidget::focusInEvent(QFocusEvent *event)
{
    m_focusedByKey = event->reason() == Qt::TabFocusReason || event->reason() == Qt::BacktabFocusReason
        || event->reason() == Qt::ShortcutFocusReason;
    QWidget::focusInEvent(event); // repaints
}

void KyColorWidget::focusOutEvent(QFocusEvent *event)
{
    m_focusedByKey = false;
    QWidget::focusOutEvent(event);
}

void KyColorWidget::showColorPicker()
{
    QColorDialog::ColorDialogOptions options;
    if (m_alphaSettingEnabled)
        options |= QColorDialog::ShowAlphaChannel;
    const QColor chosen = QColorDialog::getColor(m_backColor, this, tr("Please select a color."), options);
    if (chosen.isValid())
        setBackColor(chosen);
}

/** The colour; where it is translucent, the checkerboard with the colour laid over it. */
QBrush KyColorWidget::swatchBrush() const
{
    if (m_backColor.alpha() == 255 || m_backgroundImage.isNull())
        return QBrush(m_backColor);
    QColor opaque = m_backColor;
    opaque.setAlpha(255);
    QImage texture = m_backgroundImage;
    QPainter painter(&texture);
    painter.setOpacity(m_backColor.alphaF());
    painter.fillRect(texture.rect(), opaque);
    return QBrush(texture);
}

} // namespace Kyte
