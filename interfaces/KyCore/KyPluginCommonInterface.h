#pragma once

#include <KyCoreExport.h>

#include <QtGlobal>

namespace Kyte {

/**
 * What every content plug-in of a screen offers. Plug-ins are shared (KyScreen::plugin()), and what else one
 * of them offers is found by a dynamic cast, so each interface class has its type information in this
 * library.
 */
class KYCORE_EXPORT KyPluginCommonInterface
{
    Q_DISABLE_COPY(KyPluginCommonInterface)

public:
    KyPluginCommonInterface();
    virtual ~KyPluginCommonInterface();
};

} // namespace Kyte
