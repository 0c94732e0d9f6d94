#pragma once

namespace vldv::paint {

/// Makes texts drawable in a program that has no windows and no display; does nothing where the toolkit runs already.
/// Once per program, on the thread that draws.
void start_windowless_toolkit();

} // namespace vldv::paint
