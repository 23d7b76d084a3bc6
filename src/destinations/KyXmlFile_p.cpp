#include "KyXmlFile_p.h"

#include "KyFileStore_p.h"

#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <QXmlStreamReader>

namespace Kyte {
namespace XmlFile {

static const int MAX_ATTRIBUTES = 64;
static const int MAX_FOREIGN_SIZE = 32 << 10;

/** Whether the XML reader will take \a content for UTF-8, where a byte that looks like "<" is one. */
static bool isUtf8(const QByteArray &content)
{
    QXmlStreamReader reader(content.left(256));
    if (content.contains('\0') || reader.readNext() != QXmlStreamReader::StartDocument)
        return false;
    const QStringRef encoding = reader.documentEncoding();
    return encoding.isEmpty() || encoding.compare(QLatin1String("utf-8"), Qt::CaseInsensitive) == 0;
}

/**
 * Where the first tag begins that has too many attributes, of which the reader compares each with every
 * other; the size where there is none. No tag holds a "<", not even in a value.
 */
static int lengthUpToOvergrownTag(const QByteArray &content)
{
    int tag = 0;
    int attributes = 0;
    char end = '<'; // of the text, the tag or the value that is being passed over
    for (int i = 0; i < content.size(); ++i) {
        const char character = content.at(i);
        if (character == '<') {
            tag = i;
            attributes = 0;
            end = '>';
        } else if (character == end) {
            end = character == '>' ? '<' : '>';
        } else if (end == '>' && (character == '"' || character == '\'')) {
            end = character;
            if (++attributes > MAX_ATTRIBUTES)
                return tag;
        }
    }
    return content.size();
}

/** Where a document type begins that declares something: entities unfold without bound; else the size. */
static int lengthUpToDeclarations(const QByteArray &content)
{
    const int begin = content.indexOf("<!DOCTYPE");
    if (begin < 0)
        return content.size();
    const int declarations = content.indexOf('[', begin);
    const int end = content.indexOf('>', begin);
    return declarations >= 0 && (end < 0 || declarations < end) ? begin : content.size();
}

static int harmlessLength(const QByteArray &content)
{
    if (!isUtf8(content))
        return qMin(content.size(), MAX_FOREIGN_SIZE);
    return qMin(lengthUpToOvergrownTag(content), lengthUpToDeclarations(content));
}

bool read(const QString &path, int sizeLimit, QByteArray *content)
{
    // Opening a pipe or a device of the expected name could block for ever.
    const QFileInfo info(path);
    if (!info.isFile() || info.size() > sizeLimit)
        return false;
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text))
        return false;
    *content = file.read(info.size() + 1); // one more: a file that grows meanwhile is not whole
    if (file.error() != QFileDevice::NoError || content->size() > info.size())
        return false;
    content->truncate(harmlessLength(*content));
    return true;
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
    // commit() by itself notices neither a part that did not fit on the disk nor a last buffer that did not,
    // and ignores that what was taken did not reach the disk.
    QString ignored;
    return file.write(content) == content.size() && file.flush() && file.error() == QFileDevice::NoError
        && FileStore::sync(&file, &ignored) && file.commit();
}

} // namespace XmlFile
} // namespace Kyte
