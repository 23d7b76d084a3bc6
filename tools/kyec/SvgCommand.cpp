#include "KyecArguments.h"
#include "KyecCommand.h"
#include "KyecOutput.h"

#include <KySvgReader.h>

#include <QDir>
#include <QFileInfo>
#include <QLoggingCategory>
#include <QRegularExpression>
#include <QSaveFile>
#include <QSvgRenderer>

#include <algorithm>

namespace Kyte {

static const QString SIZE = QStringLiteral("size");
static const QString OUT = QStringLiteral("out");
static const QString MODE = QStringLiteral("mode");

struct AspectRatio
{
    QLatin1String name;
    Qt::AspectRatioMode mode;
};

static const AspectRatio ASPECT_RATIOS[] = {
    {QLatin1String(""), Qt::KeepAspectRatio}, // without the option
    {QLatin1String("keep"), Qt::KeepAspectRatio},
    {QLatin1String("expand"), Qt::KeepAspectRatioByExpanding},
    {QLatin1String("ignore"), Qt::IgnoreAspectRatio},
};

/** "64x32"; an invalid size for any other text. */
static QSize sizeOf(const QString &text)
{
    static const QRegularExpression pattern(QStringLiteral("\\A([0-9]{1,9})x([0-9]{1,9})\\z"));
    const QRegularExpressionMatch match = pattern.match(text);
    return match.hasMatch() ? QSize(match.captured(1).toInt(), match.captured(2).toInt()) : QSize();
}

static bool write(const QImage &image, const QString &path)
{
    QSaveFile file(path);
    return file.open(QIODevice::WriteOnly) && image.save(&file, "PNG") && file.flush()
        && file.error() == QFileDevice::NoError && file.commit();
}

static int renderFile(const QString &path, const QSize &size, Qt::AspectRatioMode mode, const QString &out)
{
    QLoggingCategory::setFilterRules(QStringLiteral("qt.svg=false")); // what it says is said here
    QSvgRenderer renderer;
    if (!QFileInfo(path).isFile() || !renderer.load(path))
        return fail(QStringLiteral("The file is no readable SVG: %1").arg(QDir::toNativeSeparators(path)));
    const QImage image = KySvgReader::getImage(&renderer, size.width(), size.height(), mode);
    if (image.isNull())
        return fail(QStringLiteral("An image cannot be as large as that."));
    if (!write(image, out))
        return fail(QStringLiteral("The file cannot be written: %1").arg(QDir::toNativeSeparators(out)));
    return Exit_Success;
}

int runSvg(KyecArguments &arguments)
{
    arguments.addOption(SIZE, QStringLiteral("Width and height of the image, as in 64x32."),
                        QStringLiteral("WxH"));
    arguments.addOption(OUT, QStringLiteral("The file to write; one that is there is replaced."),
                        QStringLiteral("PNG"));
    arguments.addOption(MODE,
                        QStringLiteral("What becomes of the aspect ratio: keep (the default), expand "
                                       "or ignore."),
                        QStringLiteral("MODE"));
    if (!arguments.parse(1))
        return arguments.exitCode();
    const QString path = arguments.positional().value(0);
    if (path.isEmpty())
        return arguments.wrongUsage(QStringLiteral("Which file?"));
    const QSize size = sizeOf(arguments.value(SIZE));
    if (size.isEmpty())
        return arguments.wrongUsage(
            QStringLiteral("--size needs a width and a height, as in 64x32, not '%1'.")
                .arg(arguments.value(SIZE)));
    if (arguments.value(OUT).isEmpty())
        return arguments.wrongUsage(QStringLiteral("--out PNG is needed."));
    const QString name = arguments.value(MODE);
    const auto ratio = std::find_if(std::begin(ASPECT_RATIOS), std::end(ASPECT_RATIOS),
                                    [&name](const AspectRatio &candidate) {
                                        return candidate.name == name;
                                    });
    if (ratio == std::end(ASPECT_RATIOS))
        return arguments.wrongUsage(QStringLiteral("There is no mode '%1'.").arg(name));
    return renderFile(path, size, ratio->mode, arguments.value(OUT));
}

} // namespace Kyte
