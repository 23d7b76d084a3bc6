#pragma once

#include <QVector>

class QIODevice;

namespace Kyte {

/**
 * The milliseconds that each slide of a flat OpenDocument presentation stays before the next one comes by
 * itself, -1 for a slide that waits for the speaker. Hidden slides are left out.
 */
QVector<int> slideTimings(QIODevice *presentation);

/** Milliseconds of a duration such as "PT00H00M01.5S"; -1 for what is none. */
int durationOf(const QString &text);

} // namespace Kyte
