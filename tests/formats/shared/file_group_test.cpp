#include "formats/shared/file_group.h"

#include "formats/instrument_fixture.h"
#include "formats/shared/stream_shape.h"

#include <gtest/gtest.h>

namespace {

using namespace instrument_fixture;

TEST(FileGroup, FileNamesTellChannelAndDirection)
{
    const char* const rows[][4] = {
        // file, id, label, sub-image
        {"x.z(hgt)_fwd.sur", "hgt", "Height", "Forward"},
        {"Scan.Z(L_R)_REV.sur", "l_r", "L-R", "Reverse"},
        {"x.z(sen).sur", "sen", "Sens", ""},
        {"x.z(dem)-fwd.pni", "dem", "Dem", "Forward"},
        {"x.z(foo)_fwd.sur", "foo", "SPM", "Forward"},
        {"a.b.c.sur", "img0", "b.c", ""},
        {"a.sur", "img0", "SPM", ""},
        {"z(open.sur", "img0", "SPM", ""},
        {"x.z(hgt", "img0", "SPM", ""},
    };
    for (const auto& [file, id, label, subimage] : rows) {
        const auto names = formats::parse_channel_file_name(file);
        EXPECT_EQ(names.id + "|" + names.label + "|" + names.subimage, id + std::string("|") + label + "|" + subimage);
    }
}

/// A file is one point, its first byte; an empty one is damaged.
base::read_result<formats::recording> read_point(formats::source& file)
{
    std::byte value{};
    if (!file.read(0, std::span(&value, 1))) return base::read_error{0, "empty"};
    formats::recording content;
    const formats::extent point{1, {}};
    auto image = formats::make_samples("Z", "Own name", std::span(&point, 1), 1, {});
    formats::elements_of<std::int16_t>(image)[0] = static_cast<std::int16_t>(value);
    content.items.emplace_back(std::move(image));
    return content;
}

base::read_result<formats::recording> read_points(formats::source& file)
{
    return formats::read_file_group(file, read_point);
}

TEST(FileGroup, OpensAllFilesThatBeginAndEndAlike)
{
    const folder files = {{"Run7.Z(HGT)_fwd.sur", "\1"},    {"run7.z(HGT)_rev.SUR", "\2"},
                          {"run7.z(err)_fwd.sur", ""},      {"run7.phase.sur", "\3"},
                          {"run7.z(hgt)_fwd.txt", "\4"},    {"run8.z(hgt)_fwd.sur", "\5"},
                          {"old.run7.z(hgt)_fwd.sur", "\6"}};
    const auto result = read(read_points, files, "Run7.Z(HGT)_fwd.sur");
    ASSERT_TRUE(result);
    EXPECT_EQ(result->title, "Run7.");
    EXPECT_EQ(told(result), "phase (1): 3\nHeight (1) {Forward}: 1\nHeight (1) {Reverse}: 2");
    const char* const ids[] = {"img0", "hgt", "hgt_2"};
    for (std::size_t i = 0; i < 3; ++i) EXPECT_STREQ(image_at(result, i).stream.get_name(), ids[i]);
}

TEST(FileGroup, TheFileItselfIsTriedWhenNoneOfTheGroupCanBeRead)
{
    // Without a folder there are no siblings.
    const auto alone = read(read_points, "\7", "a.z(hgt)_fwd.sur");
    EXPECT_STREQ(image_at(alone, 0).stream.get_name(), "hgt");
    EXPECT_EQ(alone->title, "a.");
    const auto plain = read(read_points, "\7", "a.sur");
    EXPECT_STREQ(image_at(plain, 0).stream.get_name(), "img0");
    EXPECT_STREQ(image_at(plain, 0).stream.get_description(), "Own name");
    EXPECT_EQ(plain->title, "");
    EXPECT_EQ(read(read_points, folder{{"a.phase.sur", ""}, {"a.phase2.sur", ""}}, "a.phase.sur").error().reason,
              "empty");
}

TEST(FileGroup, StopsWhenTheUserCancels)
{
    const folder files = {{"a.phase.sur", "\1"}};
    folder_source file(files, "a.phase.sur");
    file.isCancelled = true;
    EXPECT_FALSE(read_points(file));
}

TEST(FileGroup, OneFileStandsForAllThatOpenWithIt)
{
    // "run.x.z(err)" begins like "Run." as well.
    const std::vector<std::string> names = {"Run.Z(HGT).sur", "run.phase.sur",     "run.x.z(err).sur", "run.y.sur",
                                            "run.z(hgt).pni", "run2.z(hgt)_r.sur", "single.sur"};
    std::vector<std::string> leaders = names;
    std::fill_n(leaders.begin(), 4, "Run.Z(HGT).sur");
    EXPECT_EQ(formats::group_leaders(names), leaders);
}

} // namespace
