#include "view/ImageView.h"

#include "document/StorageDocTemplate.h"
#include "document/update_hints.h"
#include "platform/app/RuntimeClass.h"
#include "support/streams.h"
#include "support/temporary_folder.h"
#include "view/ChildFrame.h"
#include "view/image/VolumeSource.h"
#include "view/view_fixture.h"

#include <array>

namespace {

/// Views of the shapes, which count what reaches them; the first selection is what the test sets.
class counting_view : public CImageView {
public:
    void LoadData() override
    {
        ++loads;
        CImageView::LoadData();
    }
    bool supportsOverlay() override { return hasOverlay; }
    unsigned getSourceWidth() override { return dimension(0); }
    unsigned getSourceHeight() override { return dimension(1); }
    int GetDataSelection(VLPluginDataSelection* records, unsigned count) override
    {
        if (!records) return static_cast<int>(selected.size());
        for (unsigned i = 0; i < count && i < selected.size(); ++i) records[i] = selected[i];
        return static_cast<int>(std::min<std::size_t>(count, selected.size()));
    }
    void getSelectionCopy(SPMDataStream& target, const VLPluginDataSelection* records, unsigned) override
    {
        if (records[0].kind != SELECTION_RECTANGLE) return;
        target.set_array_len(static_cast<unsigned>(records[0].data[2]));
        SPMDataStream::dimension side = storageDoc()->getImage(imageNumber).get_dimension(0);
        for (const unsigned i : {0u, 1u}) {
            side.length = i == 0 ? target.array_length() : 1;
            target.set_dimension(i, side);
        }
    }

    int loads = 0;
    bool hasOverlay = false;
    std::vector<VLPluginDataSelection> selected;
    unsigned xData = unsigned(-1);

private:
    unsigned dimension(unsigned i)
    {
        const SPMDataStream& stream = storageDoc()->getImage(imageNumber);
        return i < stream.get_dimensions_number() ? stream.get_dimension(i).length : 1;
    }
};

class fake_surface : public counting_view {
public:
    const char* viewKind() const override { return "CSurfMathView"; }
    std::string GetViewSection() override { return "SurfaceView"; }
};
class fake_section : public counting_view {
public:
    const char* viewKind() const override { return "CSectionView"; }
};
class fake_pairs : public counting_view {
public:
    const char* viewKind() const override { return "CParametricCurveView"; }
    void setXDataStream(unsigned source) override { xData = source; }
};
class fake_volume : public counting_view, public IVolumeSource {
public:
    const char* viewKind() const override { return "C3DCloudView"; }
    const SPMDataStream& getVolume() const override { return volume; }
    unsigned getVolumeImage() const override { return getImageNumber(); }
    SPMDataStream volume;
};
class fake_parameters : public CView {
public:
    void OnUpdate(CView*, std::uint32_t, const hint_object&) override {}
};

const CRuntimeClass classes[] = {
    {"CStorageDoc", nullptr, create_object<CStorageDoc>},
    {"CChildFrame", nullptr, create_object<CChildFrame>},
    {"CSurfMathView", nullptr, create_object<fake_surface>},
    {"CSectionView", nullptr, create_object<fake_section>},
    {"CParametricCurveView", nullptr, create_object<fake_pairs>},
    {"C3DCloudView", nullptr, create_object<fake_volume>},
    {"CParametersView", nullptr, create_object<fake_parameters>},
};

SPMDataStream stream_of(const char* id, const std::vector<unsigned>& lengths, unsigned subimages = 1)
{
    std::vector<test_support::stream_side> sides;
    for (const unsigned length : lengths) sides.push_back({length, VLAxis(0, 1, "nm")});
    return test_support::made_stream(id, sides, VLAxis(0, 0.5, "nm"), [](unsigned i) { return i; }, subimages);
}

class ImageViewTest : public testing::Test {
protected:
    ImageViewTest()
    {
        for (const CRuntimeClass& each : classes) register_runtime_class(each);
        app.AddDocTemplate(&surfaces);
        app.AddDocTemplate(&parameters);
        setGlobal("open.merged", "false");
        setGlobal("open.filter", "0");
    }
    ~ImageViewTest() override
    {
        while (!app.frames().empty()) app.frames().back()->DestroyFrame();
        app.freeClosed();
    }

    static void setGlobal(const char* name, const char* value)
    {
        SPMVar variable;
        variable.Init(std::string(name) + (std::string(name) == "open.merged" ? ",boolean" : ",int"));
        variable.from_string(value);
        VLGlobalVarList* const list = VLGlobalVarList::GetVarList("global_options");
        list->set_var(variable);
        list->ReleaseList();
    }
    std::wstring saved(const char* name, const std::vector<SPMDataStream>& streams)
    {
        CStorageDoc document;
        document.AddNewImages(streams.data(), static_cast<unsigned>(streams.size()));
        const std::wstring path = (folder / name).wstring();
        EXPECT_TRUE(document.OnSaveDocument(path.c_str()));
        return path;
    }
    CStorageDoc* open(const std::vector<SPMDataStream>& streams, const char* name = "a.spm")
    {
        return dynamic_cast<CStorageDoc*>(app.OpenDocumentFile(saved(name, streams).c_str()));
    }
    template <class View = counting_view>
    View* viewAt(std::size_t frame)
    {
        return dynamic_cast<View*>(app.frames().at(frame)->GetActiveView());
    }
    std::vector<std::string> kinds() const
    {
        std::vector<std::string> out;
        for (const auto& frame : app.frames())
            if (auto* bound = dynamic_cast<IImageBoundView*>(frame->GetActiveView()))
                out.push_back(std::string(bound->viewKind()) + " " + std::to_string(bound->getImageNumber()));
        return out;
    }

    temporary_folder folder;
    CHeadlessHost host;
    CWinApp app{host};
    CStorageDocTemplate surfaces{102, "CStorageDoc", "CChildFrame", "CSurfMathView"};
    CMultiDocTemplate parameters{108, "CDocument", "CChildFrame", "CParametersView"};
};

TEST_F(ImageViewTest, TheShapeOfAnImageChoosesItsView)
{
    SPMDataStream pairs = stream_of("pairs", {4});
    pairs.set_parameter_stream("x");
    CStorageDoc* const document =
        open({stream_of("surface", {4, 3}), stream_of("curve", {5}), pairs, stream_of("x", {4}),
              stream_of("volume", {3, 2, 2}), stream_of("point", {}), stream_of("four", {2, 2, 2, 2})});
    ASSERT_NE(document, nullptr);
    EXPECT_EQ(kinds(), (std::vector<std::string>{"CSurfMathView 0", "CSectionView 1", "CParametricCurveView 2",
                                                 "C3DCloudView 4"}))
        << "what only parametrises another gets no frame";
    EXPECT_EQ(viewAt(2)->xData, 3u);
    EXPECT_EQ(host.outputLines.size(), 2u) << "shapes that nothing shows are told";
    EXPECT_EQ(app.frames()[1]->menuId(), 101u);
    EXPECT_EQ(app.frames()[3]->menuId(), 118u);

    app.frames()[1]->DestroyFrame();
    surfaces.ShowAllViews(document, false);
    EXPECT_EQ(kinds().size(), 4u);
    surfaces.ShowAllViews(document, true);
    EXPECT_EQ(kinds().back(), "CSectionView 3");
    const std::size_t before = app.frames().size();
    surfaces.ShowView(document, 1);
    EXPECT_EQ(app.frames().size(), before) << "it has one";
    while (!app.frames().empty()) app.frames().back()->DestroyFrame();
    EXPECT_TRUE(surfaces.documents().empty()) << "the document closes with its last view";
}

struct told_values : SPMVarListHandler {
    void OnFireVariableChange(int, const SPMVarList* list) override { seen.push_back((*list)["depth"]); }
    std::vector<int> seen;
};

TEST_F(ImageViewTest, ParametersOfAnOperationAreKeptButForThoseThatAreNot)
{
    open({stream_of("surface", {4, 3})});
    CImageView& view = *viewAt(0);
    const auto declared = [] {
        std::array<SPMVar, 2> made;
        made[0].Init("depth(Depth),int,0,9");
        made[1].Init("place(Place),int,0,9");
        return made;
    };
    const char* unkept[] = {"place", nullptr};
    told_values told;
    const auto call = [&](std::array<SPMVar, 2>& vars, bool asks, int result) {
        host.onDialog = [result](CVarListDlg& dialog) {
            EXPECT_EQ(dialog.layout().buttons.size(), 5u) << "the built-in layout: there is no file of that name";
            dialog.edit(0, "5");
            dialog.edit(1, "6");
            dialog.EndDialog(result);
        };
        return view.CallParametersDialog(vars.data(), 2, "NoSuchLayout", &told, nullptr, asks, unkept);
    };
    std::array<SPMVar, 2> cancelled = declared(), accepted = declared(), again = declared();
    EXPECT_FALSE(call(cancelled, true, CVarListDlg::resultCancel));
    EXPECT_EQ(int(cancelled[0]), 0);
    EXPECT_TRUE(host.keys("Plugins\\NoSuchLayout").empty());
    EXPECT_TRUE(call(accepted, true, CVarListDlg::resultOk));
    EXPECT_EQ(int(accepted[0]), 5);
    EXPECT_EQ(int(accepted[1]), 6);
    EXPECT_EQ(host.keys("Plugins\\NoSuchLayout"), std::vector<std::string>{"depth"});
    EXPECT_TRUE(call(again, false, CVarListDlg::resultOk));
    EXPECT_EQ(host.dialogs, 2) << "the last call asked nothing";
    EXPECT_EQ(int(again[0]), 5);
    EXPECT_EQ(int(again[1]), 0);
    EXPECT_EQ(told.seen, (std::vector<int>{0, 5, 5, 0, 5, 5, 5})) << "once before, then both edits";
}

TEST_F(ImageViewTest, FailuresOfOpeningShowTheirTexts)
{
    const std::wstring missing = (folder / "none.spm").wstring();
    EXPECT_EQ(app.OpenDocumentFile(missing.c_str()), nullptr);
    EXPECT_EQ(host.messages.back(), "File " + (folder / "none.spm").string() + " is empty.\nNo such file or directory");
    write_file(folder / "broken.spm", "PK\3\4");
    EXPECT_EQ(app.OpenDocumentFile((folder / "broken.spm").wstring().c_str()), nullptr);
    EXPECT_NE(host.messages.back().find("broken.spm"), std::string::npos);
    EXPECT_EQ(open({stream_of("point", {})}), nullptr);
    EXPECT_EQ(host.messages.back(), (folder / "a.spm").string() +
                                        ": image 0 (Height) has 0 dimensions, which no view shows\n" +
                                        "Failed to create empty document.")
        << "the reason first";
    SPMDataStream wide = stream_of("wide", {3, 2});
    wide.convert_stream(SPM_ARRAY_FLOAT32);
    EXPECT_EQ(open({wide}), nullptr) << "an empty picture would say nothing";
    EXPECT_NE(host.messages.back().find("holds other samples than integers of 16 bits"), std::string::npos);
    EXPECT_TRUE(surfaces.documents().empty());
}

TEST_F(ImageViewTest, ForeignFilesAreHeldBesideThemselvesAndOpenedOnce)
{
    write_file(folder / "m.txt", "# Channel: Height\n# Width: 2 nm\n# Height: 2 nm\n# Value units: nm\n1 2\n3 4\n");
    const std::wstring path = (folder / "m.txt").wstring();
    CDocument* const document = app.OpenDocumentFile(path.c_str());
    ASSERT_NE(document, nullptr);
    EXPECT_EQ(document->GetPathName(), path + L".spm");
    EXPECT_TRUE(document->IsModified());
    EXPECT_EQ(app.recentFiles().front(), path);
    EXPECT_EQ(app.OpenDocumentFile(path.c_str()), document);
    EXPECT_EQ(app.OpenDocumentFile((path + L".spm").c_str()), document);
    EXPECT_EQ(app.frames().size(), 1u);
    std::filesystem::copy(folder / "m.txt", folder / "n.spm");
    CDocument* const named = app.OpenDocumentFile((folder / "n.spm").wstring().c_str());
    ASSERT_NE(named, nullptr);
    EXPECT_EQ(named->GetPathName(), (folder / "n.spm.spm").wstring()) << "a recording is never written over";
    CDocument* const native = open({stream_of("s", {2, 2})}, "native.spm");
    EXPECT_EQ(native->GetPathName(), (folder / "native.spm").wstring());
    EXPECT_FALSE(native->IsModified());
}

TEST_F(ImageViewTest, SeveralFilesMergeIntoOneDocument)
{
    setGlobal("open.merged", "true");
    setGlobal("open.filter", "2");
    SPMDataStream first = stream_of("h", {3, 2}, 2);
    const char* names[] = {"Forward"};
    first.set_subimage_names(names, 1);
    const std::wstring paths[] = {
        saved("a.spm", {stream_of("c", {3})}), saved("b.spm", {first}), saved("c.spm", {stream_of("c", {4})}),
        saved("d.spm", {stream_of("h", {3, 2}), stream_of("other", {2, 2})}), saved("e.spm", {stream_of("h", {5, 2})})};
    surfaces.setFirstMerged();
    for (const std::wstring& path : paths) app.OpenDocumentFile(path.c_str());
    EXPECT_TRUE(app.frames().empty());
    surfaces.setLastMerged();
    ASSERT_EQ(surfaces.documents().size(), 1u);
    const auto& merged = *dynamic_cast<CStorageDoc*>(surfaces.documents().front().get());
    EXPECT_EQ(merged.GetPathName(), (folder / "Merged 1.spm").wstring());
    ASSERT_EQ(merged.getImagesNumber(), 3u);
    EXPECT_EQ(merged.getSubImagesNumber(0), 3u);
    EXPECT_EQ(*static_cast<short*>(merged.getImageDataS(0, 2)), 0) << "d's samples begin anew";
    EXPECT_STREQ(merged.getImage(1).get_name(), "other");
    EXPECT_EQ(merged.getImage(2).get_dimension(0).length, 5u) << "another shape stays by itself";
    EXPECT_STRNE(merged.getImage(2).get_name(), "h");
    EXPECT_EQ(app.frames().size(), 3u);

    surfaces.setFirstMerged();
    app.OpenDocumentFile(paths[4].c_str());
    surfaces.setLastMerged();
    EXPECT_EQ(surfaces.documents().back()->GetPathName(), paths[4]) << "one file keeps its name";
}

TEST_F(ImageViewTest, HintsReachTheViewsOfTheirImage)
{
    CStorageDoc* const document = open({stream_of("a", {4, 3}, 3), stream_of("b", {4, 3})});
    counting_view &a = *viewAt(0), &b = *viewAt(1);
    const auto loads = [&] { return std::pair{std::exchange(a.loads, 0), std::exchange(b.loads, 0)}; };
    loads();
    document->UpdateAllViews(nullptr, document::data_hint(1));
    EXPECT_EQ(loads(), (std::pair{0, 1}));
    document->UpdateAllViews(nullptr, document::drawing_hint(0));
    EXPECT_EQ(loads(), (std::pair{0, 0})) << "drawn anew only";
    document->UpdateAllViews(nullptr, 4);
    EXPECT_EQ(loads(), (std::pair{0, 0})) << "no view has the focus";
    a.SetFocus();
    document->UpdateAllViews(nullptr, 4);
    EXPECT_EQ(loads(), (std::pair{1, 0}));
    document->UpdateAllViews(nullptr, 4 | 256);
    EXPECT_EQ(loads(), (std::pair{1, 1}));
    document->UpdateAllViews(nullptr, 8, hint_object(2.0));
    EXPECT_EQ(a.getSubImageNumber(), 2u);
    EXPECT_EQ(loads(), (std::pair{1, 0}));
    EXPECT_TRUE(a.OnKeyDown(VK_TAB));
    EXPECT_EQ(a.getSubImageNumber(), 0u);
    host.display.keys = {VK_SHIFT};
    a.OnKeyDown(VK_TAB);
    EXPECT_EQ(a.getSubImageNumber(), 2u);
    document->UpdateAllViews(nullptr, 1u << 16 | 5);
    EXPECT_EQ(app.activeFrame(), app.frames()[1].get());
    host.writeString(b.GetViewSection(), "AxisX", "1");
    double low = 0, high = 0;
    const char* units = nullptr;
    b.getBestScale(&low, &high, &units);
    EXPECT_EQ(low, 0.0);
    EXPECT_EQ(high, 5.5);
    EXPECT_STREQ(units, "nm");
}

TEST_F(ImageViewTest, ClosingAParentClosesItsChildren)
{
    open({stream_of("a", {4, 3}), stream_of("b", {4, 3}), stream_of("c", {4, 3}), stream_of("d", {4, 3})});
    counting_view &parent = *viewAt(0), &child = *viewAt(1), &grandchild = *viewAt(2), &other = *viewAt(3);
    child.SetParentView(&parent);
    child.SetParentView(&parent);
    grandchild.SetParentView(&child);
    other.SetParentView(&parent);
    EXPECT_EQ(parent.getChildViews().size(), 2u);
    other.SetParentView(&grandchild);
    EXPECT_EQ(parent.getChildViews(), std::vector<CImageView*>{&child}) << "a view has one parent";
    other.SetParentView(&parent);
    app.frames()[3]->DestroyFrame();
    EXPECT_EQ(parent.getChildViews(), std::vector<CImageView*>{&child});
    parent.closeFrame();
    EXPECT_TRUE(app.frames().empty());
    EXPECT_TRUE(surfaces.documents().empty());
    host.pump();
}

TEST_F(ImageViewTest, UndoCommandsFollowTheHistory)
{
    CStorageDoc* const document = open({stream_of("a", {4, 3})});
    app.setActiveFrame(app.frames()[0].get());
    const auto enabled = [&](unsigned id) {
        CCmdUI ui{.m_nID = id};
        EXPECT_TRUE(app.routeCommand(id, &ui));
        return ui.enabled;
    };
    EXPECT_FALSE(enabled(57643));
    document->pushUndo(0, true);
    const short changed = 99;
    document->setImageDataS(0, &changed, 1, 0, 0);
    EXPECT_TRUE(enabled(57643));
    app.routeCommand(57643, nullptr);
    EXPECT_EQ(document->getDataPoint2S(0, 0, 0, 0), 0);
    EXPECT_TRUE(enabled(57644));
    app.routeCommand(57644, nullptr);
    EXPECT_EQ(document->getDataPoint2S(0, 0, 0, 0), 99);
    app.routeCommand(10041, nullptr);
    EXPECT_EQ(app.frames().back()->menuId(), 108u) << "the parameters view on the same document";
    EXPECT_EQ(app.frames().back()->GetActiveView()->GetDocument(), document);
}

TEST_F(ImageViewTest, ParametersOfTheLegendAreChosenAndKept)
{
    open({stream_of("a", {8, 8})})->setString("operator", "Ada", 0);
    const auto isEnabled = [&] {
        CCmdUI ui{.m_nID = 10157};
        EXPECT_TRUE(viewAt(0)->OnCmdMsg(10157, &ui));
        return ui.enabled;
    };
    EXPECT_FALSE(isEnabled()) << "this legend shows none";
    SPMVar shows;
    shows.Init("ShowParameters,boolean");
    viewAt(0)->options.set_var(shows);
    EXPECT_TRUE(isEnabled());
    viewAt(0)->OnCmdMsg(10157, nullptr);
    EXPECT_FALSE(host.readString("SurfaceView", "ParametersList")) << "cancelled";
    host.onChoose = [](CListChooser& chooser) {
        chooser.addAll(1);
        return true;
    };
    viewAt(0)->OnCmdMsg(10157, nullptr);
    EXPECT_EQ(host.readString("SurfaceView", "ParametersList"), "operator-|");
}

TEST_F(ImageViewTest, DuplicateCopiesImageTextsAndDrawings)
{
    CStorageDoc* const document = open({stream_of("a", {4, 3}, 2), stream_of("b", {4, 3})});
    document->setString("\\Date", "today", 1);
    double point[] = {1, 2};
    const VLPluginDecoration mark{2, 1, 5, 0, nullptr, "n", point};
    document->set_decoration("marks", &mark, 1, DEC_IMAGE_SURFACE, 1);
    for (const unsigned image : {0u, 1u}) document->setString("\\Void points", "2", image);
    document->setString("\\Void samples", "of 24: 2-6 14-14", 0);
    viewAt(1)->OnCmdMsg(10151, nullptr);
    ASSERT_EQ(surfaces.documents().size(), 2u);
    auto& copy = *dynamic_cast<CStorageDoc*>(surfaces.documents().back().get());
    EXPECT_EQ(copy.GetTitle(), L"Copy 1 of a");
    EXPECT_TRUE(copy.IsModified());
    ASSERT_EQ(copy.getImagesNumber(), 1u);
    EXPECT_STREQ(copy.getString("\\Date", 0), "today");
    EXPECT_STREQ(copy.getString("\\Void points", 0), "2");
    EXPECT_EQ(copy.get_decorations_list(nullptr, 0, 0), 1u);
    EXPECT_EQ(app.frames().size(), 3u);

    EXPECT_EQ(host.statusText, L"") << "it is the whole";

    document->setString("\\Reader note", "6 samples were not measured and lie at the lowest value\nA unit is not known",
                        0);
    viewAt(0)->selected = {{36, 1, SELECTION_RECTANGLE, {0, 0, 3, 1, 0, 0}}};
    viewAt(0)->OnCmdMsg(10151, nullptr);
    EXPECT_EQ(surfaces.documents().back()->GetTitle(), L"Copy 2 of a (selection)");
    for (const char* ofWhole : {"\\Void points", "\\Void samples"})
        EXPECT_FALSE(dynamic_cast<CStorageDoc&>(*surfaces.documents().back()).strings(0).contains(ofWhole))
            << "of two sub-images, and the part has one";
    EXPECT_STREQ(dynamic_cast<CStorageDoc&>(*surfaces.documents().back()).getString("\\Reader note", 0),
                 "A unit is not known");
    EXPECT_EQ(app.frames().back()->GetWindowText().substr(0, 25), L"*Copy 2 of a (selection)[");
    EXPECT_EQ(host.statusText, L"Only the selected part is in the copy: 3 x 1 of 4 x 3 samples");
    SPMDataStream cropped;
    CImageView::copy_image(cropped, *viewAt(0));
    EXPECT_EQ(cropped.array_length(), 3u);
    EXPECT_STREQ(cropped.get_name(), "a");
    viewAt(0)->selected[0].kind = SELECTION_POINT;
    SPMDataStream whole;
    CImageView::copy_image(whole, *viewAt(0));
    EXPECT_EQ(whole.array_length(), 24u) << "a selection without data copies all";
    viewAt(0)->setActiveSubimage(1);
    viewAt(0)->OnCmdMsg(10151, nullptr);
    EXPECT_EQ(viewAt(app.frames().size() - 1)->getSubImageNumber(), 1u) << "as the one that it was made of";
}

TEST_F(ImageViewTest, ExtractedCurvesKeepTheirLengthsAndWhatWasNotMeasured)
{
    CStorageDoc* const document = open({stream_of("map", {4, 2}), stream_of("fv", {3, 4, 2}, 2)});
    // Of 16 curves of 3 samples: number 8 sub + 4 y + x.
    document->setString("\\Curve lengths", "3 3 3 3 3 2 1 3 3 3 3 3 3 3 0 3", 1);
    document->setString("\\Void samples", "of 48: 16-17 43-45", 1);
    counting_view& map = *viewAt(0);
    auto& cloud = *viewAt<fake_volume>(1);
    cloud.volume = stream_of("fv", {4, 2, 3}, 2);
    map.selected = {{36, 1, SELECTION_RECTANGLE, {1, 1, 3, 2, 0, 0}}}; // (1, 1) and (2, 1): numbers 5, 13, 6, 14
    map.setOption("merge_extracted_fv_curves", "true");
    CStorageDoc* const merged = map.extract_curves(cloud);
    ASSERT_NE(merged, nullptr);
    EXPECT_STREQ(merged->getString("\\Curve lengths", 0), "2 3 1 0");
    EXPECT_STREQ(merged->getString("\\Void samples", 0), "of 12: 1-2 10-11");
    map.setOption("merge_extracted_fv_curves", "false");
    CStorageDoc* const single = map.extract_curves(cloud);
    ASSERT_EQ(single->getImagesNumber(), 2u);
    EXPECT_STREQ(single->getString("\\Curve lengths", 1), "1 0");
    EXPECT_STREQ(single->getString("\\Void samples", 0), "of 6: 1-2");
    EXPECT_STREQ(single->getString("\\Void samples", 1), "of 6: 4-5");
    cloud.volume = stream_of("fv", {2, 4, 3}, 2);
    EXPECT_STREQ(map.extract_curves(cloud)->getString("\\Curve lengths", 0), "") << "curves of another grid";
}

TEST_F(ImageViewTest, ExtractsTheCurvesUnderARectangle)
{
    open({stream_of("map", {4, 2}), stream_of("fv", {3, 2, 2}, 2)});
    counting_view& map = *viewAt(0);
    auto& cloud = *viewAt<fake_volume>(1);
    cloud.volume =
        stream_of("fv", {4, 2, 3}, 2); // ordered by slices: sample (x, y, z) is x + 4 y + 8 z, + 24 a sub-image
    map.selected = {{36, 1, SELECTION_RECTANGLE, {1, 1, 3, 2, 0, 0}}, {36, 1, SELECTION_POINT, {0, 0, 0, 0, 0, 0}}};
    map.setOption("merge_extracted_fv_curves", "true");
    CStorageDoc* const merged = map.extract_curves(cloud);
    ASSERT_NE(merged, nullptr);
    ASSERT_EQ(merged->getImagesNumber(), 1u);
    EXPECT_STREQ(merged->getImage(0).get_name(), "fv_1");
    ASSERT_EQ(merged->getSubImagesNumber(0), 4u) << "two cells of two sub-images";
    const auto* samples = static_cast<const short*>(merged->getImageDataS(0, 0));
    EXPECT_EQ(std::vector<short>(samples, samples + 12),
              (std::vector<short>{5, 13, 21, 29, 37, 45, 6, 14, 22, 30, 38, 46}));
    EXPECT_STREQ(merged->getImage(0).subimage_names()[2].c_str(), "(2:1)");

    map.setOption("merge_extracted_fv_curves", "false");
    CStorageDoc* const single = map.extract_curves(cloud);
    ASSERT_EQ(single->getImagesNumber(), 2u);
    EXPECT_STREQ(single->getImage(1).get_name(), "fv_2");
    EXPECT_STREQ(single->getImage(1).get_description(), "Height(2:1)");
    map.selected[0].data[2] = 1;
    EXPECT_EQ(map.extract_curves(cloud), nullptr) << "a rectangle of no width";

    const std::size_t before = app.frames().size();
    map.selected.clear();
    map.setOption("duplicate_3d_cloud", "Force Volume");
    map.OnCmdMsg(10151, nullptr);
    const auto& both = *dynamic_cast<CStorageDoc*>(surfaces.documents().back().get());
    EXPECT_EQ(both.getImagesNumber(), 2u) << "the volume, then the image";
    EXPECT_EQ(app.frames().size(), before + 2);
    host.display.keys = {VK_SHIFT};
    host.onDialog = [](CVarListDlg& dialog) { dialog.EndDialog(CVarListDlg::resultCancel); };
    map.OnCmdMsg(10151, nullptr);
    EXPECT_EQ(app.frames().size(), before + 2) << "cancelled";
}

struct title_case {
    view::frame_title parts;
    const wchar_t* text;
};

TEST(FrameTitle, IsPutTogetherFromItsPieces)
{
    using view::frame_title;
    const title_case cases[] = {
        {{.document = L"doc"}, L"doc"},
        {{.document = L"doc", .isImage = true, .description = "Height"}, L"doc[Height]"},
        {{.document = L"doc", .isImage = true}, L"doc]"},
        {{.document = L"doc", .isImage = true, .imageIndex = 2, .imageCount = 3}, L"doc[2]"},
        {{.document = L"d",
          .isImage = true,
          .description = "H",
          .subImage = 1,
          .subImageCount = 2,
          .subImageNames = {"Forward", "Reverse"}},
         L"d[H:Reverse]"},
        {{.document = L"d", .isImage = true, .subImage = 1, .subImageCount = 2, .subImageNames = {"Forward"}}, L"d:2]"},
        {{.document = L"d", .hasZoom = true, .zoomX = 1.004, .zoomY = 1.004}, L"d"},
        {{.document = L"d", .hasZoom = true, .zoomX = 1.0, .zoomY = 1.5}, L"d(X/150%)"},
        {{.document = L"d", .hasZoom = true, .zoomX = 1.5, .zoomY = 1.0}, L"d(150%/Y)"},
        {{.document = L"d", .hasZoom = true, .zoomX = 2.0, .zoomY = 1.5}, L"d(200%/150%)"},
        {{.document = L"d", .hasZoom = true, .zoomX = 2.0, .zoomY = 2.01}, L"d(200%)"},
        {{.document = L"d", .hasZoom = true, .zoomX = 1.0, .zoomY = 1.01, .windowNumber = 2}, L"d(100%):2"},
    };
    for (const title_case& one : cases) EXPECT_EQ(view::title_text(one.parts), one.text);
}

TEST(SizedFrame, CornersKeepTheShapeOfThePicture)
{
    using namespace view;
    const CSize insets{20, 60}, smallest{52, 92};
    EXPECT_EQ(sized_frame({0, 0, 420, 560}, sizeBottomRight, insets, smallest, 2.0), CRect(0, 0, 420, 260));
    EXPECT_EQ(sized_frame({0, 0, 420, 160}, sizeTopLeft, insets, smallest, 2.0), CRect(200, 0, 420, 160));
    EXPECT_EQ(sized_frame({0, 0, 420, 560}, sizeRight, insets, smallest, 2.0), CRect(0, 0, 420, 560));
    EXPECT_EQ(sized_frame({380, 0, 400, 560}, sizeLeft, insets, smallest, 2.0), CRect(348, 0, 400, 560));
}

TEST_F(ImageViewTest, TabsChooseTheSubImageAndTakeTheirRoom)
{
    CStorageDoc* const document = open({stream_of("a", {64, 64}), stream_of("b", {64, 64}, 3)});
    auto& plain = *dynamic_cast<CChildFrame*>(app.frames()[0].get());
    auto& tabbed = *dynamic_cast<CChildFrame*>(app.frames()[1].get());
    host.pump();
    EXPECT_FALSE(plain.switchBar().visible);
    EXPECT_TRUE(tabbed.switchBar().visible);
    EXPECT_EQ(tabbed.switchBar().names, (std::vector<std::wstring>{L"1", L"2", L"3"}));
    EXPECT_EQ(viewAt(0)->GetClientRect(), viewAt(1)->GetClientRect()) << "views of one size";
    EXPECT_EQ(tabbed.GetWindowRect().Height() - plain.GetWindowRect().Height(), 20);
    EXPECT_EQ(CHeadlessHost::windowOf(tabbed).tabs.size(), 3u);
    tabbed.OnSubimageSelChange(2);
    EXPECT_EQ(viewAt(1)->getSubImageNumber(), 2u);
    EXPECT_EQ(tabbed.GetWindowText(), L"a[Height:3](800%):2");
    tabbed.SetWindowSize({264 + 2 * HeadlessWindow::border, 276 + HeadlessWindow::caption + HeadlessWindow::border});
    RecordingDC early;
    viewAt(1)->OnEraseBkgnd(early); // a paint may come before the size is told
    host.pump();
    EXPECT_EQ(tabbed.GetWindowText(), L"a[Height:3](413%/400%):2");
    viewAt(1)->OnKeyDown(VK_TAB);
    EXPECT_EQ(tabbed.switchBar().selected, 0);

    // A bitmap brings a tab of its own; choosing a sub-image while it shows only turns it off.
    std::vector<std::byte> pixels(64 * 64 * 3);
    const BITMAPINFOHEADER header{.biWidth = 64, .biHeight = 64, .biBitCount = 24, .biSizeImage = 64 * 64 * 3};
    document->SetDIB(&header, pixels.data(), nullptr, -1);
    const unsigned added = document->getImagesNumber() - 1;
    surfaces.setOpeningImage(added);
    CFrameWnd* const frame = surfaces.CreateNewFrame(document, nullptr);
    auto& overlaid = *dynamic_cast<counting_view*>(frame->GetActiveView());
    surfaces.InitialUpdateFrame(frame, document, true);
    SPMVar shows;
    shows.Init("ShowOverlay,boolean");
    shows = 1.0;
    overlaid.options.set_var(shows);
    overlaid.hasOverlay = true;
    auto& bitmapped = *dynamic_cast<CChildFrame*>(frame);
    bitmapped.OnLoadData();
    EXPECT_EQ(bitmapped.switchBar().names, (std::vector<std::wstring>{L"Bitmap", L"1"}));
    bitmapped.OnSubimageSelChange(1);
    EXPECT_FALSE(static_cast<bool>(overlaid.options["ShowOverlay"]));
    bitmapped.OnSubimageSelChange(0);
    EXPECT_TRUE(static_cast<bool>(overlaid.options["ShowOverlay"]));
}

} // namespace
