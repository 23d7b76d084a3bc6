#include "KyStagePreview.h"

#include "KyDecodedImage_p.h"
#include "KyStageGeometry_p.h"
#include "KyStagePicture_p.h"

#include <KyThumbnail.h>
#include <Path.h>

#include <QFileInfo>
#include <QImage>
#include <QImageReader>
#include <QLinearGradient>
#include <QPainter>

#include <limits>

namespace Kyte {

static const QColor GRADIENT_BEGIN(96, 96, 128);
static const QColor GRADIENT_END(64, 64, 80);
static const double GRADIENT_LENGTH = 0.8; // of the widget's height; it is reflected below

KyStagePreview::KyStagePreview(QWidget *parent, Qt::WindowFlags flags)
    : QFrame(parent, flags)
    , m_background(std::make_unique<KyDecodedImage>())
{
}

KyStagePreview::~KyStagePreview()
{
    delete m_image;
}

KyStage KyStagePreview::stage() const
{
    return m_stage;
}

void KyStagePreview::setImage(QImage *image)
{
    m_image = image;
}

QImage *KyStagePreview::image() const
{
    return m_image;
}

static int toInt(qint64 value)
{
    return int(qBound<qint64>(std::numeric_limits<int>::min(), value, std::numeric_limits<int>::max()));
}

QPoint KyStagePreview::getOffsetPoint(const QRect &rect, const QPoint &point)
{
    return {toInt(-(qint64(rect.left()) + point.x())), toInt(-(qint64(rect.top()) + point.y()))};
}

QRect KyStagePreview::getScaledRect(const QRect &rect, double factor)
{
    return StageGeometry::scaledRect(StageGeometry::toRectF(rect), factor);
}

void KyStagePreview::clear()
{
    delete m_image;
    m_image = nullptr;
    repaint();
}

void KyStagePreview::setStage(const KyStage &stage)
{
    m_stage = stage;
    updateStageImage();
    update();
}

void KyStagePreview::getImage(QImage **image)
{
    if (image)
        *image = m_image;
}

void KyStagePreview::paintEvent(QPaintEvent * /*event*/)
{
    QPainter painter(this);
    QLinearGradient gradient(1.0, 0.0, 1.0, GRADIENT_LENGTH * rect().bottom());
    gradient.setSpread(QGradient::ReflectSpread);
    gradient.setColorAt(0.0, GRADIENT_BEGIN);
    gradient.setColorAt(1.0, GRADIENT_END);
    painter.fillRect(rect(), gradient);

    if (!m_image)
        return;
    if (m_image->size() != imageSize())
        updateStageImage();
    painter.drawImage(0, 0, *m_image);
}

/** An image is there afterwards, be it a null one: the next painting in another size makes it anew. */
void KyStagePreview::updateStageImage()
{
    delete m_image;
    m_image = getStageThumbnail();
    if (!m_image)
        m_image = new QImage(StagePicture::draw(m_stage, readBackground(), imageSize(), font()));
}

/** The stored thumbnail if it has the size of the picture, else null. */
QImage *KyStagePreview::getStageThumbnail() const
{
    QString path = m_stage.filePath();
    if (!QFileInfo::exists(path) || !KyThumbnail(path, nullptr, false).inspect(path))
        return nullptr;
    QImageReader reader(KyThumbnail::getFilePropertyFromHashFile(path).thumbnailPath);
    const QSize size = reader.size(); // asked first, which spares most thumbnails the decoding
    if (size.isValid() && size != imageSize())
        return nullptr;
    const QImage thumbnail = reader.read();
    return !thumbnail.isNull() && thumbnail.size() == imageSize() ? new QImage(thumbnail) : nullptr;
}

QImage KyStagePreview::readBackground()
{
    const QString dataFolder = Path::getDataFolderByStageFile(m_stage.filePath());
    if (m_stage.backgroundImage().isEmpty() || dataFolder.isEmpty()) { // a stage that was never saved
        m_background->clear();
        return QImage();
    }
    // Joined whatever it begins with: a leading separator does not make this path an absolute one.
    return m_background->image(Path::combine(dataFolder, m_stage.backgroundImage()));
}

/** The size of the picture. */
QSize KyStagePreview::imageSize() const
{
    return size() - QSize(1, 1);
}

} // namespace Kyte
