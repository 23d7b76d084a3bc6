#pragma once

class QString;

namespace Kyte {

/**
 * How many characters and classes of characters QRegExp makes of \a pattern when it writes its counted
 * repetitions out, which it does at once, or a little more; \a limit + 1 when they are more than \a limit or
 * stand in more than 100 parentheses inside each other.
 */
int regExpPatternSize(const QString &pattern, int limit);

} // namespace Kyte
