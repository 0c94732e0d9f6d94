#pragma once
#include "base/streams/byte_reader.h"
#include "formats/source.h"

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace vldv::formats {

/// Lines "key=value" of one section, in order, as UTF-8.
struct nid_section {
    std::vector<std::pair<std::string, std::string>> entries;

    /// Null when there is no such key.
    const std::string* find(std::string_view key) const noexcept;
    /// The value without blanks around it; empty when there is none.
    std::string text(std::string_view key) const;
    /// Nothing when it is missing or no number.
    std::optional<double> number(std::string_view key) const;
    /// A whole number from 0 to 2^32 - 1.
    std::optional<unsigned> count(std::string_view key) const;
};

/// The text header of a Nanosurf file: sections by their names; of two with the same name the first counts.
struct nid_header {
    std::map<std::string, nid_section, std::less<>> sections;
    std::uint64_t dataStart = 0;

    const nid_section* find(std::string_view name) const;
};

/// True when the first section is the one that such a file begins with.
bool is_nid_header(std::string_view head) noexcept;

base::read_result<nid_header> read_nid_header(source& file);

} // namespace vldv::formats
