#include "KyEditorDrawingLayerWidget.h"

#include <QPainter>
#include <QPalette>

namespace Kyte {

static const int INITIAL_LAYER_COUNT = 2;

KyEditorDrawingLayerWidget::KyEditorDrawingLayerWidget(QWidget *parent)
    : QWidget(parent, Qt::FramelessWindowHint)
{
    setAttribute(Qt::WA_TransparentForMouseEvents);
    // The name that style sheets and look-ups of the applications know; it is shorter than the class's.
    setObjectName(QStringLiteral("KyDrawingLayerWidget"));
    QPalette transparent = palette();
    transparent.setColor(QPalette::Window, QColor(0, 0, 0, 0));
    setPalette(transparent);
    setAutoFillBackground(true);
    move(0, 0);
    if (parent)
        resize(parent->size());
    setLayerCount(INITIAL_LAYER_COUNT);
}

KyEditorDrawingLayerWidget::~KyEditorDrawingLayerWidget()
{
    qDeleteAll(m_pixmaps);
}

void KyEditorDrawingLayerWidget::setLayerCount(int count)
{
    while (m_pixmaps.size() > qMax(0, count)) {
        delete m_pixmaps.takeLast();
        m_positions.removeLast();
    }
    while (m_pixmaps.size() < count) {
        m_pixmaps.append(new QPixmap);
        m_positions.append(QPoint());
    }
}

void KyEditorDrawingLayerWidget::setPixmap(const QPixmap &pixmap, int index)
{
    if (index >= 0 && index < m_pixmaps.size())
        *m_pixmaps.at(index) = pixmap;
}

QPixmap KyEditorDrawingLayerWidget::pixmap(int index) const
{
    if (index < 0 || index >= m_pixmaps.size())
        return QPixmap();
    return *m_pixmaps.at(index);
}

void KyEditorDrawingLayerWidget::setPixmapPos(const QPoint &pos, int index)
{
    if (index >= 0 && index < m_positions.size())
        m_positions[index] = pos;
}

QPoint KyEditorDrawingLayerWidget::pixmapPos(int index) const
{
    return m_positions.value(index);
}

void KyEditorDrawingLayerWidget::paintEvent(QPaintEvent *event)
{
    QWidget::paintEvent(event);
    QPainter painter(this);
    painter.setCompositionMode(QPainter::CompositionMode_Multiply);
    for (int i = 0; i < m_pixmaps.size(); ++i)
        painter.drawPixmap(m_positions.at(i), *m_pixmaps.at(i));
}

} // namespace Kyte
