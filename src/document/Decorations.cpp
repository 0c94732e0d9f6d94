#include "document/Decorations.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <iterator>
#include <limits>
#include <new>
#include <span>
#include <stdexcept>
#include <utility>

namespace vldv::document {

namespace {

constexpr std::uint64_t maxBytes = std::numeric_limits<std::ptrdiff_t>::max();
constexpr std::uint32_t black = 0, customIndex = 6;
constexpr std::array<std::uint32_t, 6> indexedColors = {0x0000FF, 0x00FF00, 0xFF0000, 0xFFFFFF, 0x7F7F7F, black};

std::uint32_t color_of(const VLPluginDecoration& record) noexcept
{
    if (record.colorIndex == customIndex) return record.customColor;
    return record.colorIndex < indexedColors.size() ? indexedColors[record.colorIndex] : black;
}

/// Red, white and grey are not looked up: they come back as custom colours.
void set_color(VLPluginDecoration& record, std::uint32_t color) noexcept
{
    for (const std::uint32_t index : {5u, 1u, 2u})
        if (indexedColors[index] == color) {
            record.colorIndex = index;
            return;
        }
    record.colorIndex = customIndex;
    record.customColor = color;
}

unsigned tuple_length(std::uint32_t type) noexcept
{
    // By number of type. Types without coordinates have 0.
    constexpr std::array<unsigned, 13> lengths = {0, 1, 2, 3, 2, 3, 2, 3, 0, 0, 1, 2, 3};
    return type < lengths.size() ? lengths[type] : 0;
}

/// The bytes of a block of these lengths. \throws std::length_error when no memory could hold them
std::vector<unsigned char> copied_bytes(const void* bytes, std::uint32_t width, std::uint32_t height = 1,
                                        std::uint32_t depth = 1)
{
    if (!bytes) return {};
    const std::uint64_t area = std::uint64_t{width} * height;
    if (depth != 0 && area > maxBytes / depth) throw std::length_error("drawing of over 2^63 bytes");
    const auto* first = static_cast<const unsigned char*>(bytes);
    return {first, first + area * depth};
}

template <class Element>
std::span<const Element> elements_of(const VLPluginDecoration& record)
{
    return {static_cast<const Element*>(record.data), record.count};
}

void add(decoration& to, std::initializer_list<double> coordinates, decoration::element element)
{
    to.coordinates.insert(to.coordinates.end(), coordinates);
    to.elements.push_back(std::move(element));
}

void copy_data(const VLPluginDecoration& record, decoration& to)
{
    switch (record.type) {
    case DECORATION_BLOCK:
        for (const decoration_block& one : elements_of<decoration_block>(record))
            add(to, {one.x, one.y}, {one.size, 0, 0, one.mode, copied_bytes(one.bytes, one.size)});
        break;
    case DECORATION_BITMAP:
        for (const decoration_bitmap& one : elements_of<decoration_bitmap>(record))
            add(to, {one.x0, one.y0, one.x1, one.y1},
                {one.width, one.height, 0, one.mode, copied_bytes(one.bytes, one.width, one.height)});
        break;
    case DECORATION_VOLUME:
        for (const decoration_volume& one : elements_of<decoration_volume>(record))
            add(to, {one.x0, one.y0, one.z0, one.x1, one.y1, one.z1},
                {one.width, one.height, one.depth, one.mode,
                 copied_bytes(one.bytes, one.width, one.height, one.depth)});
        break;
    default: {
        const auto* first = static_cast<const double*>(record.data);
        to.coordinates.assign(first, first + std::size_t{record.count} * to.tupleLength);
        break;
    }
    }
}

decoration stored(const VLPluginDecoration& record)
{
    decoration out;
    out.type = record.type;
    out.tupleLength = tuple_length(record.type);
    if (record.name) out.name = record.name;
    if (record.text) out.text = record.text;
    out.color = color_of(record);
    if (out.tupleLength > 0) copy_data(record, out);
    return out;
}

template <class T>
T* allocated(std::size_t count)
{
    if (count == 0) return nullptr;
    void* block = std::calloc(count, sizeof(T));
    if (!block) throw std::bad_alloc();
    return static_cast<T*>(block);
}

const void* bytes_of(const decoration::element& element) noexcept
{
    return element.bytes.empty() ? nullptr : element.bytes.data();
}

/// One block with the points or elements of a decoration; null for none.
void* data_block(const decoration& source, std::uint32_t& count)
{
    const double* at = source.coordinates.data();
    count = static_cast<std::uint32_t>(source.elements.size());
    switch (source.type) {
    case DECORATION_BLOCK: {
        auto* out = allocated<decoration_block>(count);
        for (unsigned i = 0; i < count; ++i, at += 2) {
            const decoration::element& one = source.elements[i];
            out[i] = {at[0], at[1], one.width, one.mode, bytes_of(one)};
        }
        return out;
    }
    case DECORATION_BITMAP: {
        auto* out = allocated<decoration_bitmap>(count);
        for (unsigned i = 0; i < count; ++i, at += 4) {
            const decoration::element& one = source.elements[i];
            out[i] = {at[0], at[1], at[2], at[3], one.width, one.height, one.mode, bytes_of(one)};
        }
        return out;
    }
    case DECORATION_VOLUME: {
        auto* out = allocated<decoration_volume>(count);
        for (unsigned i = 0; i < count; ++i, at += 6) {
            const decoration::element& one = source.elements[i];
            out[i] = {at[0],     at[1],      at[2],     at[3],    at[4],        at[5],
                      one.width, one.height, one.depth, one.mode, bytes_of(one)};
        }
        return out;
    }
    default: {
        if (source.coordinates.empty()) return nullptr;
        count = static_cast<std::uint32_t>(source.coordinates.size() / source.tupleLength);
        auto* out = allocated<double>(source.coordinates.size());
        std::copy(source.coordinates.begin(), source.coordinates.end(), out);
        return out;
    }
    }
}

/// The bytes of an element are as many as its lengths say, or none.
bool has_its_bytes(const decoration::element& element, std::uint32_t type) noexcept
{
    const std::uint64_t area = std::uint64_t{element.width} * (type == DECORATION_BLOCK ? 1 : element.height);
    const std::uint64_t depth = type == DECORATION_VOLUME ? element.depth : 1;
    return element.bytes.empty() || (depth != 0 && area <= maxBytes / depth && area * depth == element.bytes.size());
}

/// The coordinates are those of a decoration of this type.
bool is_whole(const decoration& each) noexcept
{
    if (each.type == DECORATION_END || each.tupleLength != tuple_length(each.type)) return false;
    const bool hasElements = each.type >= DECORATION_BLOCK && each.tupleLength > 0;
    if (!hasElements)
        return each.elements.empty() &&
               (each.tupleLength == 0 ? each.coordinates.empty() : each.coordinates.size() % each.tupleLength == 0);
    return each.coordinates.size() == std::size_t{2} * each.tupleLength * each.elements.size() &&
           std::ranges::all_of(each.elements, [&](const auto& element) { return has_its_bytes(element, each.type); });
}

const char* text_or_null(const std::string& text) noexcept { return text.empty() ? nullptr : text.c_str(); }

} // namespace

void decorations::set(std::string_view key, const VLPluginDecoration* list, unsigned count, DecImageType type)
{
    if (count == 0) {
        if (const auto found = groups.find(key); found != groups.end()) groups.erase(found);
        return;
    }
    // Built aside: the records may point into the group that they replace, and memory may run out.
    group built;
    built.imageType = type;
    for (unsigned i = 0; i < count; ++i)
        if (list[i].type != DECORATION_END && list[i].data) built.members.push_back(stored(list[i]));
    groups.insert_or_assign(std::string(key), std::move(built));
}

bool decorations::put(std::string key, group made)
{
    if (!std::ranges::all_of(made.members, is_whole)) return false;
    groups.insert_or_assign(std::move(key), std::move(made));
    return true;
}

VLPluginDecoration* decorations::copy(std::string_view key, unsigned* count, DecImageType* type) const
{
    if (count) *count = 0;
    const auto found = groups.find(key);
    if (found == groups.end()) return nullptr;
    if (type) *type = found->second.imageType;
    if (found->second.members.empty()) return nullptr;
    const std::deque<decoration>& members = found->second.members;
    // The memory is zeroed, and a record's type is written after its data: wherever filling breaks off, the next record
    // is the end of the list, so that `freeCopy` releases exactly what was made.
    auto* const records = allocated<VLPluginDecoration>(members.size() + 1);
    try {
        for (std::size_t i = 0; i < members.size(); ++i) {
            VLPluginDecoration& record = records[i];
            record.data = data_block(members[i], record.count);
            record.type = members[i].type;
            record.text = text_or_null(members[i].text);
            record.name = text_or_null(members[i].name);
            set_color(record, members[i].color);
        }
    } catch (...) {
        freeCopy(records);
        throw;
    }
    if (count) *count = static_cast<unsigned>(members.size());
    return records;
}

void decorations::freeCopy(VLPluginDecoration* copy) noexcept
{
    if (!copy) return;
    for (VLPluginDecoration* record = copy; record->type != DECORATION_END; ++record) std::free(record->data);
    std::free(copy);
}

std::uint32_t decorations::flags(std::string_view name) const noexcept
{
    if (name.empty()) return 0;
    for (const auto& [key, each] : groups)
        for (const decoration& member : each.members)
            if (member.name == name) return member.state;
    return 0;
}

bool decorations::editBitmap(std::string_view key, const std::function<void(decoration::element&)>& edit)
{
    const auto found = groups.find(key);
    if (found == groups.end()) return false;
    for (decoration& each : found->second.members) {
        if (each.type != DECORATION_BITMAP || each.elements.empty()) continue;
        edit(each.elements.front());
        return true;
    }
    return false;
}

bool decorations::toggle(std::size_t place, std::size_t member) noexcept
{
    if (place >= groups.size()) return false;
    std::deque<decoration>& members = std::next(groups.begin(), static_cast<std::ptrdiff_t>(place))->second.members;
    if (member >= members.size()) return false;
    members[member].state ^= DECORATION_SELECTED;
    return true;
}

bool decorations::apply(ObjectActionType action, std::string_view name)
{
    if (name.empty()) return false;
    bool changed = false;
    const auto change = [&](decoration& member, std::uint32_t state) {
        changed |= member.state != state;
        member.state = state;
    };
    for (auto at = groups.begin(); at != groups.end();) {
        std::deque<decoration>& members = at->second.members;
        std::size_t removed = 0;
        if (action == OBJECT_DELETE)
            removed = std::erase_if(members, [&](const decoration& member) { return member.name == name; });
        changed |= removed > 0;
        for (decoration& member : members) {
            if (member.name != name) continue;
            if (action == OBJECT_CLEAR_STATE) change(member, 0);
            if (action == OBJECT_SELECT) change(member, member.state | DECORATION_SELECTED);
            if (action == OBJECT_DESELECT) change(member, member.state & ~std::uint32_t{DECORATION_SELECTED});
        }
        at = removed > 0 && members.empty() ? groups.erase(at) : std::next(at);
    }
    return changed;
}

} // namespace vldv::document
