#include "KyDateTexts_p.h"

#include "KyTextEpoch_p.h"

#include <QDateTime>

namespace Kyte {

static const int MAXIMUM_TEXTS = 10000;
static const qint64 SECOND = 1000; // milliseconds
static const qint64 MINUTE = 60 * SECOND;

/** Since 1973 every zone is a number of whole minutes away from UTC, and changes that at a whole minute. */
static const qint64 WHOLE_MINUTES_SINCE = 94694400000;

QString KyDateTexts::text(qint64 time)
{
    const quint32 epoch = KyTextEpoch::current();
    if (m_epoch != epoch) {
        const QString format = QLocale().dateTimeFormat(QLocale::ShortFormat);
        m_precision = format.contains(QLatin1Char('z')) ? 1
            : format.contains(QLatin1Char('s'))         ? SECOND
                                                        : MINUTE;
        m_texts.clear();
        m_epoch = epoch;
    }
    if (m_texts.size() >= MAXIMUM_TEXTS)
        m_texts.clear();
    const qint64 precision = time >= WHOLE_MINUTES_SINCE ? m_precision : 1;
    QString &text = m_texts[time - time % precision];
    if (text.isNull()) {
        text = QLocale().toString(QDateTime::fromMSecsSinceEpoch(time), QLocale::ShortFormat);
        text.squeeze();
    }
    return text;
}

} // namespace Kyte
