#include "KyCnvTimings.h"

#include <QHash>
#include <QRegularExpression>
#include <QXmlStreamReader>

#include <limits>

namespace Kyte {

/** What the style of a slide says. */
struct SlideStyle
{
    int timing = -1;
    bool isHidden = false;
};

static SlideStyle slideStyle(const QXmlStreamAttributes &attributes)
{
    SlideStyle style;
    if (attributes.value(QLatin1String("presentation:transition-type")) == QLatin1String("automatic"))
        style.timing = durationOf(attributes.value(QLatin1String("presentation:duration")).toString());
    style.isHidden = attributes.value(QLatin1String("presentation:visibility")) == QLatin1String("hidden");
    return style;
}

QVector<int> slideTimings(QIODevice *presentation)
{
    QVector<int> timings;
    QHash<QString, SlideStyle> styles;
    QString styleName;
    QXmlStreamReader reader(presentation);
    while (!reader.atEnd()) {
        if (reader.readNext() != QXmlStreamReader::StartElement)
            continue;
        const QXmlStreamAttributes attributes = reader.attributes();
        if (reader.qualifiedName() == QLatin1String("style:style")) {
            styleName = attributes.value(QLatin1String("style:name")).toString();
        } else if (reader.qualifiedName() == QLatin1String("style:drawing-page-properties")) {
            styles.insert(styleName, slideStyle(attributes));
        } else if (reader.qualifiedName() == QLatin1String("draw:page")) {
            const SlideStyle style =
                styles.value(attributes.value(QLatin1String("draw:style-name")).toString());
            if (!style.isHidden)
                timings.append(style.timing);
        }
    }
    return timings;
}

int durationOf(const QString &text)
{
    static const QRegularExpression DURATION(
        QStringLiteral("^PT(?:(\\d+)H)?(?:(\\d+)M)?(?:(\\d+(?:\\.\\d+)?)S)?$"));
    const QRegularExpressionMatch match = DURATION.match(text);
    if (!match.hasMatch() || match.lastCapturedIndex() < 1)
        return -1;
    const double seconds = match.captured(1).toDouble() * 3600 + match.captured(2).toDouble() * 60
        + match.captured(3).toDouble();
    return seconds * 1000 < std::numeric_limits<int>::max() ? qRound(seconds * 1000) : -1;
}

} // namespace Kyte
