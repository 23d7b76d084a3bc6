#pragma once

#include <KyCoreExport.h>

#include <QtGlobal>

namespace Kyte {

/** The user interface that a plug-in brings for its settings; see KyPluginExtScreenInterface::guiInterface().
 */
class KYCORE_EXPORT KyPluginGuiInterface
{
    Q_DISABLE_COPY(KyPluginGuiInterface)

public:
    KyPluginGuiInterface();
    virtual ~KyPluginGuiInterface();
};

} // namespace Kyte
