#pragma once

#include <QMap>
#include <QString>

namespace Kyte {

/** The arithmetic of names with a counter, "Screen (2)". */
namespace NameCounter {

/** Counting ends here: the name with one less is the last that can be formed. */
const int LIMIT = 2147483647;

/**
 * \a name without its counter, which is a last word of digits, possibly none, in parentheses; blanks collapse
 * then. A name without a counter, or with nothing before it, comes back as it is, blanks and all.
 */
QString baseName(const QString &name);

/** "base (number)". */
QString numberedName(const QString &base, int number);

/** The lowest number whose name is no key of \a usedNames; linear in the keys that begin with "base (". */
int firstFreeNumber(const QString &base, const QMap<QString, int> &usedNames);

} // namespace NameCounter
} // namespace Kyte
