#pragma once

namespace Kyte {
/** The applications of the product that keep per-user data of their own. */
namespace ExecFunction {

enum ExecFunctions : int { Editor = 1 };

} // namespace ExecFunction
} // namespace Kyte
