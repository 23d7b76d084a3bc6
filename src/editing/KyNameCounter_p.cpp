#include "KyNameCounter_p.h"

#include <QStringList>

#include <algorithm>
#include <vector>

namespace Kyte {
namespace NameCounter {

static const int DIRECT_PROBES = 8;

static bool isDigit(QChar character)
{
    return character >= QLatin1Char('0') && character <= QLatin1Char('9');
}

static bool isCounter(const QString &word)
{
    return word.startsWith(QLatin1Char('(')) && word.endsWith(QLatin1Char(')'))
        && std::all_of(word.cbegin() + 1, word.cend() - 1, isDigit);
}

/**
 * The number in \a name behind \a begin characters, if it is written as numberedName() does and not above
 * \a maximum; else 0.
 */
static int numberIn(const QString &name, int begin, int maximum)
{
    const int end = name.length() - 1;
    if (end <= begin || name.at(end) != QLatin1Char(')') || name.at(begin) == QLatin1Char('0'))
        return 0;
    qint64 number = 0;
    for (int i = begin; i < end; ++i) {
        if (!isDigit(name.at(i)))
            return 0;
        number = number * 10 + (name.at(i).unicode() - '0');
        if (number > maximum)
            return 0;
    }
    return static_cast<int>(number);
}

QString baseName(const QString &name)
{
    QStringList words = name.split(QLatin1Char(' '), Qt::SkipEmptyParts);
    if (words.size() < 2 || !isCounter(words.constLast()))
        return name;
    words.removeLast();
    return words.join(QLatin1Char(' '));
}

QString numberedName(const QString &base, int number)
{
    return base + QLatin1String(" (") + QString::number(number) + QLatin1Char(')');
}

int firstFreeNumber(const QString &base, const QMap<QString, int> &usedNames)
{
    for (int number = 1; number <= DIRECT_PROBES; ++number) {
        if (!usedNames.contains(numberedName(base, number)))
            return number;
    }

    // All names that matter lie together in the map's order, though not in the order of their numbers. Of n
    // names only the numbers up to n can keep the first free one from being lower than n + 1.
    const QString prefix = base + QLatin1String(" (");
    const auto begin = usedNames.lowerBound(prefix);
    const auto end = usedNames.lowerBound(base + QLatin1String(" )")); // ")" is the character behind "("
    std::vector<bool> isTaken(static_cast<std::size_t>(usedNames.size()) + 2);
    for (auto it = begin; it != end; ++it)
        isTaken[numberIn(it.key(), prefix.length(), usedNames.size())] = true;
    int number = DIRECT_PROBES + 1;
    while (number < LIMIT && isTaken[number])
        ++number;
    return number;
}

} // namespace NameCounter
} // namespace Kyte
