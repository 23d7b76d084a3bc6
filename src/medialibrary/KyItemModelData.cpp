#include "KyItemModelData.h"

#include "KyItemRecords_p.h"

#include <QMimeData>

#include <limits>

namespace Kyte {

static const QLatin1String ITEM_MODEL_MIME_TYPE("application/x-qabstractitemmodeldatalist");

template<typename T>
static void give(T *output, const T &value)
{
    if (output)
        *output = value;
}

QVector<QMap<int, QVariant>> KyItemModelData::decodeData(const QMimeData *data,
                                                         QVector<int> *rows,
                                                         QVector<int> *columns,
                                                         int *minRow,
                                                         int *minColumn,
                                                         int *maxRow,
                                                         int *maxColumn)
{
    if (!data)
        return {};

    QVector<QMap<int, QVariant>> result;
    QVector<int> allRows;
    QVector<int> allColumns;
    int top = std::numeric_limits<int>::max();
    int left = std::numeric_limits<int>::max();
    // Callers take maxima of 0 with these minima for "nothing", so that the maxima never start lower.
    int bottom = 0;
    int right = 0;
    const QVector<KyItemRecord> records = readItemRecords(data->data(ITEM_MODEL_MIME_TYPE));
    for (const KyItemRecord &record : records) {
        allRows.append(record.row);
        allColumns.append(record.column);
        result.append(record.values);
        top = qMin(top, record.row);
        left = qMin(left, record.column);
        bottom = qMax(bottom, record.row);
        right = qMax(right, record.column);
    }

    give(rows, allRows);
    give(columns, allColumns);
    give(minRow, top);
    give(minColumn, left);
    give(maxRow, bottom);
    give(maxColumn, right);
    return result;
}

} // namespace Kyte
