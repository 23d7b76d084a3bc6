#include "KyExtension.h"

#include <QHash>

namespace Kyte {

struct MediaExtensions
{
    MediaType::MediaTypes type;
    const char *extensions;
};

static const MediaExtensions MEDIA_EXTENSIONS[] = {
    {MediaType::Image, "bmp gif heic heif ico jfif jpe jpeg jpg png svg tga tif tiff webp"},
    {MediaType::Video,
     "3g2 3gp asf avi divx f4v flv m2t m2ts m2v m4v mkv mov mp4 mpe mpeg mpg mts ogm ogv ts vob webm wmv"},
    {MediaType::Audio, "aac ac3 aif aiff flac m4a mid midi mka mp2 mp3 oga ogg opus wav wma"},
    {MediaType::Text, "htm html rtf txt"},
    {MediaType::Presentation, "odp pot potm potx pps ppsm ppsx ppt pptm pptx"},
};

static QHash<QString, MediaType::MediaTypes> makeTypeTable()
{
    QHash<QString, MediaType::MediaTypes> table;
    for (const MediaExtensions &media : MEDIA_EXTENSIONS) {
        const QStringList extensions = QString::fromLatin1(media.extensions).split(QLatin1Char(' '));
        for (const QString &extension : extensions)
            table.insert(extension, media.type);
    }
    return table;
}

MediaType::MediaTypes KyExtension::getMediaType(QString extension)
{
    static const QHash<QString, MediaType::MediaTypes> types =
        makeTypeTable(); // never changed: any thread reads it

    if (extension.startsWith(QLatin1Char('.')))
        extension.remove(0, 1);
    return types.value(extension.toLower(), MediaType::None);
}

} // namespace Kyte
