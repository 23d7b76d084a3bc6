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

/** Whether \a markup begins what a document type declares: an ATTLIST, an ELEMENT, an ENTITY, a NOTATION. */
static bool isDeclaration(const char *markup)
{
    return markup[1] == '!' && (markup[2] == 'A' || markup[2] == 'E' || markup[2] == 'N');
}

/**
 * The length of \a content up to what costs a reader more than its size: the declarations of a document type,
 * because entities unfold without bound, and a tag with too many attributes, because each is compared with
 * every other. That a "<" in a comment looks like one of these does no harm, and no tag holds a "<", not even
 * in a value.
 */
static int harmlessLength(const QByteArray &content)
{
    const char *data = content.constData(); // a zero byte ends it
    int tag = 0;
    int attributes = 0;
    char end = '<'; // of the text, the tag or the value that is being passed over
    for (int i = 0; i < content.size(); ++i) {
        if (data[i] == '<') {
            if (isDeclaration(data + i))
                return i;
            tag = i;
            attributes = 0;
            end = data[i + 1] == '!' || data[i + 1] == '?' ? '<' : '>';
        } else if (data[i] == end) {
            end = data[i] == '>' ? '<' : '>';
        } else if (end == '>' && (data[i] == '"' || data[i] == '\'')) {
            end = data[i];
            if (++attributes > MAX_ATTRIBUTES)
                return tag;
        }
    }
    return content.size();
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
    content->truncate(isUtf8(*content) ? harmlessLength(*content) : qMin(content->size(), MAX_FOREIGN_SIZE));
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
