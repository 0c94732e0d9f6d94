#pragma once
#include "vldv_api.h"

class CWinApp;

namespace vldv::document {
struct example_row;
}

namespace vldv::entry {

/// Opens a bundled example from the folder "velmira/examples" in the user's data folder, where it is written first when
/// it is not there. What a user saved over it stays.
VLDV_INTERNAL_API void open_example(CWinApp& app, const document::example_row& row);

} // namespace vldv::entry
