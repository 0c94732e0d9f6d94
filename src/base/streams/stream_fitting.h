#pragma once
#include "base/SPMDataStream.h"
#include "base/streams/element_range.h"

namespace vldv::base {

/// `SPMDataStream::convert_stream` for a caller who knows the range of the numbers already.
/// \throws std::bad_alloc with the stream unchanged
void fit_stream(SPMDataStream& stream, SPMVarArrayType target, const element_range& range);

/// True when all numbers of this range are whole and fit an integer type as they stand.
bool fits_as_it_stands(const element_range& range, SPMVarArrayType target) noexcept;

} // namespace vldv::base
