#pragma once

namespace vldv::document {

/// Stands where an image's number is asked for, and means the texts of the document itself.
constexpr unsigned documentTable = unsigned(-1);

} // namespace vldv::document
