#pragma once

#include "KyEditorCommonExport.h"

#include <QIcon>
#include <QImage>
#include <QObject>
#include <QString>

class QSvgRenderer;

namespace Kyte {

/**
 * Renders SVG files to images and icons of a wanted size. The functions do not need an object; one holds the
 * renderer of a file.
 *
 * Images have the format ARGB32 and are transparent where nothing is drawn. A file that is missing or broken,
 * or draws nothing, gives a transparent image of the wanted size; a size that is empty, negative or larger
 * than an image can sensibly be gives a null one. A renderer stays the caller's. Icons are made on the GUI
 * thread, images on the thread of their renderer.
 */
class KYEDITORCOMMON_EXPORT KySvgReader : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY(KySvgReader)

public:
    explicit KySvgReader(QObject *parent = nullptr);

    /** The file; another one than before is loaded at once, the same one is not loaded again. */
    QString filePath() const;
    void setFilePath(const QString &path);

    /** The image of the same arguments as an icon; null for an empty path or a null renderer. */
    static QIcon getIcon(const QString &path, int width, int height, Qt::AspectRatioMode mode);
    static QIcon getIcon(QSvgRenderer *renderer, int width, int height, Qt::AspectRatioMode mode);

    /**
     * An image of \a width by \a height, null for an empty path or a null renderer. With
     * Qt::IgnoreAspectRatio the drawing fills it. Otherwise it lies at the top left, and what exceeds the
     * image is cut off; Qt::KeepAspectRatio gives a drawing that is higher than wide the full height, any
     * other one the full width, and Qt::KeepAspectRatioByExpanding the other way round.
     */
    static QImage getImage(const QString &path, int width, int height, Qt::AspectRatioMode mode);
    static QImage getImage(QSvgRenderer *renderer, int width, int height, Qt::AspectRatioMode mode);
    /** An image of the drawing's own size, which is its view box; null for a null renderer and for a drawing
     * without a size. */
    static QImage getImage(QSvgRenderer *renderer);

private:
    QString m_filePath;
    QSvgRenderer *m_renderer = nullptr; // owned, a child
};

} // namespace Kyte
