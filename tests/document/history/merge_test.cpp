#include "document/history/merge_documents.h"

#include "document/fixtures.h"
#include "support/allocation_count.h"

#include <cstring>
#include <new>
#include <stdexcept>

namespace {

using texts = std::vector<std::string>;

/// Two documents read from files, the second about to join the first.
class MergeTest : public DocumentTest {
protected:
    /// Gives a document the file name that it would have if it were read.
    void name(CStorageDoc& named, const std::string& file)
    {
        CStorageDoc saved;
        const SPMDataStream image = heights("any", {1});
        saved.AddNewImages(&image, 1);
        ASSERT_TRUE(saved.DoSave((folder / file).wstring().c_str(), false));
        ASSERT_TRUE(named.OnOpenDocument((folder / file).wstring().c_str()));
        named.RemoveImage(0);
    }
    void add(CStorageDoc& to, const SPMDataStream& stream) { to.AddNewImages(&stream, 1); }

    CStorageDoc other;
};

SPMDataStream with_names(SPMDataStream stream, const std::vector<smart_string>& names)
{
    stream.set_subimage_names(names.data(), static_cast<unsigned>(names.size()));
    return stream;
}

SPMDataStream measured_against(SPMDataStream stream, const char* parameter)
{
    stream.set_parameter_stream(parameter);
    return stream;
}

texts subimage_names(const CStorageDoc& document, unsigned image)
{
    texts names;
    for (const smart_string& each : document.getImage(image).subimage_names()) names.emplace_back(each.c_str());
    return names;
}

texts ids(const CStorageDoc& document)
{
    texts found;
    for (unsigned i = 0; i < document.getImagesNumber(); ++i) found.emplace_back(document.getImage(i).get_name());
    return found;
}

/// All that a merge could change, the samples as the text of the array.
texts state(const CStorageDoc& document)
{
    texts all;
    for (unsigned i = 0; i < document.getImagesNumber(); ++i) {
        all.emplace_back(document.getImage(i).description().c_str());
        all.emplace_back(document.getImage(i).as_string().c_str());
        for (const auto& [key, text] : document.strings(i)) all.push_back(key + "=" + text);
    }
    return all;
}

TEST_F(MergeTest, ImagesOfOneNameBecomeSubImages)
{
    name(document, "first.spm");
    name(other, "second.spm");
    add(document, with_names(heights("h", {3, 2}, 2, 100), {"Forward"}));
    add(other, with_names(heights("h", {3, 2}, 2, 200), {"Forward"}));
    other.setString("date", "Tuesday", 0);
    document.setString("date", "Monday", 0);
    document::merge_documents(document, other);
    ASSERT_EQ(ids(document), texts{"h"});
    ASSERT_EQ(document.getSubImagesNumber(0), 4u);
    EXPECT_EQ(document.getDataPoint2S(0, 2, 1, 1), 111) << "the 12th of 100, 101, ...";
    EXPECT_EQ(document.getDataPoint2S(0, 0, 0, 2), 200);
    EXPECT_EQ(document.getDataPoint2S(0, 2, 1, 3), 211);
    EXPECT_EQ(subimage_names(document, 0), (texts{"Forward", "first 2", "second Forward", "second 2"}));
    EXPECT_STREQ(document.getString("date", 0), "Monday");

    name(other, "scan.003"); // a number is no extension: it tells the files of a series apart
    add(other, heights("h", {3, 2}, 1, 300));
    document::merge_documents(document, other);
    EXPECT_EQ(document.getDataPoint2S(0, 0, 0, 4), 300);
    EXPECT_EQ(subimage_names(document, 0), (texts{"Forward", "first 2", "second Forward", "second 2", "scan.003"}));
}

TEST_F(MergeTest, JoinedCurvesKeepTheirLengths)
{
    const struct {
        const char *here, *added, *joined;
    } rows[] = {{"4 2", "", "4 2 4 4"}, {"", "1 4", "4 4 1 4"}, {"3 4", "0 1", "3 4 0 1"}, {"", "", ""}};
    for (const auto& row : rows) {
        CStorageDoc into, from;
        add(into, heights("h", {4}, 2));
        add(from, heights("h", {4}, 2));
        if (*row.here) into.setString("\\Curve lengths", row.here, 0);
        if (*row.added) from.setString("\\Curve lengths", row.added, 0);
        into.setString("\\Void samples", "of 8: 1-2", 0);
        from.setString("\\Void samples", "of 8: 0-0 7-7", 0);
        document::merge_documents(into, from);
        ASSERT_EQ(into.getSubImagesNumber(0), 4u);
        EXPECT_STREQ(into.getString("\\Curve lengths", 0), row.joined);
        EXPECT_STREQ(into.getString("\\Void samples", 0), "of 16: 1-2 8-8 15-15");
    }
}

TEST_F(MergeTest, ImagesThatMeanOtherwiseAreAppendedWithTheirTexts)
{
    SPMDataStream wide = heights("h", {2, 2}), unsignedHeights = heights("h", {2, 2});
    SPMDataStream micrometres = heights("h", {2, 2}), higher = heights("h", {2, 2}), point = heights("h", {});
    wide.get_dimension(1).set_axis(0, VLAxis(0.5, 0.5, "nm"));
    unsignedHeights.set_array_type(SPM_ARRAY_UINT16);
    micrometres.get_dimension(0).set_axis(0, VLAxis(0, 0.25, "um"));
    higher.values.set_axis(0, VLAxis(-1, 0.02, "nm"));
    SPMDataStream number;
    number.Init("h", "Number", SPM_VAR_DOUBLE, -1e9, 1e9, 0.0);
    const std::pair<const char*, SPMDataStream> cases[] = {{"length", heights("h", {2, 3})},
                                                           {"dimensions", heights("h", {4})},
                                                           {"no dimension", point},
                                                           {"no samples", heights("h", {2, 0})},
                                                           {"scale", wide},
                                                           {"units", micrometres},
                                                           {"element type", unsignedHeights},
                                                           {"values", higher},
                                                           {"no array", number},
                                                           {"name", heights("H", {2, 2})}};
    for (const auto& [why, image] : cases) {
        CStorageDoc into, from;
        add(into, heights("h", {2, 2}));
        add(from, image);
        from.setString("date", "Tuesday", 0);
        document::merge_documents(into, from);
        EXPECT_EQ(ids(into), (texts{"h", why == std::string("name") ? "H" : "h1"})) << why;
        EXPECT_STREQ(into.getString("date", 1), "Tuesday") << why;
        EXPECT_EQ(into.getSubImagesNumber(0), 1u) << why;
    }
    CStorageDoc into, from;
    SPMDataStream drifted = heights("h", {2, 2});
    drifted.get_dimension(0).set_axis(0, VLAxis(7, 0.25, "nm"));
    add(into, heights("h", {2, 2}));
    add(from, drifted);
    add(from, drifted);
    document::merge_documents(into, from);
    EXPECT_EQ(ids(into), (texts{"h", "h1"})) << "an image is joined once";
    EXPECT_EQ(into.getSubImagesNumber(0), 2u);
}

TEST_F(MergeTest, AnAppendedPictureKeepsItsColours)
{
    const std::uint32_t pixels[6] = {0x0000ff, 0x00ff00, 0xff0000, 1, 2, 3};
    BITMAPINFOHEADER header;
    header.biWidth = 2;
    header.biHeight = 1;
    header.biBitCount = 32;
    ASSERT_TRUE(document.SetDIB(&header, pixels, nullptr, -1));
    header.biWidth = 3;
    header.biHeight = 2;
    ASSERT_TRUE(other.SetDIB(&header, pixels, nullptr, -1));
    document::merge_documents(document, other);
    ASSERT_EQ(document.getImagesNumber(), 2u);
    other.DeleteContents();
    const BITMAPINFOHEADER* const overlay = document.getImageOverlay(1);
    ASSERT_NE(overlay, nullptr);
    EXPECT_EQ(overlay->biWidth, 3);
    EXPECT_EQ(std::memcmp(overlay + 1, pixels, sizeof pixels), 0) << "the pixels follow the header";
    ASSERT_NE(document.getImageOverlay(0), nullptr);
    EXPECT_EQ(document.getImageOverlay(0)->biWidth, 2);
}

TEST_F(MergeTest, ACurveStaysWithWhatItIsMeasuredAgainst)
{
    const auto curves = [&](CStorageDoc& to, unsigned points, unsigned parameterPoints, const char* parameter) {
        SPMDataStream force = measured_against(heights("force", {points}), parameter);
        const char* dependents[] = {"x", "gone"};
        force.set_dependent_vars(dependents, 2);
        add(to, force);
        add(to, heights("x", {parameterPoints}));
    };
    struct outcome {
        unsigned points, parameterPoints;
        const char* parameter;
        texts ids;
        const char* ownParameter; ///< of the appended curve
    };
    const outcome cases[] = {
        {4, 4, "x", {"force", "x"}, ""},
        {4, 5, "x", {"force", "x", "force1", "x1"}, "x1"}, // neither joins where one cannot
        {5, 4, "x", {"force", "x", "force1", "x1"}, "x1"},
        {5, 5, "x", {"force", "x", "force1", "x1"}, "x1"},
        {4, 4, "time", {"force", "x", "force1"}, "time"},
    };
    for (const outcome& each : cases) {
        CStorageDoc into, from;
        curves(into, 4, 4, "x");
        curves(from, each.points, each.parameterPoints, each.parameter);
        document::merge_documents(into, from);
        ASSERT_EQ(ids(into), each.ids);
        EXPECT_STREQ(into.getImage(0).get_parameter_stream(), "x");
        if (into.getImagesNumber() == 2) {
            EXPECT_EQ(into.getSubImagesNumber(0), 2u);
            EXPECT_EQ(into.getSubImagesNumber(1), 2u);
            continue;
        }
        EXPECT_STREQ(into.getImage(2).get_parameter_stream(), each.ownParameter);
        const bool isRenamed = into.getImagesNumber() == 4;
        EXPECT_STREQ(into.getImage(2).dependent_vars()[0].c_str(), isRenamed ? "x1" : "x");
        EXPECT_STREQ(into.getImage(2).dependent_vars()[1].c_str(), "gone");
    }
}

TEST_F(MergeTest, WithoutMemoryTheFirstDocumentStaysAsItWas)
{
    for (CStorageDoc* each : {&document, &other}) {
        add(*each, heights("joined", {3}, 2));
        add(*each, heights("curve", {each == &document ? 2u : 5u}));
        add(*each, measured_against(heights("appended", {each == &document ? 2u : 5u}), "curve"));
        for (unsigned i = 0; i < 3; ++i) each->setString("date", "a text that is too long to need no memory", i);
    }
    const texts before = state(document);
    const std::size_t tried = for_each_failing_allocation([] {}, [&] { document::merge_documents(document, other); },
                                                          [&](bool isDone, bool hasFailed) {
                                                              ASSERT_EQ(isDone, !hasFailed);
                                                              if (hasFailed) { ASSERT_EQ(state(document), before); }
                                                          });
    EXPECT_GT(tried, 10u) << "allocations of names, images and texts failed in turn";
    EXPECT_EQ(ids(document), (texts{"joined", "curve", "appended", "curve1", "appended1"}));
    EXPECT_EQ(document.getSubImagesNumber(0), 4u);
}

TEST_F(MergeTest, AnImageOfTooManyElementsStopsTheWholeMerge)
{
    // 2^31 bytes each, of which none is touched.
    SPMDataStream large;
    large.Init("large", "Large", SPM_VAR_ARRAY, 1u << 31, 1u);
    large.set_array_type(SPM_ARRAY_UINT8);
    SPMDataStream::dimension side;
    side.length = 1u << 16;
    large.set_dimension(0, side);
    side.length = 1u << 15;
    large.set_dimension(1, side);
    for (CStorageDoc* each : {&document, &other}) {
        add(*each, heights("small", {2}));
        each->AddNewImages(&large, 1);
    }
    EXPECT_THROW(document::merge_documents(document, other), std::length_error);
    EXPECT_EQ(document.getSubImagesNumber(0), 1u);
    EXPECT_EQ(document.getSubImagesNumber(1), 1u);
    EXPECT_TRUE(subimage_names(document, 0).empty());
}

TEST_F(MergeTest, TheFilterAsksForAnImageOfThatManyDimensions)
{
    EXPECT_TRUE(document::takes_part(document, 0));
    EXPECT_FALSE(document::takes_part(document, 1)) << "no image";
    add(document, heights("a", {2}));
    add(document, heights("b", {2, 2, 2}));
    const bool expected[] = {true, true, false, true, true};
    for (int filter = 0; filter < 5; ++filter)
        EXPECT_EQ(document::takes_part(document, filter), expected[filter]) << filter;
    EXPECT_TRUE(document::takes_part(document, -1));
}

TEST(MergePaths, ForeignFilesAreHeldBesideThemselves)
{
    struct holding {
        const wchar_t *path, *extension, *native, *foreign;
    };
    const holding cases[] = {
        {L"/d/a.spm", L".spm", L"/d/a.spm", L"/d/a.spm.spm"},
        {L"/d/a.SPM", L".spm", L"/d/a.SPM", L"/d/a.SPM.spm"},
        {L"/d.spm/a.mdt", L".spm", L"/d.spm/a.mdt.spm", L"/d.spm/a.mdt.spm"},
        {L"/d/.spm", L".spm", L"/d/.spm.spm", L"/d/.spm.spm"},
        {L"/d/a", L"", L"/d/a", L"/d/a"},
    };
    for (const holding& each : cases) {
        EXPECT_EQ(document::held_path(each.path, each.extension, true), each.native);
        EXPECT_EQ(document::held_path(each.path, each.extension, false), each.foreign);
        EXPECT_TRUE(document::is_held_path(each.native, each.path, each.extension));
        EXPECT_TRUE(document::is_held_path(each.foreign, each.path, each.extension));
    }
    EXPECT_FALSE(document::is_held_path(L"", L"", L".spm")) << "a document without a file is none";
    EXPECT_FALSE(document::is_held_path(L"/d/a.spm", L"/d/A.spm", L".spm"));
    EXPECT_FALSE(document::is_held_path(L"/d/a.spm", L"/d/a.spm.spm", L".spm"));
}

TEST(MergePaths, MergedDocumentsLieBesideTheFirst)
{
    EXPECT_EQ(document::merged_path(L"/d/a.b/c.spm", 3, L".spm"), L"/d/a.b/Merged 3.spm");
    EXPECT_EQ(document::merged_path(L"c.spm", 12, L""), L"Merged 12");
    EXPECT_EQ(document::merged_path(L"/c", 1, L".spm"), L"/Merged 1.spm");
}

TEST(MergePaths, FilesAreSortedByCodePoint)
{
    std::vector<std::wstring> paths = {L"/d/\U00010000", L"/d/\uFF21", L"/d/b",     L"/d/a10",
                                       L"/d/a2",         L"/d/B",      L"/d/\u00E4"};
    document::sort_paths(paths);
    EXPECT_EQ(paths, (std::vector<std::wstring>{L"/d/B", L"/d/a10", L"/d/a2", L"/d/b", L"/d/\u00E4", L"/d/\uFF21",
                                                L"/d/\U00010000"}));
}

} // namespace
