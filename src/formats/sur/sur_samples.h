#pragma once
#include "formats/source.h"
#include "formats/sur/sur_object.h"

#include <cstdint>
#include <span>
#include <string>

namespace vldv::formats {

/// Fills `out` with the raw bytes of an object's values, which stand at `offset`: as they are, or in zlib streams.
/// `offset` moves behind them. \return the reason of a failure, or an empty text
std::string read_sur_values(source& file, const sur_object& object, std::uint64_t& offset, std::span<std::byte> out);

/// Checks before any memory is asked for that as many values can be there. \return a reason or an empty text
std::string check_sur_values(source& file, const sur_object& object, std::uint64_t offset);

} // namespace vldv::formats
