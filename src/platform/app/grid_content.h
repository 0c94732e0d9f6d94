#pragma once
#include "vldv_api.h"

#include <cstddef>
#include <string>
#include <vector>

namespace vldv {

/// What a grid shows. It is asked for the cells in sight alone, so that a million rows cost no more than a screen of
/// them.
class VLDV_API IGridContent {
public:
    virtual std::size_t gridRows() const = 0;
    virtual const std::vector<std::wstring>& gridHeadings() const = 0;
    virtual std::wstring gridCell(std::size_t row, std::size_t column) const = 0;
    /// The row stands back behind the others.
    virtual bool isGridRowGrey(std::size_t) const { return false; }
    /// Rows that stay in sight below the others: a name, then a cell for each column.
    virtual std::vector<std::vector<std::wstring>> gridFooter() const { return {}; }
    /// What is told in a line below all.
    virtual std::wstring gridNote() const { return {}; }

protected:
    ~IGridContent() = default;
};

} // namespace vldv
