#pragma once
#include "base/streams/byte_reader.h"
#include "formats/recording.h"
#include "formats/text/number_table.h"
#include "formats/text/text_header.h"

#include <vector>

namespace vldv::formats {

/// Turns a table of numbers into the images or curves it stands for, after the header and, where that leaves it open,
/// after the numbers: a wide table is the rows of an image; x, y and values on a grid are an image for each value;
/// other columns are curves over the first; one column is a curve over the point number.
/// `headings` is empty or has one entry a column. The reason for a refusal has no offset.
base::read_result<recording> shape_table(number_table table, const table_header& header,
                                         const std::vector<column_heading>& headings);

} // namespace vldv::formats
