#pragma once

#include <QHash>
#include <QString>

namespace Kyte {

/**
 * Dates and times as the default locale writes them short, in local time. Texts are kept by the minute, as
 * far as the format shows no seconds: files of a folder are often of the same minutes. For the GUI thread.
 */
class KyDateTexts
{
public:
    /** The text of a time in milliseconds since 1970 in UTC. */
    QString text(qint64 time);

private:
    QHash<qint64, QString> m_texts; // by the time, rounded down to m_precision
    qint64 m_precision = 1; // in milliseconds
    quint32 m_epoch = 0; // KyTextEpoch of the texts
};

} // namespace Kyte
