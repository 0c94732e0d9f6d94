#pragma once
#include "formats/shared/bytes.h"

#include <string>
#include <utility>
#include <vector>

namespace vldv::formats {

/// A file of these frames.
inline std::string mdt_file(const std::vector<std::string>& frames)
{
    std::string body;
    for (const std::string& frame : frames) body += frame;
    return "\x01\xB0\x93\xFF" + le32(body.size()) + le32(0) + le16(frames.empty() ? 0 : frames.size() - 1) +
           std::string(19, '\0') + body;
}

constexpr unsigned mdtAxesBytes = 30, mdtSettingsBytes = 26;

/// \param variableBytes  of the part that the body of old frames begins with: axes and settings
inline std::string mdt_frame_of(std::uint16_t type, const std::string& body,
                                unsigned variableBytes = mdtAxesBytes + mdtSettingsBytes, unsigned hour = 4)
{
    std::string frame = le32(body.size() + 22) + le16(type) + std::string("\3\7", 2);
    for (const unsigned part : {2020u, 2u, 3u, hour, 5u, 6u}) frame += le16(part);
    return frame + le16(variableBytes) + body;
}

/// x from 5 in steps of 0.5 µm, y from -1 in steps of -0.25 µm, z = 10 - raw nm; settings all 0 or as given.
inline std::string mdt_variable_part(const std::string& settings = std::string(mdtSettingsBytes, '\0'))
{
    return le_float(5) + le_float(0.5f) + le16(0xFFFE) + le_float(-1) + le_float(-0.25f) + le16(0xFFFE) + le_float(10) +
           le_float(-1) + le16(0xFFFF) + settings;
}

struct mdt_image {
    std::string title;
    std::uint16_t columns, rows;
    std::vector<int> samples;
    std::string settings = std::string(mdtSettingsBytes, '\0');

    std::string body() const
    {
        std::string text = mdt_variable_part(settings) + le16(0) + le16(columns) + le16(rows) + le16(0);
        for (const int sample : samples) text += le16(sample);
        return text + le32(title.size()) + title + le32(0);
    }
};

inline std::string mdt_single_curve(const std::vector<int>& samples, std::uint16_t dots)
{
    std::string text = mdt_variable_part() + le16(0) + le16(samples.size()) + le16(1) + le16(dots) +
                       std::string(dots * std::size_t{4}, 'd');
    for (const int sample : samples) text += le16(sample);
    return text;
}

/// Point i lies at (i, i / 2) in the unit of a code.
inline std::string mdt_point_curves(const std::vector<std::pair<std::vector<int>, std::vector<int>>>& points, int unit)
{
    std::string text = mdt_variable_part() + le16(0) + le16(0) + le16(0) + le16(points.size()) + std::string(12, '\0') +
                       le16(unit),
                samples;
    for (std::size_t i = 0; i < points.size(); ++i) {
        text += le_float(static_cast<float>(i)) + le_float(static_cast<float>(i) / 2) + le32(points[i].first.size()) +
                le32(points[i].second.size());
        for (const auto* curve : {&points[i].first, &points[i].second})
            for (const int sample : *curve) samples += le16(sample);
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
        const std::string fields = le32(name.size()) + le32(0) + le32(units.size()) + le64(1) + le_double(0) + le64(0) +
                                   le_double(bias) + le_double(scale) + le64(first) + le64(last) + le32(type) + le32(0);
        return le32(8 + fields.size() + name.size() + units.size()) + le32(fields.size()) + fields + name + units;
    }
};

struct mdt_array {
    std::string title;
    std::vector<mdt_calibration> dimensions, measured;
    std::string cells;
    std::uint64_t count = 0; ///< of cells; as the size of one 0 for files that leave it open
    std::uint32_t cellBytes = 0;
    std::string comment = {}; ///< ASCII

    std::string body() const
    {
        std::string records;
        const std::string wide = utf16_of(comment);
        for (const auto* list : {&dimensions, &measured})
            for (const mdt_calibration& each : *list) records += each.record();
        const std::string head = le32(76) + le32(0) + std::string(36, '\0') + le32(title.size()) + le32(wide.size()) +
                                 std::string(16, '\0') + le32(0) + le32(0);
        const std::string array =
            le64(count) + le32(cellBytes) + le32(dimensions.size()) + le32(measured.size()) + std::string(13, '\0');
        return head + title + wide + le32(array.size() + records.size()) + le32(array.size()) + array + records + cells;
    }
};

/// A frame of named blocks in this order.
inline std::string mdt_named_blocks(const std::vector<std::pair<std::string, std::string>>& blocks)
{
    std::string table = le32(blocks.size()), names, content;
    for (const auto& [name, bytes] : blocks) {
        table += le32(name.size()) + le32(bytes.size());
        names += name;
        content += bytes;
    }
    return mdt_frame_of(190, table + names + content, 0);
}

} // namespace vldv::formats
