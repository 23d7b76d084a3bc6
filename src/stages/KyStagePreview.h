#pragma once

#include <KyEditorCommonExport.h>
#include <KyStage.h>

#include <QFrame>
#include <QPoint>
#include <QRect>

#include <memory>

class QImage;

namespace Kyte {

class KyDecodedImage;

/**
 * Shows a scaled picture of a stage on a dark gradient: its background colour and image, and each screen as a
 * filled, outlined and labelled rectangle. A stage file with a stored thumbnail of exactly the size of the
 * picture, one pixel less than the widget each way, shows that instead.
 *
 * The picture is kept as an image and made anew for another stage or another size. The widget works on a copy
 * of the stage. What cannot be drawn or read is left out.
 */
class KYEDITORCOMMON_EXPORT KyStagePreview : public QFrame
{
    Q_OBJECT
    Q_DISABLE_COPY(KyStagePreview)

public:
    explicit KyStagePreview(QWidget *parent = nullptr, Qt::WindowFlags flags = Qt::WindowFlags());
    ~KyStagePreview() override;

    KyStage stage() const;

    /**
     * The picture, which stays the widget's own; null before the first stage and after clear(). Setting it
     * takes \a image over and leaves the former one to the caller. A picture of another size than the widget
     * wants is replaced at the next painting.
     */
    void setImage(QImage *image);
    QImage *image() const;

    /** The way that brings \a point in \a rect to the origin. */
    static QPoint getOffsetPoint(const QRect &rect, const QPoint &point);
    /** Position and size times \a factor, the edges snapped to whole pixels and bounded to 2^30 - 1. */
    static QRect getScaledRect(const QRect &rect, double factor);

public slots:
    /** Deletes the picture: the gradient alone is shown until the next setStage(). */
    void clear();
    void setStage(const KyStage &stage);
    /** Writes image() to \a image. */
    void getImage(QImage **image);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    void updateStageImage();
    QImage *getStageThumbnail() const;
    QImage readBackground();
    QSize imageSize() const;

    KyStage m_stage;
    QImage *m_image = nullptr; // owned
    std::unique_ptr<KyDecodedImage> m_background;
};

} // namespace Kyte
