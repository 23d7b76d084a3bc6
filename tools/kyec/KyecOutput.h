#pragma once

#include <QJsonDocument>
#include <QString>

namespace Kyte {

/** Writes \a text to the standard output, in UTF-8 whatever the locale says. */
void print(const QString &text);
/** Writes "kyec: ", \a message and a line end to the standard error stream. */
void printError(const QString &message);
/** Prints \a message as an error and answers the exit code of a failed operation. */
int fail(const QString &message);
/** Brings everything out; false when some of it could not be written, a full disk for instance. */
bool finishOutput();

QString jsonText(const QJsonDocument &document);
/** "1 destination", "2 destinations". */
QString counted(int count, const QString &noun);

} // namespace Kyte
