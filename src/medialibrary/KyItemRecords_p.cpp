#include "KyItemRecords_p.h"

#include "KyVariantCheck_p.h"

#include <QDataStream>

namespace Kyte {

// Every record is walked over first; what QDataStream reads then has nothing in it that QDataStream trips
// over, and a stream of that record alone cannot run into the next one.
static void appendRecords(const QByteArray &payload, QVector<KyItemRecord> *records)
{
    KyVariantCheck check(payload);
    while (!check.atEnd()) {
        const int begin = check.position();
        if (!check.skipInt() || !check.skipInt() || !check.skipRoleMap())
            return;
        QDataStream stream(
            QByteArray::fromRawData(check.bytes().constData() + begin, check.position() - begin));
        KyItemRecord record;
        stream >> record.row >> record.column >> record.values;
        if (stream.status() != QDataStream::Ok || !stream.atEnd())
            return;
        records->append(record);
    }
}

QVector<KyItemRecord> readItemRecords(const QByteArray &payload)
{
    QVector<KyItemRecord> records;
    try {
        appendRecords(payload, &records);
    } catch (...) {
        // A type of the application may throw whatever it likes. The records in front of it are whole.
    }
    return records;
}

} // namespace Kyte
