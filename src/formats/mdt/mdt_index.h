#pragma once
#include "base/streams/byte_reader.h"
#include "formats/mdt/mdt_frame.h"
#include "formats/source.h"

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace vldv::formats {

/// Where a named block of a frame lies in the file.
struct mdt_block {
    std::uint64_t offset = 0, size = 0;
};

/// By name; of blocks with the same name the first.
using mdt_blocks = std::map<std::string, mdt_block>;

/// Reads the table of named blocks that frames of spectra at points begin with.
base::read_result<mdt_blocks> read_mdt_blocks(source& file, const mdt_frame& frame);

/// A block as text; empty when it is missing or larger than any text is.
std::string read_mdt_block_text(source& file, const mdt_blocks& blocks, const char* name);

/// What the block index.xml tells of the others, its rows in their order. An index of another row is -1 when it is
/// missing or names none that can be.
struct mdt_index {
    struct quantity { // <Name>: what is measured or varied
        std::string name, units;
    };
    struct axis { // <Axis>: equally spaced values of a quantity
        int quantity = -1;
        std::uint64_t count = 0;
        double start = 0.0, stop = 0.0;
    };
    struct numbers { // <Data>: where numbers lie
        std::string block, type;
        std::uint64_t offset = 0, count = 0;
    };
    struct measurement { // <Meas>: one curve
        int quantity = -1, data = -1, axis = -1, pass = -1;
        bool isInverse = false;
    };
    struct point { // <Point>: a place on the sample, and where the list of its measurements lies
        std::string place, block;
        std::uint64_t offset = 0;
    };
    std::vector<quantity> quantities;
    std::vector<axis> axes;
    std::vector<numbers> data;
    std::vector<measurement> measurements;
    std::vector<point> points;
};

base::read_result<mdt_index> read_mdt_index(source& file, const mdt_frame& frame, const mdt_blocks& blocks);

/// For each measurement the number of its point, from 1, or 0 when no point lists it. The list of a point holds indices
/// of measurements as 32-bit numbers, from its offset in its block to that of the next point or to the end.
std::vector<std::size_t> points_of_measurements(source& file, const mdt_blocks& blocks, const mdt_index& index);

} // namespace vldv::formats
