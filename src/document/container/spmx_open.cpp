#include "document/container/spmx_open.h"

#include "base/text.h"
#include "document/container/spmx_limits.h"

#include <optional>
#include <set>

namespace vldv::document {

using formats::zip_reader;

namespace {

std::string quoted(const SPMDataStream& stream) { return "\"" + std::string(stream.get_name()) + "\""; }

/// Elements of the dimensions, or nothing when the product leaves 32 bits.
std::optional<std::uint64_t> shape_elements(const SPMDataStream& stream)
{
    std::uint64_t product = 1;
    for (unsigned i = 0; i < stream.get_dimensions_number(); ++i) {
        product *= stream.get_dimension(i).length;
        if (product > spmx_limits::elements) return std::nullopt;
    }
    return product;
}

/// Elements that the array will have: those of the entry, rounded up to whole sub-images, at least one.
std::uint64_t array_elements(std::uint64_t inEntry, std::uint64_t inShape)
{
    if (inShape == 0) return inEntry;
    return std::max<std::uint64_t>((inEntry + inShape - 1) / inShape, 1) * inShape;
}

/// Looks at one stream after another before any memory is given to one.
class planner {
public:
    explicit planner(const zip_reader& archive_) : archive(archive_) {}

    /// \return empty, or why the stream is refused
    std::string add(const described_stream& each)
    {
        const std::string name = quoted(each.stream);
        if (!ids.insert(each.stream.get_name()).second) return "two streams have the id " + name;
        const zip_reader::entry* const entry = archive.find(each.rawEntry);
        if (!entry) {
            samples.push_back(
                {.missing = "the samples of stream " + name + " are missing (entry \"" + each.rawEntry + "\")"});
            return {};
        }
        const auto inShape = shape_elements(each.stream);
        if (!inShape) return "the dimensions of stream " + name + " multiply to more than 2^32 samples";
        const std::uint64_t size = each.stream.array_element_size();
        const std::uint64_t inEntry = size ? (entry->bytes + size - 1) / size : 0;
        const std::uint64_t elements = inEntry > spmx_limits::elements ? inEntry : array_elements(inEntry, *inShape);
        if (elements > spmx_limits::elements) return "stream " + name + " has more than 2^32 samples";
        // Streams of one entry multiply what the file holds.
        padding += used.insert(entry->index).second ? elements * size - std::min(elements * size, entry->bytes)
                                                    : elements * size;
        if (padding > spmx_limits::paddingBytes)
            return "the dimensions of stream " + name + " ask for more than the file holds";
        samples.push_back({*entry, elements, {}});
        return {};
    }

    std::vector<opened_spmx::place> samples;

private:
    const zip_reader& archive;
    std::uint64_t padding = 0; ///< bytes beyond those of the entries
    std::set<std::string> ids;
    std::set<std::uint64_t> used; ///< entries
};

base::read_result<std::string> read_description(const zip_reader& archive)
{
    const zip_reader::entry* const entry = archive.find("main.xml");
    if (!entry) return base::read_error{0, "there is no description (entry \"main.xml\")"};
    if (entry->bytes > spmx_limits::descriptionBytes)
        return base::read_error{0, "the description is larger than 64 MiB"};
    std::string xml(entry->bytes, '\0');
    if (const std::string failure = archive.unpack(*entry, std::as_writable_bytes(std::span(xml))); !failure.empty())
        return base::read_error{0, "the description cannot be unpacked: " + failure};
    return xml;
}

} // namespace

base::read_result<opened_spmx> open_spmx(formats::source& file)
{
    auto archive = zip_reader::open(file);
    if (!archive) return archive.error();
    const auto xml = read_description(*archive);
    if (!xml) return xml.error();
    auto description = parse_spmx_description(*xml);
    if (!description) return description.error();
    planner plan(*archive);
    for (const described_stream& each : description->streams)
        if (const std::string failure = plan.add(each); !failure.empty()) return base::read_error{0, failure};
    return opened_spmx{std::move(*archive), std::move(*description), std::move(plan.samples)};
}

} // namespace vldv::document
