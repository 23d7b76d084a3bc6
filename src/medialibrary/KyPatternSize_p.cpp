#include "KyPatternSize_p.h"

#include <QString>
#include <QVector>

namespace Kyte {

static const int MAX_PARENTHESES = 100;

// Where the class of characters that begins at \a begin ends.
static int classEnd(const QString &pattern, int begin)
{
    int i = begin + 1;
    if (pattern.midRef(i, 1) == QLatin1String("^"))
        ++i;
    if (pattern.midRef(i, 1) == QLatin1String("]")) // as the first one it is only a character
        ++i;
    for (; i < pattern.size() && pattern.at(i) != QLatin1Char(']'); ++i) {
        if (pattern.at(i) == QLatin1Char('\\'))
            ++i;
    }
    return i;
}

// The larger one of the numbers in braces that begin at \a begin.
static qint64 repetitions(const QString &pattern, int begin, int *end)
{
    qint64 largest = 1;
    qint64 number = 0;
    int i = begin + 1;
    for (; i < pattern.size() && pattern.at(i) != QLatin1Char('}'); ++i) {
        const int digit = pattern.at(i).digitValue();
        number = digit < 0 ? 0 : qMin<qint64>(number * 10 + digit, 1000000);
        largest = qMax(largest, number);
    }
    *end = i;
    return largest;
}

int regExpPatternSize(const QString &pattern, int limit)
{
    QVector<qint64> sums{0}; // of the parentheses that are open
    qint64 atom = 0; // what a repetition would repeat
    for (int i = 0; i < pattern.size(); ++i) {
        const QChar character = pattern.at(i);
        if (character == QLatin1Char('(')) {
            sums.append(0);
        } else if (character == QLatin1Char('{')) {
            const qint64 times = repetitions(pattern, i, &i);
            sums.last() += atom * (times - 1);
            atom *= times;
        } else if (character == QLatin1Char(')') && sums.size() > 1) {
            atom = qMax<qint64>(sums.takeLast(), 1);
            sums.last() += atom;
        } else {
            if (character == QLatin1Char('['))
                i = classEnd(pattern, i);
            else if (character == QLatin1Char('\\'))
                ++i;
            atom = 1;
            ++sums.last();
        }
        if (sums.last() > limit || sums.size() > MAX_PARENTHESES)
            return limit + 1;
    }
    qint64 size = 0;
    for (qint64 sum : qAsConst(sums))
        size += sum;
    return int(qMin<qint64>(size, limit + 1));
}

} // namespace Kyte
