#include "recovery/kept_drawings.h"

#include "recovery/sealed_bytes.h"

#include <bit>
#include <string_view>
#include <utility>

namespace vldv::recovery {

namespace {

constexpr std::string_view signature = "VLDRAW1\n";

using element = document::decoration::element;

void write(byte_writer& out, const element& each)
{
    for (const std::uint32_t number : {each.width, each.height, each.depth, each.mode}) out.number(number);
    out.number(static_cast<std::uint64_t>(each.bytes.size()));
    out.plain(std::as_bytes(std::span(each.bytes)));
}

element element_from(base::byte_reader& in)
{
    element each;
    for (std::uint32_t* const number : {&each.width, &each.height, &each.depth, &each.mode}) *number = in.u32();
    const auto found = in.take(in.u64());
    const auto* const first = reinterpret_cast<const unsigned char*>(found.data());
    each.bytes.assign(first, first + found.size());
    return each;
}

void write(byte_writer& out, const document::decoration& each)
{
    for (const std::uint32_t number : {each.type, std::uint32_t{each.tupleLength}, each.color, each.state})
        out.number(number);
    out.text(each.name);
    out.text(each.text);
    out.number(static_cast<std::uint64_t>(each.coordinates.size()));
    for (const double coordinate : each.coordinates) out.number(std::bit_cast<std::uint64_t>(coordinate));
    out.number(static_cast<std::uint32_t>(each.elements.size()));
    for (const element& one : each.elements) write(out, one);
}

document::decoration decoration_from(base::byte_reader& in)
{
    document::decoration each;
    each.type = in.u32();
    each.tupleLength = in.u32();
    each.color = in.u32();
    each.state = in.u32();
    each.name = text_from(in);
    each.text = text_from(in);
    // No count is believed beyond the bytes that are there.
    for (std::uint64_t count = in.u64(); count > 0 && !in.failed(); --count) each.coordinates.push_back(in.f64());
    for (std::uint32_t count = in.u32(); count > 0 && !in.failed(); --count) each.elements.push_back(element_from(in));
    return each;
}

} // namespace

std::vector<std::byte> encode(const document::decorations& drawings)
{
    byte_writer out;
    out.plain(signature);
    out.number(static_cast<std::uint32_t>(drawings.all().size()));
    for (const auto& [key, group] : drawings.all()) {
        out.text(key);
        out.number(static_cast<std::uint32_t>(group.imageType));
        out.number(static_cast<std::uint32_t>(group.members.size()));
        for (const document::decoration& each : group.members) write(out, each);
    }
    return out.sealed();
}

std::optional<document::decorations> decode_drawings(std::span<const std::byte> bytes)
{
    const auto content = unsealed(bytes);
    base::byte_reader in(content.value_or(std::span<const std::byte>()));
    if (!in.tag(signature)) return std::nullopt;
    document::decorations drawings;
    for (std::uint32_t groups = in.u32(); groups > 0; --groups) {
        std::string key = text_from(in);
        document::decorations::group group;
        group.imageType = static_cast<DecImageType>(in.u32());
        for (std::uint32_t count = in.u32(); count > 0 && !in.failed(); --count)
            group.members.push_back(decoration_from(in));
        if (in.failed() || !drawings.put(std::move(key), std::move(group))) return std::nullopt;
    }
    if (in.failed() || in.remaining() > 0) return std::nullopt;
    return drawings;
}

} // namespace vldv::recovery
