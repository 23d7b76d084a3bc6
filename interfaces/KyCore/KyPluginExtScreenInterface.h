#pragma once

#include <KyCoreExport.h>
#include <KyPluginCommonInterface.h>

namespace Kyte {

class KyPluginGuiInterface;

/** A plug-in that plays a screen of its own and may bring a user interface for it. */
class KYCORE_EXPORT KyPluginExtScreenInterface : public KyPluginCommonInterface
{
public:
    KyPluginExtScreenInterface();
    ~KyPluginExtScreenInterface() override;

    /** The plug-in's user interface, which stays the plug-in's own; null when it has none. */
    virtual KyPluginGuiInterface *guiInterface() = 0;
};

} // namespace Kyte
