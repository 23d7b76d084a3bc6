#include "KyXmlFile_p.h"

#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

namespace Kyte {
namespace XmlFile {

static bool hasOvergrownMarkup(const QByteArray &content, int limit)
{
    int begin = 0;
    while (content.size() - begin > limit) {
        const int next = content.indexOf('<', begin + 1);
        if ((next < 0 ? content.size() : next) - begin > limit)
            return true;
        begin = next;
    }
    return false;
}

bool read(const QString &path, const Limits &limits, QByteArray *content)
{
    // Opening a pipe or a device of the expected name could block for ever.
    const QFileInfo info(path);
    if (!info.isFile() || info.size() > limits.fileSize)
        return false;
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text))
        return false;
    *content = file.read(limits.fileSize + 1); // the file may have grown since
    return content->size() <= limits.fileSize && !hasOvergrownMarkup(*content, limits.markup);
}

bool write(const QString &path, const QByteArray &content)
{
    // A save file would follow a link to a device and replace the device itself.
    const QFileInfo info(path);
    if (path.isEmpty() || (info.exists() && !info.isFile()))
        return false;
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate))
        return false;
    file.write(content);
    // commit() by itself does not notice that the last buffer did not fit on the disk.
    if (!file.flush() || file.error() != QFileDevice::NoError)
        return false;
    return file.commit();
}

} // namespace XmlFile
} // namespace Kyte
