#include "formats/instrument_fixture.h"
#include "formats/nid/nid.h"
#include "formats/single/stp.h"
#include "formats/single/tmd.h"
#include "formats/single/wsxm.h"
#include "formats/sur/sur.h"

#include <gtest/gtest.h>
#include <tuple>

// Counts of a header that take fewer bytes than the file has for them.

namespace {

using namespace formats;
using namespace instrument_fixture;

/// The first note of the recording or of an image that tells of a surplus, or an empty text.
std::string surplus_note(const base::read_result<recording>& result)
{
    if (!result) return "refused: " + result.error().reason;
    std::vector<std::string> notes = result->warnings;
    for (const auto& item : result->items) {
        const auto& own = std::get<recorded_image>(item).notes;
        notes.insert(notes.end(), own.begin(), own.end());
    }
    for (const std::string& note : notes)
        if (note.find("that are there") != std::string::npos) return note;
    return {};
}

TEST(Surplus, OfEachReaderIsTold)
{
    const std::tuple<reader, const char*, const char*> rows[] = {
        {read_wsxm, "wsxm/short.top", "Number of columns times Number of rows, "},
        {read_wsxm, "wsxm/double.top", "Number of columns times Number of rows, "},
        {read_nid, "nid/images.nid", "Points times Lines of all channels"},
        {read_stp, "stp/heights.stp", "samples_x times samples_y"},
        {read_tmd, "tmd/heights.tmd", "columns times rows"},
        {sur_reader, "sur/surface.sur", "the objects"},
    };
    for (const auto& [reader, file, counts] : rows) {
        const std::string whole = seed(file).content;
        EXPECT_EQ(surplus_note(read(reader, whole)), "") << file;
        const std::string note = surplus_note(read(reader, whole + std::string(6, '\1')));
        ASSERT_NE(note.find(counts), std::string::npos) << file << note;
        const std::string of = " bytes of the ";
        const std::size_t at = note.find(of), taken = note.rfind(' ', at - 1) + 1;
        EXPECT_EQ(std::stoul(note.substr(at + of.size())) - std::stoul(note.substr(taken)), 6u) << note;
    }
}

} // namespace
