// Pictures that views of an image write.
#include "support/temporary_folder.h"
#include "view/ImageView.h"
#include "view/image/picture_export.h"
#include "view/view_fixture.h"

#include <cstring>

namespace {

class exported_view : public CImageView {
public:
    unsigned getSourceWidth() override { return 4; }
    unsigned getSourceHeight() override { return 2; }
    void OnDrawLegend(CDC&) override { ++legends; }
    int legends = 0;
};

class ExportTest : public FramedViewTest<exported_view> {
protected:
    ExportTest()
    {
        host.profile().writeString("CommonView", "LeftMargin", "10");
        show();
        // Blue, green, red and a filler: the lower left pixel differs.
        for (std::byte& each : view->image.bits()) each = std::byte{7};
        view->image.bits()[2] = std::byte{200};
    }
    ~ExportTest() override { *view::picture_parameters(0)[0] = 0.0; }
    static int at(const std::string& bytes, std::size_t offset)
    {
        std::int32_t value = 0;
        std::memcpy(&value, bytes.data() + offset, 4);
        return value;
    }
    temporary_folder folder;
};

TEST_F(ExportTest, NamesFormatsAndTheirParameters)
{
    const std::wstring filters = view->GetExportFilters();
    EXPECT_TRUE(filters.starts_with(L"Bitmap Files (*.bmp)|*.bmp|"));
    EXPECT_EQ(CountExportFormats(filters.c_str()), 3);
    EXPECT_EQ(CountExportFormats(nullptr), 0);
    const std::vector<std::string> expected[] = {
        {"expDec"}, {"expDec", "jpgQality"}, {"expDec", "tiffMethod", "tiffCopyright", "tiffArtist"}};
    for (int format = 0; format < 3; ++format) {
        SPMVar* found[4] = {};
        std::vector<std::string> names;
        const int count = view->GetExportParameters(format, found, 4);
        for (int i = 0; i < count; ++i) names.emplace_back(found[i]->get_name());
        EXPECT_EQ(names, expected[format]);
        EXPECT_EQ(view->GetExportParameters(format, nullptr, 0), count);
    }
    SPMVar* one[2] = {};
    EXPECT_EQ(view->GetExportParameters(2, one, 1), 4);
    EXPECT_EQ(one[1], nullptr) << "no more than there is room for";
}

TEST_F(ExportTest, WritesTheDataOrAllThatTheWindowShows)
{
    const auto file = folder / "a.bmp";
    view->Export(1, file.wstring().c_str());
    const std::string data = file_content(file);
    ASSERT_GT(data.size(), 54u);
    EXPECT_EQ(at(data, 18), 512);
    EXPECT_EQ(at(data, 22), 256);
    EXPECT_EQ(data[54 + 2], '\xC8') << "the lowest row comes first";
    EXPECT_EQ(data[54 + 3], '\x07');
    EXPECT_EQ(view->legends, 0);

    *view::picture_parameters(0)[0] = 1.0;
    view->Export(1, file.wstring().c_str());
    EXPECT_EQ(at(file_content(file), 18), 512 + 10) << "with the margins";
    EXPECT_EQ(view->legends, 1);
    view->setOption("ShowLegend", "false");
    view->Export(2, (folder / "a.jpg").wstring().c_str());
    EXPECT_TRUE(file_content(folder / "a.jpg").starts_with("\xFF\xD8"));
    view->Export(3, (folder / "a.tif").wstring().c_str());
    EXPECT_TRUE(file_content(folder / "a.tif").starts_with("II*"));
    EXPECT_EQ(view->legends, 1);
    EXPECT_TRUE(host.messages.empty());
}

TEST_F(ExportTest, AFailureIsToldAndAnUnknownFormatDoesNothing)
{
    view->Export(4, (folder / "a.txt").wstring().c_str());
    EXPECT_EQ(folder.files(), 0u);
    view->Export(1, (folder / "no" / "a.bmp").wstring().c_str());
    ASSERT_EQ(host.messages.size(), 1u);
    EXPECT_NE(host.messages[0].find("a.bmp"), std::string::npos);
    view->image.Clear();
    const std::pair<int, const char*> failures[] = {{1, "Can't convert image to 24-bpp format."},
                                                    {2, "Can't convert image to JPEG format."},
                                                    {3, "Can't convert image to TIFF format."}};
    for (const auto& [filter, text] : failures) {
        view->Export(filter, (folder / "b").wstring().c_str());
        EXPECT_EQ(host.messages.back(), text);
    }
    EXPECT_EQ(folder.files(), 0u);
}

} // namespace
