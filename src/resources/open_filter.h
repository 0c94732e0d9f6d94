#pragma once

namespace vldv {

/// Filter of the dialog that opens files, string 1025: "name|patterns|name|patterns||", all known formats first.
extern const char* const openFilterText;

} // namespace vldv
