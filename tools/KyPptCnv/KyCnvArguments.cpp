#include "KyCnvArguments.h"

#include <QHash>

#include <algorithm>
#include <functional>
#include <iterator>

namespace Kyte {

static const int MAXIMUM_SIDE = 16384; // pixels
static const QString VIDEO = QStringLiteral("mp4");
static const QString PICTURES[] = {QStringLiteral("png"), QStringLiteral("jpg"), QStringLiteral("bmp")};

using Reader = std::function<bool(const QString &value)>;

static Reader textInto(QString *target)
{
    return [target](const QString &value) {
        *target = value;
        return !value.isEmpty();
    };
}

static Reader numberInto(int *target, int minimum, int maximum)
{
    return [=](const QString &value) {
        bool ok = false;
        *target = value.toInt(&ok);
        return ok && *target >= minimum && *target <= maximum;
    };
}

static bool readFormat(const QString &value, QString *format)
{
    *format = value.toLower();
    return *format == VIDEO
        || std::find(std::begin(PICTURES), std::end(PICTURES), *format) != std::end(PICTURES);
}

static bool readBool(const QString &value, bool *target)
{
    *target = value == QLatin1String("true");
    return *target || value == QLatin1String("false");
}

/** The files are made in the output folder and nowhere else. */
static bool isFileName(const QString &name)
{
    return !name.isEmpty() && !name.contains(QLatin1Char('/')) && !name.contains(QLatin1Char('\\'));
}

bool KyCnvArguments::isVideo() const
{
    return format == VIDEO;
}

int KyCnvArguments::read(const QStringList &arguments)
{
    int width = 1280;
    int height = 720;
    const QHash<QString, Reader> readers = {
        {QStringLiteral("-i"), textInto(&inputPath)},
        {QStringLiteral("-t"),
         [this](const QString &value) {
             return readFormat(value, &format);
         }},
        {QStringLiteral("-d"), textInto(&outputFolder)},
        {QStringLiteral("-o"),
         [this](const QString &value) {
             baseName = value;
             return isFileName(value);
         }},
        {QStringLiteral("-w"), numberInto(&width, 1, MAXIMUM_SIDE)},
        {QStringLiteral("-h"), numberInto(&height, 1, MAXIMUM_SIDE)},
        {QStringLiteral("-sd"), numberInto(&defaultSlideDuration, 1, 24 * 60 * 60)},
        {QStringLiteral("-vr"), numberInto(&verticalResolution, 2, MAXIMUM_SIDE)},
        {QStringLiteral("-fs"), numberInto(&framesPerSecond, 1, 240)},
        {QStringLiteral("-qt"), numberInto(&quality, 0, 100)},
        {QStringLiteral("-ut"),
         [this](const QString &value) {
             return readBool(value, &useTimings);
         }},
    };
    for (int i = 0; i < arguments.size(); i += 2) {
        const auto reader = readers.constFind(arguments.at(i));
        if (reader == readers.constEnd())
            return i + 1;
        if (i + 1 == arguments.size() || !(*reader)(arguments.at(i + 1)))
            return i + 2;
    }
    imageSize = QSize(width, height);
    const bool isComplete =
        !inputPath.isEmpty() && !format.isEmpty() && !outputFolder.isEmpty() && !baseName.isEmpty();
    return isComplete ? 0 : arguments.size() + 1;
}

} // namespace Kyte
