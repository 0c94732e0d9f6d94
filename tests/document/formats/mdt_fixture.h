#pragma once
#include "bytes.h"

#include <string>
#include <utility>
#include <vector>

namespace formats {

/// A file of these frames.
inline std::string mdt_file(const std::vector<std::string>& frames)
{
    std::string body;
    for (const std::string& frame : frames) body += frame;
    return "\x01\xB0\x93\xFF" + le32(static_cast<std::uint32_t>(body.size())) + le32(0) +
           le16(static_cast<std::uint16_t>(frames.empty() ? 0 : frames.size() - 1)) + std::string(19, '\0') + body;
}

/// \param variable  true when the body begins with a variable part of 30 + 26 bytes, as old frames do
inline std::string mdt_frame_of(std::uint16_t type, const std::string& body, bool variable = true)
{
    std::string frame = le32(static_cast<std::uint32_t>(body.size() + 22)) + le16(type) + std::string("\3\7", 2);
    for (const unsigned part : {2020, 2, 3, 4, 5, 6}) frame += le16(part);
    return frame + le16(variable ? 56 : 0) + body;
}

/// x from 5 in steps of 0.5 µm, y from -1 in steps of -0.25 µm, z = 10 - raw nm; settings all 0.
inline std::string mdt_variable_part()
{
    return le_float(5) + le_float(0.5f) + le16(0xFFFE) + le_float(-1) + le_float(-0.25f) + le16(0xFFFE) + le_float(10) +
           le_float(-1) + le16(0xFFFF) + std::string(26, '\0');
}

struct mdt_image {
    std::string title;
    std::uint16_t columns, rows;
    std::vector<int> samples;

    std::string body() const
    {
        std::string text = mdt_variable_part() + le16(0) + le16(columns) + le16(rows) + le16(0);
        for (const int sample : samples) text += le16(static_cast<std::uint16_t>(sample));
        return text + le32(static_cast<std::uint32_t>(title.size())) + title + le32(0);
    }
};

inline std::string mdt_single_curve(const std::vector<int>& samples, std::uint16_t dots)
{
    std::string text = mdt_variable_part() + le16(0) + le16(static_cast<std::uint16_t>(samples.size())) + le16(1) +
                       le16(dots) + std::string(dots * std::size_t{4}, 'd');
    for (const int sample : samples) text += le16(static_cast<std::uint16_t>(sample));
    return text;
}

/// Point i lies at (i, i / 2).
inline std::string mdt_point_curves(const std::vector<std::pair<std::vector<int>, std::vector<int>>>& points)
{
    std::string text = mdt_variable_part() + le16(0) + le16(0) + le16(0) +
                       le16(static_cast<std::uint16_t>(points.size())) + std::string(14, '\0'),
                samples;
    for (std::size_t i = 0; i < points.size(); ++i) {
        text += le_float(static_cast<float>(i)) + le_float(static_cast<float>(i) / 2) +
                le32(static_cast<std::uint32_t>(points[i].first.size())) +
                le32(static_cast<std::uint32_t>(points[i].second.size()));
        for (const auto* curve : {&points[i].first, &points[i].second})
            for (const int sample : *curve) samples += le16(static_cast<std::uint16_t>(sample));
    }
    return text + samples;
}

struct mdt_calibration {
    std::string name, units;
    double bias, scale;
    std::uint64_t first, last;
    int type;

    std::string record() const
    {
        const std::string fields = le32(static_cast<std::uint32_t>(name.size())) + le32(0) +
                                   le32(static_cast<std::uint32_t>(units.size())) + le64(1) + le_double(0) + le64(0) +
                                   le_double(bias) + le_double(scale) + le64(first) + le64(last) +
                                   le32(static_cast<std::uint32_t>(type)) + le32(0);
        return le32(static_cast<std::uint32_t>(8 + fields.size() + name.size() + units.size())) +
               le32(static_cast<std::uint32_t>(fields.size())) + fields + name + units;
    }
};

struct mdt_array {
    std::string title;
    std::vector<mdt_calibration> dimensions, measured;
    std::string cells;

    std::string body() const
    {
        std::string records;
        for (const auto* list : {&dimensions, &measured})
            for (const mdt_calibration& each : *list) records += each.record();
        const std::string head = le32(76) + le32(0) + std::string(36, '\0') +
                                 le32(static_cast<std::uint32_t>(title.size())) + std::string(20, '\0') + le32(0) +
                                 le32(0);
        const std::uint64_t count = measured.size() == 2 ? measured[0].last + 1 : 0;
        const std::string array = le64(count) + le32(0) + le32(static_cast<std::uint32_t>(dimensions.size())) +
                                  le32(static_cast<std::uint32_t>(measured.size())) + std::string(13, '\0');
        return head + title + le32(static_cast<std::uint32_t>(array.size() + records.size())) +
               le32(static_cast<std::uint32_t>(array.size())) + array + records + cells;
    }
};

} // namespace formats
