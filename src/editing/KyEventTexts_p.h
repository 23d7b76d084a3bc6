#pragma once

namespace Kyte {

/** The source texts of the event vocabulary; KyEditorCommon, in whose context they are, translates them. */
namespace EventTexts {

/** Values of KyEventType::EventType and KyEventAction::EventAction; any other one gives the default texts. */
const char *typeName(int type);
const char *typeDescription(int type);
const char *actionName(int action);
const char *actionDescription(int action);

} // namespace EventTexts
} // namespace Kyte
