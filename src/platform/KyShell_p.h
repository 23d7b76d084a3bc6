#pragma once

#include <QString>

class QWidget;

namespace Kyte {
namespace Shell {

/** Shows a folder in the desktop's file manager; \a parent, which may be null, is the window that asks. */
void openFolder(const QString &absoluteFolder, QWidget *parent);

} // namespace Shell
} // namespace Kyte
