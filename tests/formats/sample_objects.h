#pragma once
#include "formats/registry.h"
#include "support/sample_checks.h"

namespace test_support {

/// A folder of samples and how its manifest tells of them.
struct sample_set {
    const char* folder;
    SupportedFileTypes type;
    bool byName = false;     ///< images are found by channel and direction, else by their place
    const char* fitted = ""; ///< how files end whose numbers are rounded to steps of 16 bits
    bool isText = false;     ///< numbers of six digits; curves without units
};

/// Compares a row of kind "image", "curve", "curveset", "forcevolume", "spectralmap", "summary" or "picture" with what
/// was read.
/// \param place  of the row among those of its file and kind, from 0
void expect_object(const sample_set& set, const manifest_row& row, std::size_t place,
                   const formats::recording& content);

} // namespace test_support
