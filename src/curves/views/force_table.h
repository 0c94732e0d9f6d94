#pragma once
#include <functional>
#include <optional>
#include <string>

class CDocument;

namespace vldv::curves {

/// Analyses curves one after the other, with progress, and puts their rows into the document's window of texts below
/// its heading. Rows that were done stay when the user cancels.
/// \param row  of a curve counted from 0; nothing where it was not measured
void append_force_rows(CDocument* document, const std::string& heading, unsigned curves,
                       const std::function<std::optional<std::string>(unsigned curve)>& row);

} // namespace vldv::curves
