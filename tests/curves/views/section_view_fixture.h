#pragma once
#include "curves/views/SectionView.h"
#include "document/StorageDocTemplate.h"
#include "platform/app/RuntimeClass.h"
#include "platform/app/keys.h"
#include "support/HeadlessHost.h"
#include "support/RecordingDC.h"
#include "support/streams.h"
#include "support/temporary_folder.h"
#include "view/ChildFrame.h"
#include "view/panes/TextView.h"

#include <gtest/gtest.h>

namespace vldv::curves {

/// Curves of 101 samples of 2 nm, each 0.5 nN: raw 3 * sample, and the same falling.
inline SPMDataStream ramps()
{
    return test_support::made_stream(
        "force", {{101, VLAxis(0, 2, "nm")}}, VLAxis(0, 0.5, "nN"),
        [](unsigned i) { return i < 101 ? 3 * i : 300 - 3 * (i - 101); }, 2);
}

/// 40 columns of 1 nm, 20 rows of 2 nm: raw 10 * column + row.
inline SPMDataStream surface()
{
    return test_support::made_stream("height", {{40, VLAxis(0, 1, "nm")}, {20, VLAxis(0, 2, "nm")}}, VLAxis(0, 1, "nm"),
                                     [](unsigned i) { return 10 * (i % 40) + i / 40; });
}

class SectionViewTest : public testing::Test {
protected:
    SectionViewTest()
    {
        static constexpr CRuntimeClass classes[] = {
            {"CStorageDoc", nullptr, create_object<CStorageDoc>},
            {"CDocument", nullptr, create_object<CDocument>},
            {"CChildFrame", nullptr, create_object<CChildFrame>},
            {"CSectionView", nullptr, create_object<CSectionView>},
            {"CTextView", nullptr, create_object<CTextView>},
        };
        for (const CRuntimeClass& each : classes) register_runtime_class(each);
        app.AddDocTemplate(&sections);
        app.AddDocTemplate(&texts);
    }
    ~SectionViewTest() override
    {
        while (!app.frames().empty()) app.frames().back()->DestroyFrame();
        app.freeClosed();
    }
    CSectionView& open(const SPMDataStream& stream)
    {
        CStorageDoc saved;
        saved.AddNewImages(&stream, 1);
        const std::wstring path = (folder / "a.spm").wstring();
        EXPECT_TRUE(saved.OnSaveDocument(path.c_str()));
        document = dynamic_cast<CStorageDoc*>(app.OpenDocumentFile(path.c_str()));
        host.pump();
        return shown();
    }
    CSectionView& shown() { return *dynamic_cast<CSectionView*>(app.frames().back()->GetActiveView()); }
    /// The client point over a sample of the curves.
    static CPoint over(const CSectionView& view, double sample, int below = 10)
    {
        const CRect& pane = view.displayRect;
        return {pane.left + static_cast<int>(sample / 100.0 * pane.Width()), pane.top + below};
    }
    static void drag(CSectionView& view, CPoint from, CPoint to)
    {
        view.OnMouseMove(0, from);
        view.OnLButtonDown(MK_LBUTTON, from);
        view.OnMouseMove(MK_LBUTTON, to);
        view.OnLButtonUp(0, to);
    }
    static std::vector<drawn> paintedLines(CSectionView& view)
    {
        RecordingDC dc(view.GetClientRect().Size());
        view.OnDraw(dc);
        return dc.all(drawn::kind::lines);
    }

    temporary_folder folder;
    CHeadlessHost host;
    CWinApp app{host};
    CStorageDocTemplate sections{101, "CStorageDoc", "CChildFrame", "CSectionView"};
    CMultiDocTemplate texts{115, "CDocument", "CChildFrame", "CTextView"};
    CStorageDoc* document = nullptr;
};

} // namespace vldv::curves
