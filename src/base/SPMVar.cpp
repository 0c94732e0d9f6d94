#include "base/SPMVar.h"

#include "base/streams/array_memory.h"
#include "base/text.h"
#include "base/variables/declaration.h"
#include "base/variables/enum_items.h"

#include <array>
#include <atomic>
#include <cmath>
#include <cstdarg>
#include <cstring>
#include <limits>
#include <stdexcept>
#include <utility>

using namespace vldv;

namespace {

struct array_type_row {
    const char* keyword;
    unsigned size;
};

constexpr std::array<array_type_row, 11> arrayTypes = {{
    {"void", 0},
    {"int8", 1},
    {"uint8", 1},
    {"int16", 2},
    {"uint16", 2},
    {"int32", 4},
    {"uint32", 4},
    {"int64", 8},
    {"uint64", 8},
    {"float32", 4},
    {"float64", 8},
}};

char* copied(std::string_view text)
{
    char* copy = static_cast<char*>(VLAllocator::operator new(text.size() + 1));
    std::memcpy(copy, text.data(), text.size());
    copy[text.size()] = '\0';
    return copy;
}

void replace_text(char*& slot, const char* text)
{
    char* copy = text && *text ? copied(text) : nullptr;
    VLAllocator::operator delete(slot);
    slot = copy;
}

// 0 where the limits allow it, else the finite limit, the lower one first.
double default_number(const SPMVar::number_limits& limits) noexcept
{
    const bool excludesZero = limits.minimum > 0.0 || limits.maximum < 0.0;
    if (!excludesZero) return SPMVar::within_limits(0.0, limits);
    return SPMVar::within_limits(std::isfinite(limits.minimum) ? limits.minimum : limits.maximum, limits);
}

std::string bytes_as_text(const void* data, std::size_t size)
{
    constexpr char digits[] = "0123456789abcdef";
    std::string out;
    out.reserve(2 * size);
    for (std::size_t i = 0; i < size; ++i) {
        const auto byte = static_cast<const unsigned char*>(data)[i];
        out += {digits[byte >> 4], digits[byte & 15]};
    }
    return out;
}

bool text_as_bytes(std::string_view text, std::vector<unsigned char>& out)
{
    const auto digit = [](char c) {
        if (c >= '0' && c <= '9') return c - '0';
        if (c >= 'a' && c <= 'f') return c - 'a' + 10;
        if (c >= 'A' && c <= 'F') return c - 'A' + 10;
        return -1;
    };
    if (text.size() % 2) return false;
    out.reserve(text.size() / 2);
    for (std::size_t i = 0; i < text.size(); i += 2) {
        const int high = digit(text[i]), low = digit(text[i + 1]);
        if (high < 0 || low < 0) return false;
        out.push_back(static_cast<unsigned char>(high * 16 + low));
    }
    return true;
}

} // namespace

namespace vldv {

unsigned element_size(SPMVarArrayType type) noexcept { return type < arrayTypes.size() ? arrayTypes[type].size : 0; }

const char* array_type_keyword(SPMVarArrayType type) noexcept
{
    return type < arrayTypes.size() ? arrayTypes[type].keyword : "";
}

bool array_type_from_keyword(const char* keyword, SPMVarArrayType& type) noexcept
{
    for (unsigned i = 0; i < arrayTypes.size(); ++i) {
        if (std::strcmp(arrayTypes[i].keyword, keyword) != 0) continue;
        type = static_cast<SPMVarArrayType>(i);
        return true;
    }
    return false;
}

} // namespace vldv

SPMVar::SPMVar() noexcept
{
    std::memset(&value, 0, sizeof value);
    std::memset(&limits, 0, sizeof limits);
}

SPMVar::SPMVar(const SPMVar& other) : SPMVar() { copy_value(other); }

SPMVar::SPMVar(SPMVar&& other) noexcept : SPMVar() { take(other); }

SPMVar::~SPMVar() { SPMVar::Destroy(); }

SPMVar& SPMVar::operator=(const SPMVar& other)
{
    if (this == &other) return *this;
    SPMVar copy(other);
    Destroy();
    take(copy);
    return *this;
}

SPMVar& SPMVar::operator=(SPMVar&& other) noexcept
{
    if (this == &other) return *this;
    Destroy();
    take(other);
    return *this;
}

/// Copies everything into a variable that owns nothing yet; on an exception it owns what was copied so far.
void SPMVar::copy_value(const SPMVar& other)
{
    if (other.name) name = copied(other.name);
    if (other.description_text) description_text = copied(other.description_text);
    if (other.options) options = copied(other.options);
    timestamp = other.timestamp;
    if (other.type == SPM_VAR_STRING) {
        if (other.value.string.text) value.string.text = copied(other.value.string.text);
    } else if (other.type == SPM_VAR_ENUM) {
        items = new enum_items(*other.items);
        value.choice = other.value.choice;
        limits.choice.itemValues = items->numbers.data();
    } else if (other.type == SPM_VAR_ARRAY) {
        value.block = other.value.block;
        value.block.data = base::copy_array(other.value.block.data, other.data_size());
    } else {
        value.number = other.value.number;
        limits.number = other.limits.number;
    }
    type = other.type;
}

/// Moves everything out of another variable into one that owns nothing.
void SPMVar::take(SPMVar& other) noexcept
{
    value = other.value;
    limits = other.limits;
    name = std::exchange(other.name, nullptr);
    description_text = std::exchange(other.description_text, nullptr);
    options = std::exchange(other.options, nullptr);
    items = std::exchange(other.items, nullptr);
    // The type says what of the unions has to be freed: without one the other variable owns nothing of them any more.
    type = std::exchange(other.type, SPM_VAR_NONE);
    timestamp = other.timestamp;
}

void SPMVar::Destroy() noexcept
{
    if (type == SPM_VAR_STRING) VLAllocator::operator delete(value.string.text);
    if (type == SPM_VAR_ARRAY) base::free_array(value.block.data);
    delete std::exchange(items, nullptr);
    VLAllocator::operator delete(std::exchange(name, nullptr));
    VLAllocator::operator delete(std::exchange(description_text, nullptr));
    VLAllocator::operator delete(std::exchange(options, nullptr));
    type = SPM_VAR_NONE;
    timestamp = 0;
    std::memset(&value, 0, sizeof value);
    std::memset(&limits, 0, sizeof limits);
}

void SPMVar::Init(const char* text) { declare(base::parse_declaration(text ? text : "")); }

void SPMVar::declare(const base::declaration& source)
{
    // First: where there is no memory for the samples, the variable stays as it was.
    void* data =
        source.type == SPM_VAR_ARRAY ? base::zeroed_array(std::size_t{source.length} * source.elementSize) : nullptr;
    Destroy();
    type = source.type;
    if (type == SPM_VAR_ARRAY) value.block = {data, source.elementSize, source.length, source.elementType};
    if (type == SPM_VAR_ENUM) {
        items = new enum_items(source.items);
        limits.choice.itemValues = items->numbers.data();
    } else if (type == SPM_VAR_BOOLEAN) {
        limits.number = {0.0, 1.0, 1.0};
    } else if (type == SPM_VAR_INT) {
        limits.number = {std::ceil(source.minimum), std::floor(source.maximum), 1.0};
    } else if (type == SPM_VAR_DOUBLE) {
        limits.number = {source.minimum, source.maximum, source.step};
    }
    if (type == SPM_VAR_DOUBLE || type == SPM_VAR_INT) value.number.value = default_number(limits.number);
    replace_text(name, source.name.c_str());
    replace_text(description_text, source.label.c_str());
    replace_text(options, source.options.c_str());
}

void SPMVar::Init(const char* name_, const char* description_, int type_, ...)
{
    base::declaration source;
    if (name_) source.name = name_;
    if (description_) source.label = description_;
    source.type = static_cast<SPMVarType>(type_);
    std::va_list arguments;
    va_start(arguments, type_);
    switch (type_) {
    case SPM_VAR_DOUBLE:
        source.minimum = va_arg(arguments, double);
        source.maximum = va_arg(arguments, double);
        source.step = va_arg(arguments, double);
        break;
    case SPM_VAR_INT:
        source.minimum = va_arg(arguments, int);
        source.maximum = va_arg(arguments, int);
        break;
    case SPM_VAR_ENUM:
        while (const char* item = va_arg(arguments, const char*)) source.items.push_back(base::parse_item(item));
        break;
    case SPM_VAR_ARRAY:
        source.length = va_arg(arguments, unsigned);
        source.elementSize = va_arg(arguments, unsigned);
        break;
    default:
        break;
    }
    va_end(arguments);
    declare(source);
}

smart_string SPMVar::description() const
{
    base::declaration source;
    source.name = get_name();
    source.label = get_description();
    source.options = get_options();
    source.type = type;
    if (type == SPM_VAR_ENUM) source.items = items->declared;
    if (type == SPM_VAR_ARRAY) {
        source.length = value.block.length;
        source.elementSize = value.block.elementSize;
        source.elementType = value.block.elementType;
        source.shape = shape_words();
    }
    if (type == SPM_VAR_DOUBLE || type == SPM_VAR_INT) {
        source.minimum = limits.number.minimum;
        source.maximum = limits.number.maximum;
        source.step = limits.number.step;
    }
    return base::write_declaration(source);
}

void SPMVar::set_name(const char* text) { replace_text(name, text); }
void SPMVar::set_description(const char* text) { replace_text(description_text, text); }
void SPMVar::set_options(const char* text) { replace_text(options, text); }

bool SPMVar::from_string(const char* text)
{
    if (!text) return false;
    switch (type) {
    case SPM_VAR_BOOLEAN:
        if (const std::string_view word = base::trimmed(text); word == "true" || word == "false") {
            assign_number(word == "true" ? 1.0 : 0.0);
            return true;
        }
        [[fallthrough]];
    case SPM_VAR_DOUBLE:
    case SPM_VAR_INT: {
        const auto number = base::leading_number(text);
        const bool isFree =
            type == SPM_VAR_DOUBLE && std::isinf(limits.number.minimum) && std::isinf(limits.number.maximum);
        if (!number || (std::isnan(*number) && !isFree)) return false; // "nan" lies within no limits
        if (type == SPM_VAR_INT && std::isinf(within_limits(*number, limits.number))) return false;
        assign_number(*number);
        return true;
    }
    case SPM_VAR_STRING:
        set_string(text);
        return true;
    case SPM_VAR_ENUM:
        if (set_enum_name(text)) return true;
        for (unsigned i = 0; i < get_enum_size(); ++i) {
            if (items->texts[i].label != text) continue;
            value.choice.item = i;
            return true;
        }
        return false;
    case SPM_VAR_ARRAY: {
        std::vector<unsigned char> bytes;
        const unsigned size = value.block.elementSize;
        if (!text_as_bytes(base::trimmed(text), bytes)) return false;
        if (size == 0 ? !bytes.empty() : bytes.size() % size != 0) return false;
        const std::size_t count = size ? bytes.size() / size : 0;
        if (count > std::numeric_limits<unsigned>::max()) return false;
        set_array_len(static_cast<unsigned>(count));
        if (!bytes.empty()) std::memcpy(value.block.data, bytes.data(), bytes.size());
        return true;
    }
    default:
        return false;
    }
}

bool SPMVar::from_string(const wchar_t* text)
{
    if (!text) return false;
    char* utf8 = wchar2utf8(text);
    const bool stored = from_string(utf8);
    vlutl_free(utf8);
    return stored;
}

/// The key, or the label of an item whose key an earlier item has already.
smart_string SPMVar::item_text(unsigned item) const
{
    for (unsigned i = 0; i < item && i < get_enum_size(); ++i)
        if (items->texts[i].key == items->texts[item].key) return get_enum_label(item);
    return get_enum_key(item);
}

smart_string SPMVar::as_string() const
{
    switch (type) {
    case SPM_VAR_BOOLEAN:
        return value.number.value != 0.0 ? "true" : "false";
    case SPM_VAR_DOUBLE:
    case SPM_VAR_INT:
        return base::shortest(value.number.value);
    case SPM_VAR_STRING:
        return value.string.text ? value.string.text : "";
    case SPM_VAR_ENUM:
        return item_text(value.choice.item);
    case SPM_VAR_ARRAY:
        return bytes_as_text(value.block.data, data_size());
    default:
        return "";
    }
}

double SPMVar::text_as_number() const noexcept
{
    if (!value.string.text) return 0.0;
    const auto number = base::leading_number(value.string.text);
    return number ? *number : 0.0;
}

unsigned SPMVar::set_enum_val(int index)
{
    if (type == SPM_VAR_INT) {
        assign_number(index);
        return static_cast<unsigned>(static_cast<int>(*this));
    }
    if (type != SPM_VAR_ENUM) return 0;
    if (index >= 0 && static_cast<unsigned>(index) < get_enum_size()) value.choice.item = static_cast<unsigned>(index);
    return value.choice.item;
}

bool SPMVar::set_enum_name(const char* key)
{
    for (unsigned i = 0; i < get_enum_size(); ++i) {
        if (items->texts[i].key != key) continue;
        value.choice.item = i;
        return true;
    }
    return false;
}

unsigned SPMVar::get_enum_size() const noexcept
{
    return type == SPM_VAR_ENUM ? static_cast<unsigned>(items->texts.size()) : 0;
}

const char* SPMVar::get_enum_key(unsigned item) const noexcept
{
    return item < get_enum_size() ? items->texts[item].key.c_str() : "";
}

const char* SPMVar::get_enum_label(unsigned item) const noexcept
{
    return item < get_enum_size() ? items->texts[item].label.c_str() : "";
}

void SPMVar::set_enum_label(unsigned item, const char* label)
{
    if (item >= get_enum_size()) return;
    // The declaration is written from `declared`. There the items that a function supplies are one call, so that new
    // labels of those stand in `texts` alone.
    const base::declared_item before = items->texts[item];
    items->texts[item].label = label;
    for (base::declared_item& declared : items->declared)
        if (declared == before) declared.label = label;
}

const char* SPMVar::set_string(const char* text)
{
    if (type != SPM_VAR_STRING) return nullptr;
    char* copy = copied(text ? text : ""); // first: the text may be our own
    VLAllocator::operator delete(value.string.text);
    return value.string.text = copy;
}

const char* SPMVar::set_string(const wchar_t* text)
{
    char* utf8 = wchar2utf8(text);
    const char* stored = set_string(utf8);
    vlutl_free(utf8);
    return stored;
}

const void* SPMVar::set_array(const void* source, unsigned count, unsigned first)
{
    if (type != SPM_VAR_ARRAY) return nullptr;
    array_value& block = value.block;
    if (count > std::numeric_limits<unsigned>::max() - first) throw std::length_error("array of over 2^32 elements");
    if (first + count > block.length) {
        const std::size_t oldSize = data_size();
        const std::size_t newSize = std::size_t{first + count} * block.elementSize;
        block.data = base::resize_array(block.data, oldSize, newSize, source != nullptr);
        block.length = first + count;
    }
    const std::size_t bytes = std::size_t{count} * block.elementSize;
    if (source && bytes)
        std::memmove(static_cast<char*>(block.data) + std::size_t{first} * block.elementSize, source, bytes);
    return block.data;
}

void SPMVar::set_array_len(unsigned length)
{
    if (type != SPM_VAR_ARRAY) return;
    array_value& block = value.block;
    block.data = base::resize_array(block.data, data_size(), std::size_t{length} * block.elementSize, true);
    block.length = length;
}

void SPMVar::set_array_type(SPMVarArrayType elementType)
{
    if (type == SPM_VAR_ARRAY) value.block.elementType = elementType;
}

std::uint64_t SPMVar::update_timestamp() noexcept
{
    // One counter for all variables of the program: of any two stamps the larger one is the later change, in any list.
    static std::atomic<std::uint64_t> last{0};
    return timestamp = ++last;
}
