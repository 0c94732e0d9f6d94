#pragma once
#include "formats/registry.h"
#include "vldv_api.h"

namespace vldv::formats {

/// What people are told of a format: its own name, and what of it is read. The registry's row has the name that the
/// file dialog shows, which for some extensions is that of another program.
struct format_note {
    SupportedFileTypes type;
    const char* title;  ///< "RHK SPM32"
    const char* told;   ///< what in a file tells the format
    const char* reads;  ///< what becomes of its content
    const char* leaves; ///< what is known not to be read; may be empty
};

/// The note of a format; every row of the registry has one.
VLDV_INTERNAL_API const format_note& note_of(SupportedFileTypes type) noexcept;

} // namespace vldv::formats
