#pragma once
#include "base/SPMDataStream.h"

#include <vector>

namespace test_support {

struct stream_side {
    unsigned length;
    VLAxis axis = {};
};

/// A stream "Height" of 16-bit samples over these dimensions; `sampleAt(i)` is the sample at index `i`. Axes that are
/// the default are not set.
template <class SampleAt>
SPMDataStream made_stream(const char* id, const std::vector<stream_side>& sides, const VLAxis& values,
                          const SampleAt& sampleAt, unsigned subimages = 1)
{
    unsigned count = subimages;
    for (const stream_side& side : sides) count *= side.length;
    SPMDataStream stream;
    stream.Init(id, "Height", SPM_VAR_ARRAY, count, 2u);
    stream.set_array_type(SPM_ARRAY_INT16);
    for (unsigned i = 0; i < sides.size(); ++i) {
        SPMDataStream::dimension dimension;
        dimension.length = sides[i].length;
        if (!(sides[i].axis == VLAxis())) dimension.set_axis(0, sides[i].axis);
        stream.set_dimension(i, dimension);
    }
    if (!(values == VLAxis())) stream.values.set_axis(0, values);
    auto* const samples = static_cast<short*>(stream.array_data());
    for (unsigned i = 0; i < count; ++i) samples[i] = static_cast<short>(sampleAt(i));
    return stream;
}

} // namespace test_support
