#pragma once

namespace host {

/// Lets option declarations ask for the fonts of the system.
void register_fonts();

} // namespace host
