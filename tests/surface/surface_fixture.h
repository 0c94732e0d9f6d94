#pragma once
#include "document/StorageDocTemplate.h"
#include "platform/app/RuntimeClass.h"
#include "support/HeadlessHost.h"
#include "support/streams.h"
#include "support/temporary_folder.h"
#include "surface/views/SurfMathView.h"
#include "view/ChildFrame.h"
#include "view/image/SectionSource.h"

#include <gtest/gtest.h>

/// 40 columns of 1 nm and 20 rows of 2 nm, heights of 0.5 nm a step: raw 10 * column + row.
inline SPMDataStream slope(unsigned columns = 40, unsigned rows = 20)
{
    return test_support::made_stream("height", {{columns, VLAxis(100, 1, "nm")}, {rows, VLAxis(100, 2, "nm")}},
                                     VLAxis(3, 0.5, "nm"),
                                     [columns](unsigned i) { return 10 * (i % columns) + i / columns; });
}

/// A section of the surface that only keeps its points.
class plain_section : public CImageView, public ISection {
public:
    plain_section() { LoadOptions(nullptr); }
    void GetOptionsList(SPMVar* vars, unsigned* count) override
    {
        static constexpr view::option_row rows[] = {{"profile.width,int,1,100", "1"}};
        unsigned before = 0;
        CImageView::GetOptionsList(nullptr, &before);
        if (vars) CImageView::GetOptionsList(vars, count);
        view::list_options(rows, before, vars, count);
    }
    CImageView& sectionView() override { return *this; }
    CSize sourceSize() const override { return {40, 20}; }
    unsigned getPointsNumber() const override { return static_cast<unsigned>(points.size()); }
    CPoint getSectionPoint(unsigned index) const override { return points[index]; }
    void setSectionPoint(unsigned index, CPoint point) override
    {
        if (index == points.size()) points.emplace_back();
        points[index] = point;
    }
    bool isLine() const override { return false; }
    bool isHorizontal() const override { return false; }
    void reloadSection() override {}
    void drawOn(CImageView&, CDC&, int, int, const CPen&, const CPen&, bool) override {}

    std::vector<CPoint> points;
};

/// A surface in a frame, opened from a file.
class SurfaceTest : public testing::Test {
protected:
    SurfaceTest()
    {
        static constexpr CRuntimeClass classes[] = {
            {"CStorageDoc", nullptr, create_object<CStorageDoc>},
            {"CChildFrame", nullptr, create_object<CChildFrame>},
            {"CSurfMathView", nullptr, create_object<CSurfMathView>},
        };
        for (const CRuntimeClass& each : classes) register_runtime_class(each);
        app.AddDocTemplate(&surfaces);
    }
    ~SurfaceTest() override { closeFrames(); }
    void closeFrames()
    {
        while (!app.frames().empty()) app.frames().back()->DestroyFrame();
        app.freeClosed();
    }
    CSurfMathView& open(const SPMDataStream& stream = slope(), const char* name = "a.spm",
                        const std::map<std::string, std::string>& strings = {})
    {
        CStorageDoc saved;
        saved.AddNewImages(&stream, 1);
        for (const auto& [key, text] : strings) saved.setString(key.c_str(), text.c_str(), 0);
        const std::wstring path = (folder / name).wstring();
        EXPECT_TRUE(saved.OnSaveDocument(path.c_str()));
        document = dynamic_cast<CStorageDoc*>(app.OpenDocumentFile(path.c_str()));
        host.pump();
        auto& view = *dynamic_cast<CSurfMathView*>(app.frames().back()->GetActiveView());
        view.flushTimers();
        return view;
    }
    // The mouse, by samples.
    static CPoint client(CDCView& view, CPoint sample) { return {view.xsrc2clnt(sample.x), view.ysrc2clnt(sample.y)}; }
    static void choose(CSurfMathView& view, unsigned mode) { view.OnCmdMsg(6001 + mode, nullptr); }
    static void press(CSurfMathView& view, CPoint at, unsigned flags = 0)
    {
        view.OnMouseMove(flags, client(view, at));
        view.OnLButtonDown(flags | MK_LBUTTON, client(view, at));
    }
    static void drag(CSurfMathView& view, CPoint to, unsigned flags = 0)
    {
        view.OnMouseMove(flags | MK_LBUTTON, client(view, to));
    }
    static void release(CSurfMathView& view, CPoint at, unsigned flags = 0)
    {
        view.OnLButtonUp(flags, client(view, at));
    }
    static void draw(CSurfMathView& view, CPoint from, CPoint to)
    {
        press(view, from);
        drag(view, to);
        release(view, to);
    }
    bool isEnabled(CSurfMathView& view, unsigned id)
    {
        CCmdUI ui{.m_nID = id};
        EXPECT_TRUE(view.OnCmdMsg(id, &ui)) << id;
        return ui.enabled;
    }
    bool isChecked(CSurfMathView& view, unsigned id)
    {
        CCmdUI ui{.m_nID = id};
        EXPECT_TRUE(view.OnCmdMsg(id, &ui)) << id;
        return ui.checked;
    }

    temporary_folder folder;
    CHeadlessHost host;
    CWinApp app{host};
    CStorageDocTemplate surfaces{102, "CStorageDoc", "CChildFrame", "CSurfMathView"};
    CStorageDoc* document = nullptr;
};
