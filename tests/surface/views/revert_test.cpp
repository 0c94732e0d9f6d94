// Reading a file again that is no longer what it was: no window may show what is gone.
#include "surface/surface_fixture.h"

#include <fstream>
#include <functional>

namespace {

struct counting_view : CView {
    void OnUpdate(CView*, std::uint32_t hint, const hint_object&) override { hints.push_back(hint); }
    std::vector<std::uint32_t> hints;
};

std::vector<SPMDataStream> images(unsigned count, unsigned columns = 40)
{
    std::vector<SPMDataStream> out;
    for (unsigned i = 0; i < count; ++i) {
        out.push_back(slope(columns));
        out.back().set_name(("height" + std::to_string(i)).c_str());
    }
    return out;
}

void write_images(const std::filesystem::path& file, const std::vector<SPMDataStream>& list)
{
    CStorageDoc saved;
    saved.AddNewImages(list.data(), static_cast<unsigned>(list.size()));
    for (unsigned i = 0; i < list.size(); ++i) saved.setString("note", "of the file", i);
    ASSERT_TRUE(saved.OnSaveDocument(file.wstring().c_str()));
}

void overwrite(const std::filesystem::path& file, const std::string& content)
{
    std::ofstream(file, std::ios::binary) << content;
}

/// What has happened to a file of three images, and how many of them are there afterwards.
struct changed_file {
    const char* name;
    std::function<void(const std::filesystem::path&)> change;
    unsigned left;
    std::size_t told; ///< images that the other views are told of
    bool isRead;
};

class RevertOf : public SurfaceTest, public testing::WithParamInterface<changed_file> {
protected:
    RevertOf()
    {
        write_images(file, images(3));
        document = dynamic_cast<CStorageDoc*>(app.OpenDocumentFile(file.wstring().c_str()));
        host.pump();
        document->SetModifiedFlag(true);
        app.setActiveFrame(app.frames().front().get());
        GetParam().change(file);
    }
    /// All that a user can still reach paints and answers.
    void useWhatIsLeft()
    {
        host.pump();
        for (const auto& frame : app.frames()) {
            CView& view = *frame->GetActiveView();
            view.OnCmdMsg(10157, nullptr);
            view.flushTimers();
            RecordingDC dc(view.GetClientRect().Size());
            view.OnDraw(dc);
        }
        app.routeCommand(10157, nullptr);
    }
    std::filesystem::path file = folder / "a.spm";
};

TEST_P(RevertOf, LeavesTheWindowsOfWhatIsThere)
{
    counting_view other;
    document->AddView(&other);
    const std::wstring path = document->getFullPath(), name = document->getFileName();
    host.onChoose = [](CListChooser& chooser) { return chooser.sources.at(1).entries.size() > 0; };
    app.routeCommand(10025, nullptr);
    EXPECT_EQ(document->getImagesNumber(), GetParam().left);
    EXPECT_EQ(app.frames().size(), GetParam().left);
    EXPECT_EQ(other.hints.size(), 2 * GetParam().told) << "of its shape and its data, each image";
    EXPECT_EQ(host.messages.size(), GetParam().isRead ? 0u : 1u);
    EXPECT_EQ(document->getFullPath(), path);
    EXPECT_EQ(document->getFileName(), name);
    useWhatIsLeft();
    document->RemoveView(&other);
}

TEST_P(RevertOf, ClosesADocumentWithoutWindows)
{
    app.routeCommand(10025, nullptr);
    host.pump();
    EXPECT_EQ(surfaces.documents().size(), GetParam().left > 0 ? 1u : 0u);
    useWhatIsLeft();
}

INSTANTIATE_TEST_SUITE_P(
    Files, RevertOf,
    testing::Values(
        changed_file{"CutShort", [](const auto& file) { resize_file(file, file_size(file) / 2); }, 0, 3, false},
        changed_file{"Overwritten", [](const auto& file) { overwrite(file, "no surface\n"); }, 0, 3, false},
        changed_file{"Emptied", [](const auto& file) { overwrite(file, ""); }, 0, 3, false},
        changed_file{"Vanished", [](const auto& file) { std::filesystem::remove(file); }, 3, 0, false},
        changed_file{"WithOneImage", [](const auto& file) { write_images(file, images(1)); }, 1, 3, true},
        changed_file{"WithSmallerImages", [](const auto& file) { write_images(file, images(3, 7)); }, 3, 3, true}),
    [](const auto& test) { return test.param.name; });

TEST_F(SurfaceTest, AFileThatDoesNotOpenLeavesThePathOfTheDocument)
{
    open();
    const std::wstring path = document->getFullPath();
    EXPECT_FALSE(document->OnOpenDocument((folder / "missing.spm").wstring().c_str()));
    EXPECT_EQ(document->getFullPath(), path);
    EXPECT_EQ(document->getImagesNumber(), 1u);
    overwrite(folder / "bad.spm", "PK\3\4 and no more");
    EXPECT_THROW(document->OnOpenDocument((folder / "bad.spm").wstring().c_str()), CArchiveException);
    EXPECT_EQ(document->getFullPath(), path);
    EXPECT_EQ(document->getFileName(), L"a.spm");
}

} // namespace
