#pragma once
#include "base/SPMVar.h"
#include "vldv_api.h"

#include <span>
#include <string>

namespace vldv::view {

/// One option of a view: its declaration and the text of its default.
struct option_row {
    const char* declaration;
    const char* defaultText;
};

/// A variable declared by a row, with its default.
SPMVar declared_option(const option_row& row);

/// The pattern of `GetOptionsList` for one class: behind `before` options of its bases, which stand in `vars` already,
/// come its own. With a null `vars`, `*count` receives the number of all; otherwise at most `*count` are there
/// afterwards.
void list_options(std::span<const option_row> own, unsigned before, SPMVar* vars, unsigned* count);

} // namespace vldv::view
