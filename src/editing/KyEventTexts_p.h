#pragma once

namespace Kyte {

/** The source texts of the event vocabulary; KyEditorCommon, in whose context they are, translates them. */
namespace EventTexts {

/** Values of KyEventType::EventType and KyEventAction::EventAction; any other one gives the default texts. */
const char *typeName(int value);
const char *typeDescription(int value);
const char *actionName(int value);
const char *actionDescription(int value);

} // namespace EventTexts
} // namespace Kyte
