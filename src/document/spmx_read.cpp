#include "document/spmx_read.h"

#include "base/text.h"
#include "document/FileReader.h"
#include "document/formats/zip_reader.h"
#include "document/spmx_description.h"

#include <set>

namespace document {

using formats::zip_reader;

namespace {

constexpr std::uint64_t maxDescriptionBytes = 64u << 20;
constexpr std::uint64_t maxPaddingBytes = 256u << 20; ///< that shapes may ask for beyond what the file holds
constexpr std::uint64_t maxElements = 0xffffffffu;

std::string quoted(const SPMDataStream& stream) { return "\"" + std::string(stream.get_name()) + "\""; }

/// Elements of the dimensions, or nothing when the product leaves 32 bits.
std::optional<std::uint64_t> shape_elements(const SPMDataStream& stream)
{
    std::uint64_t product = 1;
    for (unsigned i = 0; i < stream.get_dimensions_number(); ++i) {
        product *= stream.get_dimension(i).length;
        if (product > maxElements) return std::nullopt;
    }
    return product;
}

/// Elements that the array will have: those of the entry, rounded up to whole sub-images, at least one.
std::uint64_t array_elements(std::uint64_t inEntry, std::uint64_t inShape)
{
    if (inShape == 0) return inEntry;
    return std::max<std::uint64_t>((inEntry + inShape - 1) / inShape, 1) * inShape;
}

/// One stream with the place of its samples, checked.
struct planned_stream {
    described_stream& described;
    zip_reader::entry entry;
    std::uint64_t elements;
};

/// Looks at all streams before any memory is given to one.
std::string plan(spmx_description& description, const zip_reader& archive, std::vector<planned_stream>& out)
{
    std::uint64_t padding = 0;
    std::set<std::string> ids;
    for (described_stream& each : description.streams) {
        const std::string name = quoted(each.stream);
        if (!ids.insert(each.stream.get_name()).second) return "two streams have the id " + name;
        const zip_reader::entry* entry = archive.find(each.rawEntry);
        if (!entry) return "the samples of stream " + name + " are missing (entry \"" + each.rawEntry + "\")";
        const auto inShape = shape_elements(each.stream);
        if (!inShape) return "the dimensions of stream " + name + " multiply to more than 2^32 samples";
        const std::uint64_t size = each.stream.array_element_size();
        const std::uint64_t inEntry = size ? (entry->bytes + size - 1) / size : 0;
        if (inEntry > maxElements) return "stream " + name + " has more than 2^32 samples";
        const std::uint64_t elements = array_elements(inEntry, *inShape);
        if (elements > maxElements) return "stream " + name + " has more than 2^32 samples";
        padding += elements * size - std::min(elements * size, entry->bytes);
        if (padding > maxPaddingBytes) return "the dimensions of stream " + name + " ask for more than the file holds";
        out.push_back({each, *entry, elements});
    }
    return {};
}

std::string load_samples(const planned_stream& planned, const zip_reader& archive, SPMDataStream& stream)
{
    if (stream.data_size() == 0) return {};
    const std::size_t bytes = std::min<std::uint64_t>(planned.entry.bytes, stream.data_size());
    const std::string failure = archive.unpack(planned.entry, {static_cast<std::byte*>(stream.array_data()), bytes});
    return failure.empty() ? failure : "the samples of stream " + quoted(stream) + " cannot be unpacked: " + failure;
}

} // namespace

std::string read_spmx(formats::source& file, VLFileReader& target)
{
    const auto archive = zip_reader::open(file);
    if (!archive) return archive.error().reason;
    const zip_reader::entry* entry = archive->find("main.xml");
    if (!entry) return "there is no description (entry \"main.xml\")";
    if (entry->bytes > maxDescriptionBytes) return "the description is larger than 64 MiB";
    std::string xml(entry->bytes, '\0');
    if (const std::string failure = archive->unpack(*entry, std::as_writable_bytes(std::span(xml))); !failure.empty())
        return "the description cannot be unpacked: " + failure;
    auto description = parse_spmx_description(xml);
    if (!description) return description.error().reason;

    std::vector<planned_stream> streams;
    if (const std::string failure = plan(*description, *archive, streams); !failure.empty()) return failure;
    for (const auto& [key, text] : description->strings) target.setString(key.c_str(), text.c_str(), unsigned(-1));
    std::size_t done = 0;
    for (const planned_stream& planned : streams) {
        SPMDataStream& described = planned.described.stream;
        // Added without samples and grown in place: an image is never in memory twice.
        target.AddNewImages(&described, 1);
        const unsigned image = target.getImagesNumber() - 1;
        SPMDataStream& stream = target.getImage(image);
        if (stream.array_length() != planned.elements) stream.set_array_len(static_cast<unsigned>(planned.elements));
        target.revalidateImage(image);
        for (const auto& [key, text] : planned.described.strings) target.setString(key.c_str(), text.c_str(), image);
        if (std::string failure = load_samples(planned, *archive, stream); !failure.empty()) return failure;
        if (!file.progress(static_cast<double>(++done) / static_cast<double>(streams.size())))
            return "reading was cancelled";
    }
    return {};
}

} // namespace document
