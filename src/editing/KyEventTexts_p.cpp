#include "KyEventTexts_p.h"

#include <QtGlobal>

namespace Kyte {
namespace EventTexts {

struct Texts
{
    const char *name;
    const char *description;
};

static const char UNKNOWN_NAME[] = QT_TRANSLATE_NOOP("Kyte::KyEditorCommon", "Unknown");
static const char UNKNOWN_TYPE[] = QT_TRANSLATE_NOOP("Kyte::KyEditorCommon", "This event is not defined.");
static const char UNKNOWN_ACTION[] =
    QT_TRANSLATE_NOOP("Kyte::KyEditorCommon", "This event action is not defined.");

// The unmatched parenthesis of "Clicked/Touched)" stays: the text is the key of its translations.
static const Texts TYPES[] = {
    {QT_TRANSLATE_NOOP("Kyte::KyEditorCommon", "Ignore"),
     QT_TRANSLATE_NOOP("Kyte::KyEditorCommon",
                       "When this event is specified, events set on the screen will be ignored.")},
    {QT_TRANSLATE_NOOP("Kyte::KyEditorCommon", "Started"),
     QT_TRANSLATE_NOOP("Kyte::KyEditorCommon", "This event occurs when each content is started.")},
    {QT_TRANSLATE_NOOP("Kyte::KyEditorCommon", "Paused"),
     QT_TRANSLATE_NOOP("Kyte::KyEditorCommon", "This event occurs when the sequence is paused.")},
    {QT_TRANSLATE_NOOP("Kyte::KyEditorCommon", "Finished"),
     QT_TRANSLATE_NOOP("Kyte::KyEditorCommon", "This event occurs when each content is finished.")},
    {QT_TRANSLATE_NOOP("Kyte::KyEditorCommon", "Head Transition Finished"),
     QT_TRANSLATE_NOOP("Kyte::KyEditorCommon",
                       "This event occurs when the head transition of each content ends.")},
    {QT_TRANSLATE_NOOP("Kyte::KyEditorCommon", "Tail Transition Started"),
     QT_TRANSLATE_NOOP("Kyte::KyEditorCommon",
                       "This event occurs when the tail transition of each content is started.")},
    {QT_TRANSLATE_NOOP("Kyte::KyEditorCommon", "Time Elapsed"),
     QT_TRANSLATE_NOOP("Kyte::KyEditorCommon",
                       "This event occurs when the specified time elapses from the start of each content.")},
    {QT_TRANSLATE_NOOP("Kyte::KyEditorCommon", "Clicked/Touched)"),
     QT_TRANSLATE_NOOP("Kyte::KyEditorCommon", "This event occurs when the screen is clicked or touched.")},
};

// The last action never got a description of its own.
static const Texts ACTIONS[] = {
    {QT_TRANSLATE_NOOP("Kyte::KyEditorCommon", "Start"),
     QT_TRANSLATE_NOOP("Kyte::KyEditorCommon", "Start if the sequence is stopped or paused.")},
    {QT_TRANSLATE_NOOP("Kyte::KyEditorCommon", "Pause"),
     QT_TRANSLATE_NOOP("Kyte::KyEditorCommon", "Pause the content of sequence.")},
    {QT_TRANSLATE_NOOP("Kyte::KyEditorCommon", "Finish"),
     QT_TRANSLATE_NOOP("Kyte::KyEditorCommon", "Stop the playback of the content.")},
    {QT_TRANSLATE_NOOP("Kyte::KyEditorCommon", "Transit To Next Content"),
     QT_TRANSLATE_NOOP("Kyte::KyEditorCommon", "Transit to the next content and start playback.")},
    {QT_TRANSLATE_NOOP("Kyte::KyEditorCommon", "Transit To Specified Content"),
     QT_TRANSLATE_NOOP("Kyte::KyEditorCommon",
                       "Transit to the content with the specified number and start playback.")},
    {QT_TRANSLATE_NOOP("Kyte::KyEditorCommon", "Hide Screen"),
     QT_TRANSLATE_NOOP("Kyte::KyEditorCommon", "Hide the screen.")},
    {QT_TRANSLATE_NOOP("Kyte::KyEditorCommon", "Show Screen"),
     QT_TRANSLATE_NOOP("Kyte::KyEditorCommon", "Show the screen.")},
    {QT_TRANSLATE_NOOP("Kyte::KyEditorCommon", "Repeat"),
     QT_TRANSLATE_NOOP(
         "Kyte::KyEditorCommon",
         "When content playback is completed, playback will start again. It will not move to the "
         "next content until an event is received.")},
    {QT_TRANSLATE_NOOP("Kyte::KyEditorCommon", "Wait"),
     QT_TRANSLATE_NOOP(
         "Kyte::KyEditorCommon",
         "When the playback of the content is completed, it will be in a wait state. It will not "
         "move to the next content until an event is received.")},
    {QT_TRANSLATE_NOOP("Kyte::KyEditorCommon", "Transit To Same Number As Sender"), UNKNOWN_ACTION},
};

/** The texts of \a value in a table whose first row is the value 1. */
template<int ROWS>
static const Texts &find(const Texts (&table)[ROWS], int value, const Texts &fallback)
{
    return value >= 1 && value <= ROWS ? table[value - 1] : fallback;
}

static const Texts &type(int value)
{
    static const Texts UNKNOWN = {UNKNOWN_NAME, UNKNOWN_TYPE};
    return find(TYPES, value, UNKNOWN);
}

static const Texts &action(int value)
{
    static const Texts UNKNOWN = {UNKNOWN_NAME, UNKNOWN_ACTION};
    return find(ACTIONS, value, UNKNOWN);
}

const char *typeName(int value)
{
    return type(value).name;
}

const char *typeDescription(int value)
{
    return type(value).description;
}

const char *actionName(int value)
{
    return action(value).name;
}

const char *actionDescription(int value)
{
    return action(value).description;
}

} // namespace EventTexts
} // namespace Kyte
