#pragma once
#include "document/Decorations.h"

#include <cstddef>
#include <optional>
#include <span>
#include <vector>

namespace vldv::recovery {

/// The drawings of an image as bytes, with their selection: "VLDRAW1\n", the groups by key, and the CRC-32 of all that.
std::vector<std::byte> encode(const document::decorations& drawings);
/// Nothing for bytes that `encode` has not made, or of which some are missing or changed.
std::optional<document::decorations> decode_drawings(std::span<const std::byte> bytes);

} // namespace vldv::recovery
