#pragma once

#include <QString>

class QWidget;

namespace Kyte {
namespace Shell {

/** Shows the folder \a absoluteFolder in the desktop's file manager; \a parent (may be null) is the asking
 * window. */
void openFolder(const QString &absoluteFolder, QWidget *parent);

} // namespace Shell
} // namespace Kyte
