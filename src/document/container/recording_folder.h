#pragma once
#include "formats/registry.h"
#include "vldv_api.h"

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

namespace vldv::document {

/// What a folder and those below it hold, lists in the order of names.
struct folder_content {
    struct recording {
        std::filesystem::path path;
        bool isCertain; ///< its content tells its format, or its ending, which only recordings have; else a common name
    };
    struct unreadable {
        std::filesystem::path path; ///< of a file or a folder
        std::string reason;
    };
    std::vector<recording> recordings;   ///< of files that open as one recording the one that stands for them
    std::vector<unreadable> unreadables; ///< nobody knows what these hold
    std::size_t others = 0;              ///< files of which neither content nor name says that they are recordings
};

/// Looks through a folder. Links to folders are not followed.
/// \param isLeftOut  asked for each folder below; may stay empty
VLDV_INTERNAL_API folder_content recordings_in(const std::filesystem::path& folder,
                                               const std::function<bool(const std::filesystem::path&)>& isLeftOut = {});

/// What lies there is a microscope's by its content or its ending, not a plain picture or a table that any program may
/// have written. False where there is no file.
VLDV_INTERNAL_API bool is_recording(const std::filesystem::path& file);

/// The name ends as only those of recordings do, whether the file is there or not.
VLDV_INTERNAL_API bool has_recording_name(const std::filesystem::path& file);

/// Why a folder without recordings, all of which could be read, has nothing to open.
VLDV_INTERNAL_API std::string why_no_recordings(const folder_content& content);

} // namespace vldv::document
