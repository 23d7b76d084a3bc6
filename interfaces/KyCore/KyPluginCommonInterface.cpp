#include "KyPluginCommonInterface.h"

namespace Kyte {

KyPluginCommonInterface::KyPluginCommonInterface() = default;

KyPluginCommonInterface::~KyPluginCommonInterface() = default;

} // namespace Kyte
