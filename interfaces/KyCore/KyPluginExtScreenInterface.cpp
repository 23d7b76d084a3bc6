#include "KyPluginExtScreenInterface.h"

namespace Kyte {

KyPluginExtScreenInterface::KyPluginExtScreenInterface() = default;

KyPluginExtScreenInterface::~KyPluginExtScreenInterface() = default;

} // namespace Kyte
