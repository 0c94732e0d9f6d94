#pragma once
#include "base/streams/byte_reader.h"
#include "formats/shared/sample_numbers.h"
#include "formats/source.h"

#include <array>
#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace vldv::formats {

/// What the headers and texts of a wave say; sizes are checked against the file.
struct ibw_wave {
    byte_order order = byte_order::little;
    unsigned version = 0;
    std::string name, units;
    SPMVarArrayType type = SPM_ARRAY_VOID; ///< of a number, of one part when they are complex
    bool isComplex = false, isText = false;
    std::uint64_t points = 0, dataAt = 0;
    std::vector<std::uint64_t> dimensions; ///< none is 0; the first is the fastest
    std::array<double, 4> step{1, 1, 1, 1}, start{};
    std::array<std::string, 4> dimensionUnits;
    std::array<std::vector<std::string>, 4> labels; ///< of a dimension's items, without the one of all
    std::map<std::string, std::string> note;        ///< as `parse_ibw_note` gives it
    std::uint32_t created = 0;                      ///< seconds since 1904; 0 when not known
    std::string footer;                             ///< last bytes of the file
    std::vector<std::string> notes;                 ///< what of the file is lost
};

/// True when version and checksum are right; `order` receives the order of the bytes.
bool is_ibw_header(std::span<const std::byte> head, byte_order& order, unsigned& version);

base::read_result<ibw_wave> read_ibw_wave(source& file);

} // namespace vldv::formats
