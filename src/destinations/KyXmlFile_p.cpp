#include "KyXmlFile_p.h"

#include "KyFileStore_p.h"

#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <QTextCodec>
#include <QXmlStreamReader>

namespace Kyte {
namespace XmlFile {

static const int MAX_ATTRIBUTES = 64;
static const int MAX_DECLARATION_SIZE = 1 << 10;
static const int HARMFUL = -1;

/** The codec that the XML reader would choose for \a content, except that a byte order mark outweighs all. */
static QTextCodec *codecOf(const QByteArray &content)
{
    if (QTextCodec *codec = QTextCodec::codecForUtfText(content, nullptr))
        return codec;

    // Without a mark the first "<" tells the width and the order of the bytes.
    if (content.startsWith(QByteArray("<\0\0\0", 4)))
        return QTextCodec::codecForName("UTF-32LE");
    if (content.startsWith(QByteArray("\0\0\0<", 4)))
        return QTextCodec::codecForName("UTF-32BE");
    if (content.startsWith(QByteArray("<\0", 2)))
        return QTextCodec::codecForName("UTF-16LE");
    if (content.startsWith(QByteArray("\0<", 2)))
        return QTextCodec::codecForName("UTF-16BE");

    QXmlStreamReader reader(content.left(MAX_DECLARATION_SIZE));
    reader.readNext();
    const QByteArray declared = reader.documentEncoding().toLatin1(); // empty for one that has no codec
    return QTextCodec::codecForName(declared.isEmpty() ? QByteArrayLiteral("UTF-8") : declared);
}

/**
 * The length of \a text up to the first half of a surrogate pair, which the XML reader would replace by a
 * question mark, or, where \a isReplaced, up to the first replacement character.
 */
static int validLength(const QString &text, bool isReplaced)
{
    const QChar *data = text.constData(); // a zero character ends it
    for (int i = 0; i < text.size(); ++i) {
        if (data[i].isHighSurrogate() && data[i + 1].isLowSurrogate())
            ++i;
        else if (data[i].isSurrogate() || (isReplaced && data[i] == QChar::ReplacementCharacter))
            return i;
    }
    return text.size();
}

/** \a content as text, up to the first bytes that mean nothing in its encoding. */
static QString decoded(const QByteArray &content)
{
    const QTextCodec *codec = codecOf(content);
    QTextCodec::ConverterState state;
    QString text = codec->toUnicode(content.constData(), content.size(), &state);
    // Not every codec counts what it replaces, but those that do not cannot write the replacement themselves.
    const bool isReplaced = state.invalidChars > 0 || !codec->canEncode(QChar(QChar::ReplacementCharacter));
    text.truncate(validLength(text, isReplaced));
    return text;
}

/** Where the tag or the document type at \a begin ends; HARMFUL when it must not reach an XML reader. */
static int tagEnd(const QString &text, int begin)
{
    const QChar *data = text.constData(); // a zero character ends it
    const bool isDocumentType = data[begin + 1] == QLatin1Char('!');
    int values = 0;
    for (int i = begin + 1; i < text.size(); ++i) {
        if (data[i] == QLatin1Char('>'))
            return i;
        if (isDocumentType && data[i] == QLatin1Char('['))
            return HARMFUL; // the entities declared there unfold without bound
        if (data[i] == QLatin1Char('"') || data[i] == QLatin1Char('\'')) {
            if (++values > MAX_ATTRIBUTES)
                return HARMFUL; // each name is compared with every other
            i = text.indexOf(data[i], i + 1);
            if (i < 0)
                break;
        }
    }
    return text.size();
}

/** Like tagEnd() for any markup. What looks like a tag in a comment, a literal or an instruction is none. */
static int markupEnd(const QString &text, int begin)
{
    static const struct
    {
        QLatin1String begin;
        QLatin1String end;
    } VERBATIM[] = {{QLatin1String("<!--"), QLatin1String("-->")},
                    {QLatin1String("<![CDATA["), QLatin1String("]]>")},
                    {QLatin1String("<?"), QLatin1String("?>")}};
    for (const auto &part : VERBATIM) {
        if (text.midRef(begin, part.begin.size()) == part.begin) {
            const int end = text.indexOf(part.end, begin + part.begin.size());
            return end < 0 ? text.size() : end;
        }
    }
    return tagEnd(text, begin);
}

/** The length of \a text up to what costs an XML reader more than its size. */
static int harmlessLength(const QString &text)
{
    int begin = text.indexOf(QLatin1Char('<'));
    while (begin >= 0) {
        const int end = markupEnd(text, begin);
        if (end == HARMFUL)
            return begin;
        begin = text.indexOf(QLatin1Char('<'), end);
    }
    return text.size();
}

bool read(const QString &path, int sizeLimit, QString *content)
{
    // Opening a pipe or a device of the expected name could block for ever.
    const QFileInfo info(path);
    if (!info.isFile() || info.size() > sizeLimit)
        return false;
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return false;
    const QByteArray bytes = file.read(info.size() + 1); // one more: a file that grows meanwhile is not whole
    if (file.error() != QFileDevice::NoError || bytes.size() > info.size())
        return false;
    *content = decoded(bytes);
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
