#pragma once
#include "base/VLAllocator.h"
#include "base/smart_string.h"
#include "base/streams/rounding.h"
#include "vldv_api.h"

#include <cmath>
#include <cstdint>
#include <limits>
#include <string>

namespace vldv::base {
struct declaration;
}

/// What a variable holds. The types below `string` are numeric: one representation, other texts.
enum SPMVarType : std::uint32_t {
    SPM_VAR_NONE = 0, ///< never initialised, or a declaration that was not understood
    SPM_VAR_DOUBLE = 1,
    SPM_VAR_INT = 2,     ///< an integer in the same 64-bit float slot
    SPM_VAR_BOOLEAN = 3, ///< 0 or 1 in the same slot
    SPM_VAR_STRING = 4,
    SPM_VAR_ENUM = 5,
    SPM_VAR_ARRAY = 6,
};

/// Element type of an array.
enum SPMVarArrayType : std::uint32_t {
    SPM_ARRAY_VOID = 0, ///< untyped blocks of the element size
    SPM_ARRAY_INT8 = 1,
    SPM_ARRAY_UINT8 = 2,
    SPM_ARRAY_INT16 = 3, ///< every height image
    SPM_ARRAY_UINT16 = 4,
    SPM_ARRAY_INT32 = 5,
    SPM_ARRAY_UINT32 = 6,
    SPM_ARRAY_INT64 = 7,
    SPM_ARRAY_UINT64 = 8,
    SPM_ARRAY_FLOAT32 = 9,
    SPM_ARRAY_FLOAT64 = 10,
};

namespace vldv {

/// Bytes of one element; 0 for `void` and for numbers that are no type.
VLDV_API unsigned element_size(SPMVarArrayType type) noexcept;
/// "void", "int8" … "float64"; empty for numbers above 10.
VLDV_INTERNAL_API const char* array_type_keyword(SPMVarArrayType type) noexcept;
/// Inverse of `array_type_keyword`; false leaves `type` alone.
VLDV_API bool array_type_from_keyword(const char* keyword, SPMVarArrayType& type) noexcept;

} // namespace vldv

/// A tagged value: number, text, choice or block of samples, with its declaration (name, label, limits, expressions).
/// Copies and moves are deep. Fields are public because the accessors that decide every option are inlined into all
/// callers: one test of the tag and one load.
class VLDV_API SPMVar : public VLAllocator {
public:
    struct number_value {
        double value;
    };
    struct text_value {
        char* text; ///< zero-terminated, may be null
    };
    struct enum_value {
        unsigned item; ///< index of the current item
    };
    struct array_value {
        void* data;
        unsigned elementSize; ///< bytes
        unsigned length;      ///< elements
        SPMVarArrayType elementType;
    };
    struct number_limits {
        double minimum; ///< -infinity when there is none
        double maximum; ///< +infinity when there is none
        double step;    ///< 0 when any value between the limits is allowed
    };
    struct enum_limits {
        double* itemValues; ///< one a item, at least one entry
    };
    struct enum_items; // keys and labels

    SPMVar() noexcept;
    SPMVar(const SPMVar& other);
    SPMVar(SPMVar&& other) noexcept;
    virtual ~SPMVar();
    SPMVar& operator=(const SPMVar& other);
    SPMVar& operator=(SPMVar&& other) noexcept;

    /// Parses a declaration and replaces all earlier content; the value becomes the type's default: 0, or the minimum
    /// when the limits exclude 0. Text that is not understood leaves a variable of type 0. See docs/declarations.md.
    /// An array is allocated with the declared length, its elements zero.
    /// \throws std::bad_alloc when an array does not fit into memory
    virtual void Init(const char* declaration);
    void Init(const std::string& declaration) { Init(declaration.c_str()); }
    /// Typed form; `type_` is an SPMVarType. Trailing arguments: `double` three doubles (minimum, maximum, step); `int`
    /// two ints (minimum, maximum); `boolean`, `string` none; `enum` item texts `key` or `key(label)`, closed by a null
    /// pointer; `array` unsigned length, unsigned element size, the element type being `void`.
    void Init(const char* name_, const char* description_, int type_, ...);
    /// Frees text and array and returns to the uninitialised state.
    virtual void Destroy() noexcept;

    void set_name(const char* text);
    void set_description(const char* text);
    /// Display and evaluation expressions, separated by a comma: ",#TopMarginOpt" attaches an evaluation.
    void set_options(const char* text);
    const char* get_name() const noexcept { return name ? name : ""; }
    const char* get_description() const noexcept { return description_text ? description_text : ""; }
    const char* get_options() const noexcept { return options ? options : ""; }

    /// Stores what the text says, within the limits. Numbers may be decimal or hexadecimal, with anything after them;
    /// an enum takes a key or a label, an array the hexadecimal bytes that `as_string` writes.
    /// \return false when the text cannot be parsed; the value stays
    bool from_string(const char* text);
    bool from_string(const wchar_t* text);
    /// The value as text, the inverse of `from_string`: the shortest number that reads back equal, "true" or "false",
    /// the text itself, the item's key, the array's bytes in hexadecimal.
    smart_string as_string() const;
    /// The declaration: `Init` on a fresh variable with this text gives an equal variable. The value is not part of it.
    virtual smart_string description() const;

    inline operator double() const;
    inline operator bool() const;
    /// Numbers truncated (saturating), an enum's index, a text parsed.
    inline operator int() const;
    /// Stores a number within limits and step; 0.0 and no change for the types above `boolean`.
    /// \return the stored value
    inline double operator=(double x);
    inline double operator=(int x);

    /// Selects the item with this index (out of range: no change), or stores the number in an `int` variable.
    /// \return the item that is selected now, or the stored number
    unsigned set_enum_val(int index);
    /// Selects the item with this key. \return false when there is none
    bool set_enum_name(const char* key);
    unsigned get_enum_size() const noexcept;
    const char* get_enum_key(unsigned item) const noexcept;
    const char* get_enum_label(unsigned item) const noexcept;
    /// Another label for a choice, as for another language; an item past the end is passed over. The declaration
    /// follows, but not for items that a function supplied.
    void set_enum_label(unsigned item, const char* label);

    /// Replaces the text of a `string` variable. \return the stored text, null for other types
    const char* set_string(const char* text);
    const char* set_string(const wchar_t* text);

    /// Copies `count` elements to element `first` on, growing the array when needed; a null `source` leaves new
    /// elements uninitialised. \return the array's data, null for other types
    const void* set_array(const void* source, unsigned count, unsigned first);
    /// Resizes; elements up to the smaller length stay, new ones are zero.
    /// \throws std::bad_alloc with the array unchanged
    void set_array_len(unsigned length);
    /// Names the elements otherwise without touching data or element size.
    void set_array_type(SPMVarArrayType elementType);
    /// Changes the element type in place. To a float type, and between integers of which the target holds all values
    /// of the source, the numbers stay and so do the bounds. To any other integer type [lo, hi] is mapped linearly onto
    /// its full range, rounding halves up, and the bounds become that range; elements outside [lo, hi] are clamped, NaN
    /// becomes the lowest, and an empty or reversed range (lo >= hi) gives all zeros and the bounds 0 and 0.
    /// A null bound stands for that end of the data's range. To its own type nothing changes, bounds included; nor
    /// does anything from or to `void` or a type of another element size than the array's. 64-bit integers go through
    /// double precision. \throws std::bad_alloc with the array unchanged
    void convert_array(SPMVarArrayType target, double* lo, double* hi);

    /// Stamps the variable as changed now; stamps grow strictly within the process. \return the stamp
    std::uint64_t update_timestamp() noexcept;

    /// The allowed value nearest to `x`: clamped, then rounded to a whole number of steps above the minimum (above 0
    /// when there is none), halves up, and clamped again.
    static inline double within_limits(double x, const number_limits& limits) noexcept;

    bool is_array() const noexcept { return type == SPM_VAR_ARRAY; }
    /// Bytes of the array; 0 for other types.
    std::size_t data_size() const noexcept
    {
        return is_array() ? std::size_t{value.block.length} * value.block.elementSize : 0;
    }
    void* array_data() noexcept { return is_array() ? value.block.data : nullptr; }
    const void* array_data() const noexcept { return is_array() ? value.block.data : nullptr; }
    unsigned array_length() const noexcept { return is_array() ? value.block.length : 0; }
    unsigned array_element_size() const noexcept { return is_array() ? value.block.elementSize : 0; }
    SPMVarArrayType array_type() const noexcept { return is_array() ? value.block.elementType : SPM_ARRAY_VOID; }

    union value_slot {
        number_value number;
        text_value string;
        enum_value choice;
        array_value block;
    } value;
    union limits_slot {
        number_limits number;
        enum_limits choice;
    } limits;
    char* name = nullptr;             ///< identifier in declarations and files
    char* description_text = nullptr; ///< label shown to people; null hides the variable
    char* options = nullptr;          ///< "display,evaluation"
    SPMVarType type = SPM_VAR_NONE;
    std::uint64_t timestamp = 0;

protected:
    /// Replaces everything by what a parsed declaration says.
    void declare(const vldv::base::declaration& source);
    /// The words in an array declaration's size field behind element size and type; the base has none.
    virtual std::string shape_words() const { return {}; }

private:
    inline double assign_number(double x) noexcept;
    double text_as_number() const noexcept;
    static inline int truncated(double number) noexcept;
    smart_string item_text(unsigned item) const;
    void copy_value(const SPMVar& other);
    void take(SPMVar& other) noexcept;

    enum_items* items = nullptr;
};

inline SPMVar::operator double() const
{
    if (type <= SPM_VAR_BOOLEAN) return type == SPM_VAR_NONE ? 0.0 : value.number.value;
    if (type == SPM_VAR_ENUM) return limits.choice.itemValues[value.choice.item];
    return type == SPM_VAR_STRING ? text_as_number() : 0.0;
}

inline SPMVar::operator bool() const
{
    if (type <= SPM_VAR_BOOLEAN) return type != SPM_VAR_NONE && value.number.value != 0.0;
    if (type == SPM_VAR_ENUM) return limits.choice.itemValues[value.choice.item] != 0.0;
    return type == SPM_VAR_STRING && value.string.text && *value.string.text;
}

inline SPMVar::operator int() const
{
    if (type == SPM_VAR_ENUM) return static_cast<int>(value.choice.item);
    if (type <= SPM_VAR_BOOLEAN) return type == SPM_VAR_NONE ? 0 : truncated(value.number.value);
    return type == SPM_VAR_STRING ? truncated(text_as_number()) : 0;
}

inline int SPMVar::truncated(double number) noexcept
{
    constexpr double low = std::numeric_limits<int>::min(), high = std::numeric_limits<int>::max();
    if (!(number > low)) return number == number ? std::numeric_limits<int>::min() : 0;
    return number >= high ? std::numeric_limits<int>::max() : static_cast<int>(number);
}

inline double SPMVar::within_limits(double x, const number_limits& limits) noexcept
{
    if (x < limits.minimum) x = limits.minimum;
    if (x > limits.maximum) x = limits.maximum;
    if (limits.step != 0.0 && !std::isnan(limits.step) && std::isfinite(x)) {
        const double origin = std::isfinite(limits.minimum) ? limits.minimum : 0.0;
        x = limits.step * vldv::base::round_half_up((x - origin) / limits.step) + origin;
    }
    if (x < limits.minimum) x = limits.minimum;
    if (x > limits.maximum) x = limits.maximum;
    return x;
}

inline double SPMVar::assign_number(double x) noexcept
{
    if (type == SPM_VAR_NONE || type > SPM_VAR_BOOLEAN) return 0.0;
    return value.number.value = within_limits(x, limits.number);
}

inline double SPMVar::operator=(double x) { return assign_number(x); }

inline double SPMVar::operator=(int x)
{
    if (type == SPM_VAR_ENUM) return set_enum_val(x);
    return assign_number(x);
}
