#include "document/formats/registry.h"
#include "support/manifest.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <random>

// Every reader of a real file also meets it cut short and with changed bytes: it may refuse, and then with a reason.

namespace {

using formats::format_row;

constexpr std::uintmax_t largestSample = 1u << 20;
constexpr unsigned cuts = 40, changes = 100;

const format_row* row_of(SupportedFileTypes type)
{
    for (const format_row& row : formats::format_table())
        if (row.type == type) return &row;
    return nullptr;
}

void read_damaged(const format_row& row, const std::vector<std::byte>& bytes, const std::string& name)
{
    formats::memory_source file(bytes, name);
    const auto result = row.read(file);
    EXPECT_TRUE(result || !result.error().reason.empty());
}

void cut_and_change(const format_row& row, const std::vector<std::byte>& bytes, const std::string& name)
{
    for (unsigned i = 0; i < cuts; ++i) {
        SCOPED_TRACE("cut " + std::to_string(i));
        const std::vector<std::byte> cut(bytes.begin(), bytes.begin() + static_cast<long>(bytes.size() * i / cuts));
        read_damaged(row, cut, name);
    }
    std::mt19937 random(7);
    for (unsigned i = 0; i < changes; ++i) {
        SCOPED_TRACE("change " + std::to_string(i));
        std::vector<std::byte> changed = bytes;
        // Half of the changes go to the first KiB, where headers claim what follows.
        const std::size_t range = i % 2 ? changed.size() : std::min<std::size_t>(changed.size(), 1024);
        changed[random() % range] = static_cast<std::byte>(random() & 0xFF);
        read_damaged(row, changed, name);
    }
}

class DamagedSamples : public testing::TestWithParam<std::pair<SupportedFileTypes, const char*>> {};

TEST_P(DamagedSamples, AreReadOrRefused)
{
    const format_row* row = row_of(GetParam().first);
    ASSERT_TRUE(row && row->read);
    const std::string folder = test_support::sample_folder(GetParam().second);
    if (!std::filesystem::is_directory(folder)) GTEST_SKIP() << "sample files are not here";
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
        const std::string name = entry.path().filename().string();
        if (name == "MANIFEST.tsv" || entry.file_size() == 0 || entry.file_size() > largestSample) continue;
        SCOPED_TRACE(name);
        cut_and_change(*row, test_support::read_sample(GetParam().second, name), name);
    }
}

/// The small files that fuzzing starts from hold every kind of content once: read whole, and cut at every byte.
TEST(SeedFiles, AreReadWholeAndCutAnywhere)
{
    std::size_t read = 0;
    for (const char* folder : {"bcr", "img", "jpk", "mdt", "nanoscope", "opd", "wsxm"})
        for (const auto& entry : std::filesystem::directory_iterator(VLDV_TEST_DATA "/" + std::string(folder))) {
            SCOPED_TRACE(entry.path().string());
            std::ifstream in(entry.path(), std::ios::binary);
            const std::string text{std::istreambuf_iterator<char>(in), {}};
            const auto bytes = std::as_bytes(std::span(text));
            const std::string name = entry.path().filename().string();
            const format_row* row =
                formats::find_format(bytes.first(std::min(bytes.size(), formats::sniffBytes)), name);
            ASSERT_TRUE(row && row->read);
            formats::memory_source file(bytes, name);
            const auto result = row->read(file);
            ASSERT_TRUE(result) << result.error().reason;
            for (std::size_t length = 0; length < bytes.size(); ++length)
                read_damaged(*row, {bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(length)}, name);
            ++read;
        }
    EXPECT_GE(read, 17u);
}

INSTANTIATE_TEST_SUITE_P(Formats, DamagedSamples,
                         testing::Values(std::pair(FILE_NANOSCOPE, "nanoscope"), std::pair(FILE_MDT, "mdt"),
                                         std::pair(FILE_JPK, "jpk"), std::pair(FILE_WSXM, "wsxm"),
                                         std::pair(FILE_OPD, "opd"), std::pair(FILE_IBW, "ibw")),
                         [](const auto& each) { return std::string(each.param.second); });

} // namespace
