#include "KyCnvOffice.h"

#include "KyCnvProcess.h"
#include "KyCnvTimings.h"

#include <KZip>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QStandardPaths>
#include <QUrl>

namespace Kyte {

/** Beside the path: where the suite is installed on a system that does not put it there. */
static QStringList officeFolders()
{
    QStringList folders;
    for (const char *variable : {"ProgramFiles", "ProgramFiles(x86)"}) {
        const QString programs = qEnvironmentVariable(variable);
        if (!programs.isEmpty())
            folders.append(QDir::fromNativeSeparators(programs) + QLatin1String("/LibreOffice/program"));
    }
    return folders;
}

QString findProgram(const QStringList &names)
{
    for (const QString &name : names) {
        QString path = QStandardPaths::findExecutable(name);
        if (path.isEmpty())
            path = QStandardPaths::findExecutable(name, officeFolders());
        if (!path.isEmpty())
            return path;
    }
    return QString();
}

static QString officeProgram()
{
    return findProgram({QStringLiteral("soffice"), QStringLiteral("libreoffice")});
}

/** The file \a name in \a archive; null when there is none. */
static QByteArray fileIn(const KZip &archive, const QString &name)
{
    const KArchiveFile *file = archive.directory()->file(name);
    return file ? file->data() : QByteArray();
}

/** Puts the file \a path in \a target, without copying it where the system has links that programs follow. */
static bool provide(const QString &path, const QString &target)
{
#ifdef Q_OS_UNIX
    if (QFile::link(path, target))
        return true;
#endif
    return QFile::copy(path, target);
}

bool KyCnvOffice::isInstalled() const
{
    return !officeProgram().isEmpty();
}

KyCnvOffice::Slides KyCnvOffice::slidesIn(const QString &path)
{
    QFile file(path);
    if (!QFileInfo(path).isFile() || file.size() == 0 || !file.open(QIODevice::ReadOnly))
        return Slides::Unreadable;
    if (file.peek(2) != "PK")
        return Slides::Some; // not an archive: only the suite can tell
    KZip archive(path);
    if (!archive.open(QIODevice::ReadOnly))
        return Slides::Unreadable;
    const QByteArray presentation = fileIn(archive, QStringLiteral("ppt/presentation.xml"));
    static const QRegularExpression SLIDE(QStringLiteral("sldId\\s"));
    if (!presentation.isNull())
        return QString::fromUtf8(presentation).contains(SLIDE) ? Slides::Some : Slides::None;
    const QByteArray content = fileIn(archive, QStringLiteral("content.xml"));
    if (content.contains("<office:presentation") && !content.contains("<draw:page"))
        return Slides::None;
    return Slides::Some; // or no presentation, or one with a password
}

QString KyCnvOffice::toPdf(const QString &inputPath, const std::function<void()> &started)
{
    // The filter is named because it refuses what is no presentation: texts and tables can be a PDF, too.
    return convert(inputPath, QStringLiteral("pdf"), QStringLiteral("pdf:impress_pdf_Export"), started);
}

QVector<int> KyCnvOffice::timings(const QString &inputPath)
{
    QFile file(convert(inputPath, QStringLiteral("fodp"), QStringLiteral("fodp"), [] {}));
    return file.open(QIODevice::ReadOnly) ? slideTimings(&file) : QVector<int>();
}

QString KyCnvOffice::folder() const
{
    return m_folder.path();
}

QString KyCnvOffice::convert(const QString &inputPath,
                             const QString &suffix,
                             const QString &filter,
                             const std::function<void()> &started)
{
    // Under a plain name, whatever the file is called: the suite reads names in the locale's encoding.
    const QFileInfo input(inputPath);
    const QString name = QStringLiteral("presentation");
    const QString source = m_folder.filePath(name + QLatin1Char('.') + input.suffix().toLower());
    if (!QFile::exists(source) && !provide(input.absoluteFilePath(), source))
        return QString();

    const QString result = m_folder.filePath(QStringLiteral("result/") + name + QLatin1Char('.') + suffix);
    KyCnvProcess office;
    // The suite has temporary files of its own, which stay when it is ended.
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    for (const char *variable : {"TMPDIR", "TMP", "TEMP"})
        environment.insert(QLatin1String(variable), QDir::toNativeSeparators(m_folder.path()));
    office.setProcessEnvironment(environment);
    office.setProcessChannelMode(QProcess::MergedChannels);
    office.setStandardOutputFile(QProcess::nullDevice());
    office.setStandardInputFile(QProcess::nullDevice());
    office.start(
        officeProgram(),
        {QStringLiteral("-env:UserInstallation=")
             + QUrl::fromLocalFile(m_folder.filePath(QStringLiteral("profile"))).toString(QUrl::FullyEncoded),
         QStringLiteral("--headless"), QStringLiteral("--norestore"), QStringLiteral("--nologo"),
         QStringLiteral("--nolockcheck"), QStringLiteral("--convert-to"), filter, QStringLiteral("--outdir"),
         QFileInfo(result).path(), source});
    if (office.waitForStarted())
        started();
    // It ends with success also when it could not load the file: what counts is whether there is a result.
    return office.waitForSuccess() && QFileInfo(result).size() > 0 ? result : QString();
}

} // namespace Kyte
