#pragma once
#include "base/SPMVar.h"
#include "base/VLAxis.h"
#include "vldv_api.h"

#include <utility>
#include <vector>

/// An image, curve or volume: an array variable with dimensions, value axes and the names of what belongs to it.
/// Dimensions stand fastest-varying first: element (x, y) is at y * length(0) + x. The product of their lengths is one
/// sub-image; the array holds a whole number of them, one after another.
class VLDV_API SPMDataStream : public SPMVar {
public:
    class dimension : public VLAxesContainer {
    public:
        unsigned length = 0;
        bool operator==(const dimension& other) const noexcept
        {
            return length == other.length && VLAxesContainer::operator==(other);
        }
    };

    SPMDataStream() = default;
    SPMDataStream(const SPMDataStream& other) = default;
    SPMDataStream(SPMDataStream&& other) noexcept = default;
    ~SPMDataStream() override = default;
    /// On an exception the stream stays as it was.
    SPMDataStream& operator=(const SPMDataStream& other)
    {
        SPMDataStream copy(other);
        return *this = std::move(copy);
    }
    SPMDataStream& operator=(SPMDataStream&& other) noexcept = default;
    using SPMVar::operator=;

    using SPMVar::Init;
    /// As for any variable; a text from a stream's `description()` also restores dimensions, axes and names.
    void Init(const char* declaration) override;
    void Destroy() noexcept override;

    unsigned get_dimensions_number() const noexcept { return static_cast<unsigned>(dimensions.size()); }
    /// The index must be below the count.
    const dimension& get_dimension(unsigned index) const noexcept { return dimensions[index]; }
    dimension& get_dimension(unsigned index) noexcept { return dimensions[index]; }
    /// Replaces dimension `index`; an index equal to the count appends.
    void set_dimension(unsigned index, const dimension& source);
    void clear_dimensions() noexcept { dimensions.clear(); }

    /// Copies at most `max` names to `out` and returns how many; the count when `out` is null.
    unsigned get_subimage_names(smart_string* out, unsigned max) const;
    void set_subimage_names(const smart_string* names, unsigned count);
    void set_subimage_names(const char** names, unsigned count);
    void set_subimage_names(std::vector<smart_string>&& names) noexcept { subimageNames = std::move(names); }
    unsigned get_dependent_vars(smart_string* out, unsigned max) const;
    void set_dependent_vars(const smart_string* names, unsigned count);
    void set_dependent_vars(const char** names, unsigned count);
    const std::vector<smart_string>& subimage_names() const noexcept { return subimageNames; }
    const std::vector<smart_string>& dependent_vars() const noexcept { return dependentNames; }

    /// Name of the stream of the same document that this one is measured against, or null.
    const char* get_parameter_stream() const noexcept { return parameterStream.text; }
    /// Null or empty removes it.
    void set_parameter_stream(const char* streamName);

    /// Changes the element type in place and adjusts the value axes so that every physical value stays within half a
    /// step of the new type. Numbers that fit the new type as they are stay, and so do the axes. Otherwise the range
    /// of the data is mapped onto the new integer type by the rule of `six_digit_axis`, so that the new start and
    /// scale of value axis 0 have at most six digits and a file keeps them exactly.
    /// To float32, numbers beyond it become its largest. Infinite and NaN elements take no part in the range; NaN
    /// becomes the lowest number, an infinity the nearest.
    /// \throws std::bad_alloc with the stream unchanged
    void convert_stream(SPMVarArrayType target);

    VLAxesContainer values; ///< meaning of the samples; axis 0 turns a raw one into a physical one
    unsigned offset = 0;    ///< kept in the file when not zero

protected:
    std::string shape_words() const override;

private:
    std::vector<dimension> dimensions;
    std::vector<smart_string> subimageNames;
    std::vector<smart_string> dependentNames;
    smart_string parameterStream;
};
