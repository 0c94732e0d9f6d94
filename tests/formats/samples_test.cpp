#include "instrument_fixture.h"
#include "sample_objects.h"

#include <algorithm>
#include <filesystem>
#include <gtest/gtest.h>
#include <random>
#include <set>
#include <utility>

// Real files against the manifests of their folders, opened as a document opens them: by content, under any name. And
// each of them, like the small files that fuzzing starts from, damaged: it may be refused, and then with a reason.

namespace {

using namespace formats;
using namespace instrument_fixture;
using namespace test_support;

struct opened {
    base::read_result<recording> content = base::read_error{0, "not recognised"};
    SupportedFileTypes type = FILE_UNKNOWN;
};

opened open_file(const folder& files, const std::string& name)
{
    opened result;
    const auto head = std::as_bytes(std::span(files.at(name)));
    for (const format_row* row : formats_to_try(head.first(std::min(head.size(), sniffBytes)), "other.xyz")) {
        folder_source file(files, name);
        result = {row->read(file), row->type};
        if (result.content) break;
    }
    return result;
}

const format_row* row_of(SupportedFileTypes type)
{
    for (const format_row& row : format_table())
        if (row.type == type) return &row;
    return nullptr;
}

void expect_outcome(const format_row& format, const folder& files, const std::string& name)
{
    folder_source file(files, name);
    const auto result = format.read(file);
    EXPECT_TRUE(result ? !result->items.empty() : !result.error().reason.empty());
}

void read_cut(const format_row& format, folder files, const std::string& name, std::size_t cuts)
{
    const std::string whole = files.at(name);
    for (std::size_t cut = 0; cut < cuts; ++cut) {
        files[name] = whole.substr(0, whole.size() * cut / cuts);
        expect_outcome(format, files, name);
    }
}

void read_changed(const format_row& format, folder files, const std::string& name)
{
    std::string& bytes = files.at(name);
    std::mt19937 random(7);
    for (unsigned change = 0; change < 100; ++change) {
        // Most bytes are samples; half of the changes go to the beginning, where headers claim what follows.
        const std::size_t reach = change % 2 ? bytes.size() : std::min<std::size_t>(bytes.size(), 1024);
        char& byte = bytes[random() % reach];
        const char whole = std::exchange(byte, static_cast<char>(random()));
        expect_outcome(format, files, name);
        byte = whole;
    }
}

void read_flipped(const format_row& format, folder files, const std::string& name)
{
    for (char& byte : files.at(name))
        for (const int flip : {0xff, 0x01}) {
            const char whole = std::exchange(byte, static_cast<char>(byte ^ flip));
            expect_outcome(format, files, name);
            byte = whole;
        }
}

class Samples : public testing::TestWithParam<sample_set> {
protected:
    void SetUp() override
    {
        if (!std::filesystem::is_directory(VLDV_SAMPLES)) GTEST_SKIP() << "sample files are not here: " << VLDV_SAMPLES;
        files = load_files(sample_folder(GetParam().folder));
        rows = read_manifest(GetParam().folder);
        ASSERT_FALSE(rows.empty());
    }
    /// How many rows up to this one are of its file and kind.
    std::size_t count_to(const manifest_row& until) const
    {
        return static_cast<std::size_t>(std::count_if(rows.data(), &until + 1, [&](const manifest_row& row) {
            return row.text("file") == until.text("file") && row.text("kind") == until.text("kind");
        }));
    }
    void check(const manifest_row& row)
    {
        SCOPED_TRACE(row.title());
        const std::string name = row.text("file"), kind = row.text("kind");
        if (name != lastName) last = open_file(files, name);
        lastName = name;
        if (kind == "reject" || kind == "wave") {
            ASSERT_FALSE(last.content);
            EXPECT_FALSE(last.content.error().reason.empty());
            return;
        }
        ASSERT_TRUE(last.content) << last.content.error().reason;
        EXPECT_EQ(last.type, name.starts_with("Park") ? FILE_PSIA : GetParam().type);
        const std::size_t count = count_to(row);
        expect_object(GetParam(), row, count - 1, *last.content);
        const bool isLast = &row == &rows.back() || (&row)[1].text("file") != name || (&row)[1].text("kind") != kind;
        if (isLast && kind == "image") { EXPECT_EQ(planes_of(*last.content).size(), count); }
    }
    folder files;
    std::vector<manifest_row> rows;
    std::string lastName;
    opened last;
};

TEST_P(Samples, HoldWhatTheManifestTells)
{
    for (const manifest_row& row : rows) check(row);
}

TEST_P(Samples, DamagedOnesGiveAReasonOrARecording)
{
    const format_row* format = row_of(GetParam().type);
    ASSERT_TRUE(format && format->read);
    std::set<std::string> names;
    for (const manifest_row& row : rows) names.insert(row.text("file"));
    for (const std::string& name : names) {
        SCOPED_TRACE(name);
        if (files.at(name).size() >= 1u << 20) continue;
        read_cut(*format, files, name, 40);
        read_changed(*format, files, name);
    }
}

INSTANTIATE_TEST_SUITE_P(
    Formats, Samples,
    testing::Values(sample_set{"bcr", FILE_BCR}, sample_set{"bmp", FILE_BMP}, sample_set{"hdf", FILE_HDF},
                    sample_set{"ibw", FILE_IBW}, sample_set{"img", FILE_IMG}, sample_set{"jpeg", FILE_JPEG},
                    sample_set{"jpk", FILE_JPK, true}, sample_set{"mdt", FILE_MDT, false, "test_mdt.mdt"},
                    sample_set{"nanoscope", FILE_NANOSCOPE, false, ".spm"}, sample_set{"nid", FILE_NANOSURF, true},
                    sample_set{"opd", FILE_OPD}, sample_set{"scala", FILE_SCALA, true}, sample_set{"sur", FILE_SUR},
                    sample_set{"text", FILE_TEXT, false, "", true}, sample_set{"tiff", FILE_TIFF},
                    sample_set{"tmd", FILE_TMD}, sample_set{"wsxm", FILE_WSXM}),
    [](const auto& each) { return std::string(each.param.folder); });

/// The small files that fuzzing starts from hold every kind of content once: read whole, cut at every byte and
/// with every byte changed.
TEST(Seeds, AreReadWholeAndDamagedAnywhere)
{
    std::size_t seeds = 0;
    for (const auto& entry : std::filesystem::directory_iterator(VLDV_TEST_DATA)) {
        if (entry.path().filename() == "scala") continue; // several files in one, as its fuzz target cuts them
        const folder files = load_files(entry.path().string());
        for (const auto& [name, whole] : files) {
            SCOPED_TRACE(entry.path().filename().string() + "/" + name);
            const auto head = std::as_bytes(std::span(whole));
            const format_row* format = find_format(head.first(std::min(head.size(), sniffBytes)), name);
            ASSERT_TRUE(format && format->read);
            EXPECT_TRUE(read(format->read, files, name));
            read_cut(*format, files, name, whole.size());
            read_flipped(*format, files, name);
            ++seeds;
        }
    }
    EXPECT_GE(seeds, 44u);
}

} // namespace
