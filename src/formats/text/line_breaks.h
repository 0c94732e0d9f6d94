#pragma once
#include <cstddef>
#include <vector>

namespace vldv::formats {

/// Where the lines break rows of known width.
class line_breaks {
public:
    explicit line_breaks(std::size_t columns_) : columns(columns_) {}

    void add(std::size_t fields)
    {
        if (ofFirst == 0) ofFirst = fields;
        // The last line may be shorter; one behind lines that are longer than a row has lost or won numbers.
        const bool mayBeLast = fields < ofFirst && ofFirst <= columns;
        areEqual = areEqual && !hasShortLine && (fields == ofFirst || mayBeLast);
        hasShortLine = hasShortLine || fields < ofFirst;
        areWholeRows = areWholeRows && fields % columns == 0;
        addToRow(fields);
    }
    bool areOrderly() const noexcept { return areEqual || areWholeRows || breakRowsAlike; }

private:
    void addToRow(std::size_t fields)
    {
        if (!breakRowsAlike) return;
        if (!isFirstRowWhole) firstRow.push_back(fields);
        breakRowsAlike = firstRow[lineOfRow] == fields;
        ++lineOfRow;
        inRow += fields;
        if (inRow < columns) return;
        breakRowsAlike = breakRowsAlike && inRow == columns;
        isFirstRowWhole = true;
        inRow = lineOfRow = 0;
    }

    std::size_t columns, ofFirst = 0;
    std::vector<std::size_t> firstRow; ///< numbers of its lines
    std::size_t lineOfRow = 0, inRow = 0;
    bool isFirstRowWhole = false, hasShortLine = false;
    bool areEqual = true, areWholeRows = true, breakRowsAlike = true;
};

} // namespace vldv::formats
