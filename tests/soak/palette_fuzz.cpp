// Any bytes as a palette file: what was read is written and read again, and editing stays within the table.
#include "view/scale/palette_edit.h"
#include "view/scale/palette_file.h"

#include <algorithm>
#include <cstdlib>

using namespace vldv;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    auto table = view::read_palette_file(std::as_bytes(std::span(data, size)));
    if (!table) return 0;
    const auto again = view::read_palette_file(view::write_palette_file(*table));
    if (!again || *again != *table) std::abort();
    view::smooth(*table);
    for (std::size_t i = 0; i + 4 < std::min<std::size_t>(size, 128); ++i)
        view::draw_stroke(*table, view::color_channel::green, {data[i] - 64, data[i + 1]},
                          {data[i + 2] - 64, data[i + 3] * 3 - 256}, {0, 0, 100 + data[i + 4], 60});
    return 0;
}
