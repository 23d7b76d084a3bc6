#pragma once

#include "KyChildNames_p.h"

#include <memory>

namespace Kyte {

/** What a node keeps once it was asked for; most nodes are never asked. */
struct KyFileSystemItemCache
{
    std::unique_ptr<KyChildNames> names;
    quint32 textsEpoch = 0; // KyTextEpoch of the texts, 0 for none
    QString size;
    QString type;
    QString modified;
};

} // namespace Kyte
