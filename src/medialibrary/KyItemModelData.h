#pragma once

#include "KyEditorCommonExport.h"

#include <QMap>
#include <QVariant>
#include <QVector>

class QMimeData;

namespace Kyte {

/**
 * Decodes what views drag: the payload that QAbstractItemModel::mimeData() makes of rows of an item model.
 *
 * A payload may come from any program, so decoding costs no more than a payload can be worth. What such a
 * payload costs at most, beside the pictures in it, is some hundred bytes for each of its bytes (CBOR and
 * JSON values are the greediest); all its pictures together may take 256 MiB and 32 bytes for each of its
 * bytes. Decoding ends in front of the first record that is cut off or damaged, or that no view would make:
 *
 * - a type that this process does not know or cannot read, or that is known by its number only;
 * - more than 256 values inside each other, more than 4096 stops of a gradient, rectangles of a region or
 *   properties of a text format, a QRegExp that repeats to more than 256 characters, or some 16 such ones;
 * - a picture that is no PNG, or too large as above; an icon whose engine this process lacks;
 * - a time zone named by a path, an easing curve with a function of its own (the payload
 *   has only its address).
 *
 * Everything else is what QDataStream reads, with two exceptions made for safety: an icon entry without a
 * picture stays without one, the file that it names is not opened; an easing curve gets this process's
 * function.
 *
 * Stream operators that an application registers for its own types are trusted. They get no more than 256 KiB
 * of stack, and what they throw ends the decoding; but a variant that such an operator reads is read by Qt
 * alone, with all that Qt believes. Types that may arrive from other programs should not hold variants.
 *
 * May be called from the GUI thread only, because icons and pixmaps are made.
 */
class KYEDITORCOMMON_EXPORT KyItemModelData
{
public:
    /**
     * The roles and values of each record in \a data, in the payload's order; one record is one index.
     *
     * The outputs may be null. \a rows and \a columns get one entry a record, the others the smallest and the
     * largest of them. Without a record the minima are 2147483647 and the maxima 0, which means "nothing"; a
     * maximum is never below 0. Null \a data gives an empty vector and leaves the outputs as they are.
     */
    static QVector<QMap<int, QVariant>> decodeData(const QMimeData *data,
                                                   QVector<int> *rows,
                                                   QVector<int> *columns,
                                                   int *minRow,
                                                   int *minColumn,
                                                   int *maxRow,
                                                   int *maxColumn);
};

} // namespace Kyte
