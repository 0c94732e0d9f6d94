#include "document/container/spmx_verify.h"

#include "base/text.h"
#include "document/container/spmx_open.h"

#include <algorithm>
#include <cmath>
#include <sstream>

namespace vldv::document {

namespace {

const spmx_texts noTexts;

std::string id_of(const SPMDataStream& stream) { return "image \"" + base::valid_utf8(stream.get_name()) + "\""; }

std::string text_of(const std::string& key, const std::string& owner)
{
    return "the text \"" + base::valid_utf8(key) + "\" of " + owner;
}

bool same_text(std::string_view written, std::string_view read)
{
    return written == read || base::valid_utf8(written) == read;
}

/// As the format keeps it, six digits.
bool same_number(double written, double read)
{
    const double kept = base::leading_number(base::general(written)).value_or(0.0);
    return kept == read || (std::isnan(kept) && std::isnan(read));
}

bool same_axes(const VLAxesContainer& written, const VLAxesContainer& read)
{
    if (written.get_axes_number() != read.get_axes_number()) return false;
    for (unsigned i = 0; i < written.get_axes_number(); ++i) {
        const VLAxis &a = written.get_axis(i), &b = read.get_axis(i);
        if (!same_number(a.start, b.start) || !same_number(a.scale, b.scale) ||
            !same_text(a.get_units(), b.get_units()))
            return false;
    }
    return true;
}

bool same_names(const std::vector<smart_string>& written, const std::vector<smart_string>& read)
{
    return std::ranges::equal(written, read,
                              [](const auto& a, const auto& b) { return same_text(a.c_str(), b.c_str()); });
}

/// The first text of a table that is another one in the file, or empty.
std::string different_text(const spmx_texts& written, const spmx_texts& read, const std::string& owner)
{
    for (const auto& [key, text] : written) {
        auto found = read.find(key);
        if (found == read.end()) found = read.find(base::valid_utf8(key));
        if (found == read.end() || !same_text(text, found->second)) return text_of(key, owner);
    }
    return written.size() == read.size() ? "" : "the texts of " + owner;
}

/// Size and type of the elements. What is no array has none, and an unknown type none that the format could name.
bool same_elements(const SPMDataStream& written, const SPMDataStream& read)
{
    const bool isKnown = written.is_array() && *array_type_keyword(written.array_type());
    return !isKnown ||
           (written.array_type() == read.array_type() && written.array_element_size() == read.array_element_size());
}

std::string different_dimension(const SPMDataStream& written, const SPMDataStream& read)
{
    const unsigned count = written.get_dimensions_number();
    if (count != read.get_dimensions_number()) return "the dimensions of " + id_of(written);
    for (unsigned i = 0; i < count; ++i) {
        const SPMDataStream::dimension &a = written.get_dimension(i), &b = read.get_dimension(i);
        if (a.length != b.length || !same_axes(a, b))
            return base::formatted("dimension %u of %s with its axes", i, id_of(written).c_str());
    }
    return {};
}

/// The first part of a stream that is another one in the file, by its name, or empty.
std::string different_part(const SPMDataStream& written, const SPMDataStream& read)
{
    const auto part = [&](const char* name) { return std::string(name) + " of " + id_of(written); };
    const auto parameter = [](const SPMDataStream& stream) {
        const char* const name = stream.get_parameter_stream();
        return name ? name : "";
    };
    if (!same_text(written.get_name(), read.get_name())) return part("the id");
    if (!same_text(written.get_description(), read.get_description())) return part("the label");
    if (!same_text(parameter(written), parameter(read))) return part("the name of the parameter stream");
    if (written.offset != read.offset) return part("the offset");
    if (!same_names(written.dependent_vars(), read.dependent_vars())) return part("a name of a dependent variable");
    if (!same_names(written.subimage_names(), read.subimage_names())) return part("a sub-image name");
    if (!same_axes(written.values, read.values)) return part("a value axis");
    if (!same_elements(written, read)) return part("the element type");
    return different_dimension(written, read);
}

/// The first part that is another one in the file, by its name, or empty.
std::string different_content(const spmx_content& written, const spmx_description& read)
{
    if (std::string found = different_text(*written.texts, read.strings, "the document"); !found.empty()) return found;
    for (std::size_t i = 0; i < written.streams.size(); ++i) {
        const spmx_content::stream& each = written.streams[i];
        if (i >= read.streams.size()) return id_of(*each.data);
        std::string found = different_part(*each.data, read.streams[i].stream);
        if (found.empty()) found = different_text(*each.texts, read.streams[i].strings, id_of(*each.data));
        if (!found.empty()) return found;
    }
    return read.streams.size() == written.streams.size() ? "" : "the number of images";
}

/// Whether a description of this content alone is understood and says the same.
bool comes_back(const spmx_content& content)
{
    std::ostringstream out;
    write_spmx_description(out, content, "UTF-8");
    const auto read = parse_spmx_description(base::valid_utf8(out.str()));
    return read && different_content(content, *read).empty();
}

/// The first text that does not come back even when it stands alone in a table of this stream, or of the document.
std::string failing_text(const spmx_texts& texts, const SPMDataStream* stream)
{
    const std::string owner = stream ? id_of(*stream) : "the document";
    for (const auto& each : texts) {
        const spmx_texts alone{each};
        SPMDataStream blank;
        blank.set_name("a");
        spmx_content content{stream ? &noTexts : &alone, {}};
        if (stream) content.streams.push_back({&blank, &alone});
        if (!comes_back(content)) return text_of(each.first, owner);
    }
    return {};
}

/// For a description that is not understood at all: each part is tried by itself.
std::string failing_part(const spmx_content& content)
{
    if (std::string found = failing_text(*content.texts, nullptr); !found.empty()) return found;
    for (const spmx_content::stream& each : content.streams) {
        if (!comes_back({&noTexts, {{each.data, &noTexts}}}))
            return "the id, the label, a name or a unit of " + id_of(*each.data);
        if (std::string found = failing_text(*each.texts, each.data); !found.empty()) return found;
    }
    return {};
}

std::string missing_samples(const spmx_content& written, const opened_spmx& read)
{
    for (std::size_t i = 0; i < written.streams.size(); ++i)
        if (!read.samples[i].missing.empty() || written.streams[i].data->data_size() != read.samples[i].entry.bytes)
            return "the samples of " + id_of(*written.streams[i].data);
    return {};
}

std::string told(const std::string& part)
{
    return part.empty() ? part : part + " would not come back from the file; nothing was saved";
}

} // namespace

std::string spmx_difference(formats::source& packed, const spmx_content& content)
{
    const auto read = open_spmx(packed);
    if (!read) {
        const std::string part = failing_part(content);
        return part.empty() ? "what was packed cannot be read again: " + read.error().reason : told(part);
    }
    const std::string part = different_content(content, read->description);
    return told(part.empty() ? missing_samples(content, *read) : part);
}

std::string longest_text(const spmx_content& content)
{
    std::size_t longest = 0;
    std::string name;
    const auto look = [&](const spmx_texts& texts, const std::string& owner) {
        for (const auto& [key, text] : texts) {
            if (text.size() <= longest) continue;
            longest = text.size();
            name = text_of(key, owner);
        }
    };
    look(*content.texts, "the document");
    for (const spmx_content::stream& each : content.streams) look(*each.texts, id_of(*each.data));
    return name;
}

} // namespace vldv::document
