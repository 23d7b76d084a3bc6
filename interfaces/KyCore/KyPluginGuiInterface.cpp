#include "KyPluginGuiInterface.h"

namespace Kyte {

KyPluginGuiInterface::KyPluginGuiInterface() = default;

KyPluginGuiInterface::~KyPluginGuiInterface() = default;

} // namespace Kyte
