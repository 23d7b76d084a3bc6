#pragma once

#include <QByteArray>
#include <QMap>
#include <QVariant>
#include <QVector>

namespace Kyte {

/** One index of a dragged selection. */
struct KyItemRecord
{
    int row = 0;
    int column = 0;
    QMap<int, QVariant> values;
};

/**
 * The records at the beginning of \a payload that are whole and harmless, each read as QDataStream reads it.
 * Throws nothing: memory that cannot be had ends the reading like damage does.
 */
QVector<KyItemRecord> readItemRecords(const QByteArray &payload);

} // namespace Kyte
