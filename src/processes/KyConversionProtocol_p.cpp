#include "KyConversionProtocol_p.h"

#include <QRegularExpression>

#include <algorithm>
#include <iterator>

namespace Kyte {
namespace ConversionProtocol {

// Two rows are as they are because applications and translations rely on them: 110, the notice that a video
// begins, is an error, and the time in the text of 112 is never filled in.
static const Report REPORTS[] = {
    {101, Kind::Information, Argument::None, false, false,
     QT_TRANSLATE_NOOP("Kyte::KyPptConversion", "Loading PowerPoint Application...")},
    {102, Kind::Information, Argument::None, false, false,
     QT_TRANSLATE_NOOP("Kyte::KyPptConversion", "PowerPoint Application has been loaded.")},
    {103, Kind::Information, Argument::Number, false, false,
     QT_TRANSLATE_NOOP("Kyte::KyPptConversion", "The number of slides: %1")},
    {110, Kind::Error, Argument::None, false, false,
     QT_TRANSLATE_NOOP("Kyte::KyPptConversion", "Start to create video file.")},
    {111, Kind::Information, Argument::None, true, false,
     QT_TRANSLATE_NOOP("Kyte::KyPptConversion", "Creating video file...")},
    {112, Kind::Information, Argument::None, false, false,
     QT_TRANSLATE_NOOP("Kyte::KyPptConversion", "Total Time: <HH:mm:ss>")},
    {120, Kind::Information, Argument::None, false, false,
     QT_TRANSLATE_NOOP("Kyte::KyPptConversion", "Start to create image file.")},
    {121, Kind::Information, Argument::None, true, false,
     QT_TRANSLATE_NOOP("Kyte::KyPptConversion", "Creating image file...")},
    {192, Kind::Information, Argument::None, false, true,
     QT_TRANSLATE_NOOP("Kyte::KyPptConversion", "Creation Finished.")},
    {200, Kind::Error, Argument::Number, false, false,
     QT_TRANSLATE_NOOP("Kyte::KyPptConversion", "Checking Command Line Arguments is failure. (%1)")},
    {201, Kind::Error, Argument::None, false, false,
     QT_TRANSLATE_NOOP("Kyte::KyPptConversion", "PowerPoint Application has NOT been loaded.")},
    {202, Kind::Error, Argument::None, false, false,
     QT_TRANSLATE_NOOP("Kyte::KyPptConversion", "Can NOT get a presentaion object.")},
    {203, Kind::Error, Argument::None, false, false,
     QT_TRANSLATE_NOOP("Kyte::KyPptConversion", "Can NOT open file.")},
    {204, Kind::Error, Argument::None, false, false,
     QT_TRANSLATE_NOOP("Kyte::KyPptConversion", "Can NOT open slides.")},
    {205, Kind::Error, Argument::None, false, false,
     QT_TRANSLATE_NOOP("Kyte::KyPptConversion", "Can NOT get the number of slides.")},
    {206, Kind::Error, Argument::None, false, false,
     QT_TRANSLATE_NOOP("Kyte::KyPptConversion", "The PPT file has no slide.")},
    {210, Kind::Error, Argument::None, false, false,
     QT_TRANSLATE_NOOP("Kyte::KyPptConversion", "Can NOT start to create video file.")},
    {211, Kind::Error, Argument::None, false, false,
     QT_TRANSLATE_NOOP("Kyte::KyPptConversion", "Video file creation was failed.")},
    {220, Kind::Error, Argument::Message, false, false,
     QT_TRANSLATE_NOOP("Kyte::KyPptConversion", "The slide of %1 creation is failure.")},
};

struct CrashText
{
    int exitCode;
    const char *text;
};

// The converter's error codes negated. Only on Windows, and with some versions of Qt, is an exit
// code below zero a crash; the converter has told the reason before by a message.
static const CrashText CRASHES[] = {
    {-201,
     QT_TRANSLATE_NOOP("Kyte::KyPptConversion",
                       "PowerPoint application was not loaded. It might not have been installed.")},
    {-202, QT_TRANSLATE_NOOP("Kyte::KyPptConversion", "The presentation object can not be got.")},
    {-203, QT_TRANSLATE_NOOP("Kyte::KyPptConversion", "The file can not be opened.")},
    {-204, QT_TRANSLATE_NOOP("Kyte::KyPptConversion", "Slides can not be opened.")},
    {-205, QT_TRANSLATE_NOOP("Kyte::KyPptConversion", "The number of slides can not be got.")},
    {-206, QT_TRANSLATE_NOOP("Kyte::KyPptConversion", "The PPT file has no slide.")},
    {-210, QT_TRANSLATE_NOOP("Kyte::KyPptConversion", "The video file creation can not be started.")},
    {-211, QT_TRANSLATE_NOOP("Kyte::KyPptConversion", "The creation of file failed.")},
};

struct ErrorText
{
    QProcess::ProcessError error;
    const char *text;
};

static const ErrorText ERRORS[] = {
    {QProcess::FailedToStart,
     QT_TRANSLATE_NOOP("Kyte::KyPptConversion",
                       "The process failed to start. Either the invoked program is missing, or you may "
                       "have insufficient permissions to invoke the program.")},
    {QProcess::Crashed,
     QT_TRANSLATE_NOOP("Kyte::KyPptConversion",
                       "The process crashed some time after starting successfully.")},
    {QProcess::Timedout,
     QT_TRANSLATE_NOOP("Kyte::KyPptConversion",
                       "The last waitFor...() function timed out. The state of QProcess is unchanged, and "
                       "you can try calling waitFor...() again.")},
    {QProcess::ReadError,
     QT_TRANSLATE_NOOP("Kyte::KyPptConversion",
                       "An error occurred when attempting to read from the process. For example, the "
                       "process may not be running.")},
    {QProcess::WriteError,
     QT_TRANSLATE_NOOP("Kyte::KyPptConversion",
                       "An error occurred when attempting to write to the process. For example, the "
                       "process may not be running, or it may have closed its input channel.")},
    {QProcess::UnknownError, QT_TRANSLATE_NOOP("Kyte::KyPptConversion", "An unknown error occurred.")},
};

const Report *findReport(int code)
{
    const auto report = std::find_if(std::begin(REPORTS), std::end(REPORTS), [code](const Report &row) {
        return row.code == code;
    });
    return report == std::end(REPORTS) ? nullptr : report;
}

const char *processErrorText(QProcess::ProcessError error, int exitCode)
{
    if (error == QProcess::Crashed) {
        for (const CrashText &crash : CRASHES) {
            if (crash.exitCode == exitCode)
                return crash.text;
        }
    }
    const auto row = std::find_if(std::begin(ERRORS), std::end(ERRORS), [error](const ErrorText &candidate) {
        return candidate.error == error;
    });
    return row == std::end(ERRORS) ? processErrorText(QProcess::UnknownError, 0) : row->text;
}

int parseMessage(const QString &text, QString *message)
{
    message->clear();
    const int begin = text.indexOf(QLatin1Char('['));
    if (begin < 0)
        return 0;
    const int end = text.indexOf(QLatin1Char(']'), begin);
    const int open = end + 1;
    if (end >= 0 && text.midRef(open, 1) == QLatin1String("("))
        *message = text.mid(open, text.indexOf(QLatin1Char(')'), open) - open);
    return text.midRef(begin + 1, end < 0 ? -1 : end - begin - 1).toInt();
}

int firstNumber(const QString &text)
{
    static const QRegularExpression NUMBER(QStringLiteral("(\\d+)"));
    bool ok = false;
    const int number = NUMBER.match(text).captured(1).toInt(&ok);
    return ok ? number : -1;
}

} // namespace ConversionProtocol
} // namespace Kyte
