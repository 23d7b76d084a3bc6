#pragma once

#include "KyEditorCommonExport.h"

#include <QList>
#include <QPixmap>
#include <QPoint>
#include <QWidget>

namespace Kyte {

/**
 * An overlay that draws stacked pixmaps over another widget, its parent, and lets the mouse through.
 *
 * It covers its parent as large as that is when the overlay is made; who resizes the parent resizes the
 * overlay. Layer 0 is drawn first. Layers are multiplied with what lies under them, so they darken it: white
 * leaves it as it is, black covers it. None of the operations repaints: call update() after the last of them.
 * GUI thread only.
 */
class KYEDITORCOMMON_EXPORT KyEditorDrawingLayerWidget : public QWidget
{
    Q_OBJECT
    Q_DISABLE_COPY(KyEditorDrawingLayerWidget)

public:
    /** Two empty layers at (0, 0). */
    explicit KyEditorDrawingLayerWidget(QWidget *parent = nullptr);
    ~KyEditorDrawingLayerWidget() override;

    /** Takes layers from the end, or appends empty ones at (0, 0). A negative count is 0. */
    void setLayerCount(int count);

    /** Nothing happens where there is no layer \a index, and its pixmap is null. */
    void setPixmap(const QPixmap &pixmap, int index);
    QPixmap pixmap(int index) const;

    /** Where the top left corner of layer \a index is; (0, 0) where there is no such layer. */
    void setPixmapPos(const QPoint &pos, int index);
    QPoint pixmapPos(int index) const;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    QList<QPixmap *> m_pixmaps; // owned
    QList<QPoint> m_positions; // as many as there are pixmaps
};

} // namespace Kyte
