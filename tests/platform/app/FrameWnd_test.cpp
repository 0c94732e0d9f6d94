// Frames of one document and their numbers.
#include "platform/app/FrameWnd.h"

#include "platform/app/Document.h"
#include "platform/app/WinApp.h"
#include "support/HeadlessHost.h"

#include <gtest/gtest.h>

namespace {

struct counting_frame : CFrameWnd {
    int renamed = 0;
    void OnUpdateFrameTitle(bool addNumber) override
    {
        ++renamed;
        CFrameWnd::OnUpdateFrameTitle(addNumber);
    }
};

struct empty_view : CView {
    void OnUpdate(CView*, std::uint32_t, const hint_object&) override {}
};

class FrameNumbers : public testing::Test {
protected:
    FrameNumbers()
    {
        document.autoDelete = false;
        document.SetTitle(L"d");
    }
    counting_frame& open()
    {
        auto* const frame = static_cast<counting_frame*>(app.addFrame(std::make_unique<counting_frame>()));
        auto view = std::make_unique<empty_view>();
        CView* const attached = view.get();
        frame->LoadFrame(nullptr, 102, std::move(view));
        document.AddView(attached);
        CFrameWnd::numberFrames(document);
        return *frame;
    }

    CHeadlessHost host;
    CWinApp app{host};
    CDocument document;
};

TEST_F(FrameNumbers, ANewFrameRenamesNoOtherButTheFirst)
{
    counting_frame& first = open();
    EXPECT_EQ(first.windowNumber(), 0) << "alone it has none";
    counting_frame& second = open();
    EXPECT_EQ(first.GetWindowText(), L"d:1");
    EXPECT_EQ(second.GetWindowText(), L"d:2");
    for (int i = 0; i < 50; ++i) open();
    EXPECT_EQ(first.renamed, 1);
    EXPECT_EQ(second.renamed, 1);
}

TEST_F(FrameNumbers, ClosingOneCountsThoseBehindItAnew)
{
    counting_frame &first = open(), &second = open(), &third = open();
    second.DestroyFrame();
    EXPECT_EQ(third.GetWindowText(), L"d:2");
    EXPECT_EQ(first.renamed, 1) << "its number stays";
    first.DestroyFrame();
    EXPECT_EQ(third.GetWindowText(), L"d");
    third.DestroyFrame();
    app.freeClosed();
}

} // namespace
