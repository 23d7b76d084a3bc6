#include "Path.h"

#include <QCryptographicHash>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>

#include <utility>

namespace Kyte {

static const QLatin1Char SEPARATOR('/');

/** The length of what names a root at the start of \a path: "/", "//" of a network path, "C:/", else 0. */
static int rootLength(const QString &path)
{
    if (path.size() >= 3 && path.at(0).isLetter() && path.at(1) == QLatin1Char(':')
        && path.at(2) == SEPARATOR)
        return 3;
    int length = 0;
    while (length < path.size() && path.at(length) == SEPARATOR)
        ++length;
    return length;
}

static QString withoutTrailingSeparators(QString path)
{
    const int root = rootLength(path);
    int length = path.size();
    while (length > root && path.at(length - 1) == SEPARATOR)
        --length;
    path.truncate(length);
    return path;
}

/** The position of the dot before the extension of \a name, -1 when there is none. */
static int extensionDot(const QString &name)
{
    const int dot = name.lastIndexOf(QLatin1Char('.'));
    return dot > 0 && dot < name.size() - 1 ? dot : -1;
}

QString Path::combine(const QString &first, const QString &second)
{
    const QString head = replaceSepalator(first);
    const QString tail = replaceSepalator(second);

    int begin = 0;
    while (begin < tail.size() && tail.at(begin) == SEPARATOR)
        ++begin;
    if (head.isEmpty() || begin == tail.size())
        return head.isEmpty() ? tail.mid(begin) : withoutTrailingSeparators(head);

    int end = head.size();
    while (end > 0 && head.at(end - 1) == SEPARATOR)
        --end;
    return head.leftRef(end) + SEPARATOR + tail.midRef(begin);
}

QString Path::getParentDirectory(QString path)
{
    path = withoutTrailingSeparators(replaceSepalator(path));
    const int root = rootLength(path);
    if (path.size() == root)
        return QString();
    path.truncate(path.lastIndexOf(SEPARATOR) + 1);
    return withoutTrailingSeparators(path);
}

QString Path::getName(QString path, bool withExtension)
{
    path = withoutTrailingSeparators(replaceSepalator(path));
    QString name = path.mid(path.lastIndexOf(SEPARATOR) + 1);
    const int dot = extensionDot(name);
    if (!withExtension && dot >= 0)
        name.truncate(dot);
    return name;
}

QString Path::getExtension(QString fileName)
{
    const QString name = getName(std::move(fileName), true);
    const int dot = extensionDot(name);
    return dot < 0 ? QString() : name.mid(dot + 1).toLower();
}

QString Path::replaceSepalator(const QString &path)
{
    return QString(path).replace(QLatin1Char('\\'), SEPARATOR);
}

QString Path::getHashSha1(const QString &filePath)
{
    if (!QFileInfo(filePath).isFile()) // a pipe would keep its reader waiting
        return QString();

    QFile file(filePath);
    QCryptographicHash hash(QCryptographicHash::Sha1);
    if (!file.open(QIODevice::ReadOnly) || !hash.addData(&file) || file.error() != QFileDevice::NoError)
        return QString();
    return QString::fromLatin1(hash.result().toHex());
}

QString Path::getApplicationDataFolderPath(ExecFunction::ExecFunctions function)
{
    if (function != ExecFunction::Editor)
        return QString();
    return QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation)
        + QStringLiteral("/kyte/Editor");
}

QString Path::getApplicationCacheFolderPath()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericCacheLocation) + QStringLiteral("/kyte");
}

// NOLINTNEXTLINE(performance-unnecessary-value-param): the signature is fixed
QString Path::getDataFolderByStageFile(QString stageFile)
{
    const QString name = getName(stageFile, false);
    return name.isEmpty() ? QString()
                          : combine(getParentDirectory(stageFile), name + QStringLiteral("_data"));
}

} // namespace Kyte
