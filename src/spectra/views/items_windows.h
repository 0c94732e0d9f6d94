#pragma once
#include "spectra/figures/features/items_table.h"

class CImageView;

namespace vldv::spectra {

/// Opens a histogram and a table of items beside a view. Nothing opens for a table without rows.
void open_items(CImageView& from, items_table items);

} // namespace vldv::spectra
