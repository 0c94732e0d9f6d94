// What tells a document from its file, and where the samples of a moment are.
#include "document/fixtures.h"

namespace {

class ContentStateTest : public DocumentTest {
protected:
    ContentStateTest()
    {
        const SPMDataStream stream = heights("a", {4});
        document.AddNewImages(&stream, 1);
        path = (folder / "a.spm").wstring();
        EXPECT_TRUE(document.DoSave(path.c_str(), true));
    }
    /// As an operation does.
    void change(short to)
    {
        document.pushUndo(0, true);
        document.getDataPoint1S(0, 0, 0) = to;
    }
    short firstSample(std::uint64_t state) const
    {
        const auto found = document.samplesIn(state);
        return found ? *reinterpret_cast<const short*>(found->data()) : short(-1);
    }

    std::wstring path;
};

TEST_F(ContentStateTest, AnotherContentHasAnotherState)
{
    const auto stored = document.contentState();
    EXPECT_FALSE(document.isChanged());
    using action = std::function<void()>;
    const std::pair<const char*, action> actions[] = {
        {"samples", [&] { change(7); }},
        {"samples in place", [&] { document.setImageDataS(0, "\1\2", 1, 0, 0); }},
        {"axis", [&] { document.setAxis(0, 0, VLAxis(1, 2, "nm"), 0); }},
        {"image text", [&] { document.setString("k", "v", 0); }},
        {"document text", [&] { document.setString("k", "v", unsigned(-1)); }},
        {"added image",
         [&] {
             const SPMDataStream added = heights("b", {2});
             document.AddNewImages(&added, 1);
         }},
        {"removed image", [&] { document.RemoveImage(1); }},
        {"grown image",
         [&] {
             document.getImage(0).set_array_len(8);
             document.revalidateImage(0);
         }},
    };
    for (const auto& [name, act] : actions) {
        const auto before = document.contentState();
        act();
        EXPECT_NE(document.contentState(), before) << name;
        EXPECT_NE(document.contentState(), stored) << name;
        EXPECT_TRUE(document.isChanged()) << name;
    }
    ASSERT_TRUE(document.Save());
    EXPECT_FALSE(document.isChanged());
}

TEST_F(ContentStateTest, StepsBringStatesAndTheirSamplesBack)
{
    std::vector<std::uint64_t> states = {document.contentState().images[0]};
    for (short value = 1; value <= 3; ++value) {
        change(value);
        states.push_back(document.contentState().images[0]);
    }
    for (std::size_t i = 0; i < states.size(); ++i) EXPECT_EQ(firstSample(states[i]), static_cast<short>(i));
    document.undo(0);
    document.undo(0);
    EXPECT_EQ(document.contentState().images[0], states[1]);
    for (std::size_t i = 0; i < states.size(); ++i)
        EXPECT_EQ(firstSample(states[i]), static_cast<short>(i)) << "two of them wait for redo";
    document.redo(0);
    EXPECT_EQ(document.contentState().images[0], states[2]);
    change(9);
    EXPECT_EQ(firstSample(states[3]), -1) << "the way forward is gone";
}

TEST_F(ContentStateTest, APreviewThatIsTakenBackIsNoChange)
{
    change(5); // the preview
    document.restore(0);
    document.getDataPoint1S(0, 0, 0) = 6;
    EXPECT_TRUE(document.isChanged()) << "the preview went on";
    document.restore(0);
    document.dropUndo(0);
    EXPECT_FALSE(document.isChanged());
    EXPECT_EQ(document.getDataPoint1S(0, 0, 0), 0);
    change(5);
    document.restore(0);
    document.getDataPoint1S(0, 0, 0) = 6; // as a module writes, by a pointer
    document.dropUndo(0);
    EXPECT_TRUE(document.isChanged()) << "what is there now is neither in the file nor in the history";
}

TEST_F(ContentStateTest, WhatLiesOverAnImageHasAStateButIsInNoFile)
{
    BITMAPINFOHEADER header;
    header.biWidth = header.biHeight = 1;
    header.biBitCount = 24;
    double points[] = {1, 2};
    VLPluginDecoration record{DECORATION_POINTS, 1, 0, 0, nullptr, "n", points};
    const document::content_state empty = document.contentState();
    const std::pair<const char*, std::function<void()>> actions[] = {
        {"bitmap", [&] { document.setOverlay(0, document::pack_bitmap(header, "abc", nullptr)); }},
        {"drawing", [&] { document.set_decoration("k", &record, 1, DEC_IMAGE_ANY, 0); }},
        {"selection", [&] { document.toggleDecoration(0, 0, 0); }},
        {"selection by name", [&] { document.ObjectAction(0, OBJECT_DESELECT, "n"); }},
        {"copy of itself", [&] { document.copyDecorations(document, 0, 0); }},
    };
    for (const auto& [name, act] : actions) {
        const auto before = document.contentState();
        act();
        EXPECT_NE(document.contentState(), before) << name;
        EXPECT_FALSE(document.isChanged()) << name;
    }
    document.ObjectAction(0, OBJECT_DELETE, "n");
    document.setOverlay(0, nullptr);
    EXPECT_EQ(document.contentState(), empty);
}

TEST_F(ContentStateTest, SharedDrawingsStayAsTheyWere)
{
    double points[] = {1, 2};
    VLPluginDecoration record{DECORATION_POINTS, 1, 0, 0, nullptr, "n", points};
    document.set_decoration("k", &record, 1, DEC_IMAGE_ANY, 0);
    const auto held = document.sharedDecorations(0);
    document.toggleDecoration(0, 0, 0);
    EXPECT_EQ(held->flags("n"), 0u);
    EXPECT_EQ(document.GetObjectFlags(0, "n"), DECORATION_SELECTED);
    const auto* const own = &document.decorations(0);
    document.toggleDecoration(0, 0, 0);
    EXPECT_EQ(&document.decorations(0), own) << "nobody else holds these: no further copy";
    CStorageDoc other;
    const SPMDataStream stream = heights("b", {4});
    other.AddNewImages(&stream, 1);
    other.copyDecorations(document, 0, 0);
    document.clear_decorations(0);
    EXPECT_EQ(other.get_decorations_list(nullptr, 0, 0), 1u);
}

TEST_F(ContentStateTest, AFileThatChangesWhileItIsReadIsNotTheDocumentsOwn)
{
    const std::pair<const char*, std::function<void()>> changes[] = {
        {"replaced",
         [&] {
             CStorageDoc other;
             const SPMDataStream stream = heights("other", {4});
             other.AddNewImages(&stream, 1);
             EXPECT_TRUE(other.OnSaveDocument(path.c_str()));
         }},
        {"written to", [&] { std::ofstream(folder / "a.spm", std::ios::app) << "more"; }},
    };
    for (const auto& [name, change] : changes) {
        ASSERT_TRUE(document.OnSaveDocument(path.c_str()));
        CStorageDoc opened;
        opened.onReadProgress = [&, act = change](double) mutable {
            if (act) std::exchange(act, {})();
            return true;
        };
        host.outputLines.clear();
        ASSERT_TRUE(opened.OnOpenDocument(path.c_str()));
        EXPECT_STREQ(opened.getImage(0).get_name(), "a") << name;
        EXPECT_EQ(opened.ownFiles().of(path), document::own_files::relation::replaced) << name;
        ASSERT_EQ(host.outputLines.size(), 1u) << name;
        EXPECT_NE(host.outputLines[0].find("while it was read"), std::string::npos) << name;
    }
}

TEST_F(ContentStateTest, ADocumentKnowsItsFiles)
{
    using relation = document::own_files::relation;
    EXPECT_EQ(document.ownFiles().of(path), relation::own);
    const std::wstring other = (folder / "other.spm").wstring();
    EXPECT_EQ(document.ownFiles().of(other), relation::missing);
    std::filesystem::copy_file(path, other);
    EXPECT_EQ(document.ownFiles().of(other), relation::foreign);
    EXPECT_EQ(document.ownFiles().of(folder.path.wstring()), relation::foreign) << "a folder is in the way as well";
    ASSERT_TRUE(document.DoSave(other.c_str(), false));
    EXPECT_EQ(document.ownFiles().of(other), relation::own);
    EXPECT_EQ(document.ownFiles().of(path), relation::own);
    write_file(path, "theirs");
    EXPECT_EQ(document.ownFiles().of(path), relation::replaced);
    EXPECT_EQ(document::file_to_delete(document.ownFiles(), path), other) << "never what is somebody else's";
}

TEST_F(ContentStateTest, RevertReadsWhatTheDocumentKnows)
{
    constexpr bool no = false, yes = true;
    const struct {
        bool knowsHeld, isHeldThere, knowsRecording, isRecordingThere, readsRecording;
    } cases[] = {
        {yes, yes, no, yes, no}, {yes, yes, yes, yes, no}, {yes, no, yes, yes, yes},
        {yes, no, yes, no, no},  {yes, no, no, yes, no},   // a neighbour that only has such a name
        {no, no, yes, yes, yes}, {no, yes, yes, yes, yes}, // an older result
        {no, yes, yes, no, yes},                           // its recording is gone, and the result still no other's
        {no, no, yes, no, no},   {no, yes, no, yes, no},   {no, no, no, yes, yes},
    };
    const std::wstring held = (folder / "t.di.spm").wstring(), recording = (folder / "t.di").wstring();
    for (const auto& each : cases) {
        document::own_files files;
        if (each.knowsHeld) files.note({held, {}}); // whatever it was then
        if (each.knowsRecording) files.note({recording, {}});
        for (const char* name : {"t.di.spm", "t.di"}) std::filesystem::remove(folder / name);
        if (each.isHeldThere) write_file(held, "x");
        if (each.isRecordingThere) write_file(recording, "x");
        EXPECT_EQ(document::file_to_revert(files, held), each.readsRecording ? recording : held) << &each - cases;
    }
}

TEST_F(ContentStateTest, FreePathsCountBeforeTheExtension)
{
    write_file(folder / "a.top.spm", "");
    write_file(folder / "a.top (2).spm", "");
    EXPECT_EQ(document::free_path((folder / "a.top.spm").wstring()), (folder / "a.top (3).spm").wstring());
    EXPECT_EQ(document::free_path((folder / "plain").wstring()), (folder / "plain (2)").wstring());
}

TEST_F(ContentStateTest, ADocumentOfSeveralFilesHasNoneToBeSavedOver)
{
    document.becomeUnfiled();
    EXPECT_FALSE(document.isChanged());
    EXPECT_EQ(document.storedFile(), nullptr);
    EXPECT_EQ(document.ownFiles().of(path), document::own_files::relation::foreign);
}

} // namespace
