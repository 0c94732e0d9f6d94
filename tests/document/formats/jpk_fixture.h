#pragma once
#include "document/formats/jpk.h"
#include "recorded_values.h"

#include <string>

/// What the tests of JPK files share.
namespace jpk_fixture {

inline base::read_result<formats::recording> read(const std::string& bytes)
{
    formats::memory_source source(std::as_bytes(std::span(bytes)));
    return formats::read_jpk(source);
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
