#pragma once

#include <QProcess>
#include <QString>

namespace Kyte {

/**
 * What the presentation converter says: messages "[code](text)" on its standard output, and the codes it ends
 * with. KyPptConversion, in whose context the texts are, translates them.
 */
namespace ConversionProtocol {

enum class Kind { Information, Error };

/** What a text's "%1" stands for. */
enum class Argument {
    None,
    Number, ///< the first number in the message
    Message ///< the whole message as it was collected
};

/** What a message code means to the listener. */
struct Report
{
    int code;
    Kind kind;
    Argument argument;
    bool hasProgress; ///< the message's first number is a percentage
    bool isCompletion; ///< the converter has made everything
    const char *text;
};

/** Null for a code that reports nothing. */
const Report *findReport(int code);

/** The text for an error of the converter's process, which had \a exitCode when it crashed. */
const char *processErrorText(QProcess::ProcessError error, int exitCode);

/**
 * The code of the first message in \a text, 0 without one; \a message receives its text, which begins with
 * the opening parenthesis. Of an incomplete message both are what there is.
 */
int parseMessage(const QString &text, QString *message);

/** The first number in \a text, -1 without one and for one that is no int. */
int firstNumber(const QString &text);

} // namespace ConversionProtocol
} // namespace Kyte
