#pragma once
#include "platform/app/Document.h"
#include "platform/app/FrameWnd.h"
#include "platform/app/WinApp.h"
#include "support/HeadlessHost.h"
#include "view/DCView.h"

#include <gtest/gtest.h>

/// A view of 200 by 100 samples without data that counts what reaches it.
class plain_view : public CDCView {
public:
    std::string GetViewSection() override { return "PlainView"; }
    unsigned getSourceWidth() override { return width; }
    unsigned getSourceHeight() override { return height; }
    std::wstring GetClipboardText(bool full) override { return full ? L"head\nrow\n" : L"row\n"; }
    void OnDrawData(CDC& dc) override { dc.FillSolidRect(displayRect, 0xFF); }
    void OnDrawLegend(CDC&) override { ++legends; }
    void RefreshDisplay() override
    {
        ++refreshes;
        CDCView::RefreshDisplay();
    }
    void BeginEditOptions() override { ++edits; }
    void saveAtOnce(const char* name) { instantSaveOptions.insert(name); }

    unsigned width = 200, height = 100;
    int legends = 0, refreshes = 0, edits = 0;
};

/// An application with one frame around a view of that class, in a main window of 1600 by 900.
template <class View>
class FramedViewTest : public testing::Test {
protected:
    FramedViewTest()
    {
        auto owned = std::make_unique<View>();
        view = owned.get();
        frame = app.addFrame(std::make_unique<CFrameWnd>());
        frame->LoadFrame(nullptr, 102, std::move(owned));
        document.autoDelete = false;
        document.AddView(view);
    }
    ~FramedViewTest() override
    {
        if (!frame->isDestroyed()) frame->DestroyFrame();
        app.freeClosed();
    }
    /// Its first update, and the sizes that follow from it.
    void show()
    {
        view->OnInitialUpdate();
        host.pump();
    }
    HeadlessWindow& window() { return CHeadlessHost::windowOf(*view); }
    HeadlessWindow& frameWindow() { return CHeadlessHost::windowOf(*frame); }

    CHeadlessHost host;
    CWinApp app{host};
    CDocument document;
    View* view = nullptr;
    CFrameWnd* frame = nullptr;
};
