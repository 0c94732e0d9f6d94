#pragma once
#include "formats/instrument_fixture.h"
#include "formats/jpk/jpk.h"

#include <string>

/// What the tests of JPK files share.
namespace jpk_fixture {

inline base::read_result<formats::recording> read(const std::string& bytes)
{
    return instrument_fixture::read(formats::read_jpk, bytes);
}

/// The first image of a label, or null.
inline const formats::recorded_image* find_image(const formats::recording& content, const std::string& label)
{
    for (const auto& each : content.items)
        if (const auto& image = std::get<formats::recorded_image>(each); label == image.stream.get_description())
            return &image;
    return nullptr;
}

} // namespace jpk_fixture
