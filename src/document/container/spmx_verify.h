#pragma once
#include "document/container/spmx_write.h"
#include "formats/source.h"

#include <string>

namespace vldv::document {

/// Reads a container that was just packed as any reader would, without unpacking samples, and compares ids, labels,
/// dimensions, axes, names, texts and the sizes of the samples with what it was packed from. Numbers of axes count as
/// equal within the six digits that the format keeps.
/// \return empty when all would come back, otherwise what would not, by its name
std::string spmx_difference(formats::source& packed, const spmx_content& content);

/// The longest text of all, by its name: what to shorten where a description is too large.
std::string longest_text(const spmx_content& content);

} // namespace vldv::document
