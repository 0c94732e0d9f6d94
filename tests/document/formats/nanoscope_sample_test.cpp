#include "document/formats/nanoscope.h"
#include "support/sample_checks.h"

#include <gtest/gtest.h>

using namespace test_support;

namespace {

base::read_result<formats::recording> read_file(const std::string& name, std::vector<std::byte>& bytes)
{
    bytes = read_sample("nanoscope", name);
    formats::memory_source source(bytes, name);
    return formats::read_nanoscope(source);
}

class NanoscopeSamples : public testing::Test {
protected:
    void SetUp() override
    {
        if (read_manifest("nanoscope").empty()) GTEST_SKIP() << "sample files are not here: " << VLDV_SAMPLES;
    }
};

TEST_F(NanoscopeSamples, ImagesHaveTheValuesOfTheManifest)
{
    for (const manifest_row& row : manifest_rows("nanoscope", "image")) {
        SCOPED_TRACE(row.title());
        std::vector<std::byte> bytes;
        const auto result = read_file(row.text("file"), bytes);
        ASSERT_TRUE(result) << result.error().reason;
        const auto planes = planes_of(*result);
        const auto index = static_cast<std::size_t>(row.number("object").value_or(-1));
        ASSERT_LT(index, planes.size());
        const auto& strings = planes[index].image->strings;
        const bool isWide = result->strings.at("Version") >= "0x09200000"; // all of eight digits
        expect_plane(row, planes[index], isWide);
        EXPECT_NE(strings.at("@2:Image Data").find(row.text("name")), std::string::npos);
    }
}

TEST_F(NanoscopeSamples, NoFileHasMoreImagesThanItsManifest)
{
    std::map<std::string, std::size_t> expected;
    for (const manifest_row& row : manifest_rows("nanoscope", "image")) ++expected[row.text("file")];
    for (const auto& [name, count] : expected) {
        std::vector<std::byte> bytes;
        const auto result = read_file(name, bytes);
        ASSERT_TRUE(result);
        EXPECT_EQ(planes_of(*result).size(), count) << name;
    }
}

TEST_F(NanoscopeSamples, DamagedFilesAndPlainForceCurvesAreRefused)
{
    std::map<std::string, bool> hasImage;
    for (const manifest_row& row : read_manifest("nanoscope"))
        hasImage[row.text("file")] |= row.text("kind") == "image";
    for (const auto& [name, has] : hasImage) {
        std::vector<std::byte> bytes;
        const auto result = read_file(name, bytes);
        EXPECT_EQ(static_cast<bool>(result), has) << name;
        EXPECT_TRUE(result || !result.error().reason.empty()) << name;
    }
}

} // namespace
