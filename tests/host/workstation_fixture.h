#pragma once
#include "document/StorageDocTemplate.h"
#include "entry/Application.h"
#include "host/QtHost.h"
#include "host/window/MainWindow.h"
#include "host/window/QtFrame.h"
#include "platform/dialogs/VarListDlg.h"
#include "platform/profile/profile_store.h"
#include "support/streams.h"
#include "support/temporary_folder.h"
#include "surface/views/SurfMathView.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QImage>
#include <functional>
#include <gtest/gtest.h>

inline void settle()
{
    for (int i = 0; i < 20; ++i) {
        QApplication::processEvents();
        QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
}

/// Lets the program run until this holds, at most ten seconds. \return it held
inline bool waits_for(const std::function<bool()>& what)
{
    QElapsedTimer clock;
    clock.start();
    while (!what() && clock.elapsed() < 10'000) QApplication::processEvents(QEventLoop::AllEvents, 20);
    return what();
}

/// A dialog over variables of these declarations.
struct declared_dialog {
    declared_dialog(std::initializer_list<const char*> declarations, bool isModal = true)
    {
        declare(declarations);
        if (isModal)
            model.CreateModalDlg(&list, nullptr, platform::optionsLayout, nullptr);
        else
            model.CreateModelessDlg(&list, nullptr, platform::optionsLayout, nullptr);
    }
    void declare(std::initializer_list<const char*> declarations)
    {
        std::vector<SPMVar> rows;
        for (const char* declaration : declarations) rows.emplace_back().Init(declaration);
        list.set_variables(rows.data(), static_cast<unsigned>(rows.size()));
    }
    SPMVarList list;
    CVarListDlg model;
};

/// The real main window on the toolkit's offscreen platform, over a host of this class.
template <class Host = host::CQtHost>
class MainWindowTest : public testing::Test {
protected:
    MainWindowTest()
    {
        machine.setMainWindow(&window);
        window.resize(1200, 900);
        window.show();
        window.activateWindow();
        settle();
    }
    ~MainWindowTest() override
    {
        app.closeAllFrames();
        machine.setMainWindow(nullptr);
        settle();
    }

    temporary_folder folder;
    CProfileStore profile{folder / "profile"};
    Host machine{profile};
    CVldvApp app{machine};
    host::CMainWindow window{app};
};

class WorkstationTest : public MainWindowTest<> {
protected:
    /// 64 by 64 with two sub-images: one that rises to the right, one that rises upwards.
    CDocument* open(const char* name)
    {
        SPMDataStream stream = test_support::made_stream(
            "height", {{64}, {64}}, {}, [](unsigned i) { return 100 * (i < 4096 ? i % 64 : i / 64 % 64); }, 2);
        const char* names[] = {"Forward", "Reverse"};
        stream.set_subimage_names(names, 2);
        CStorageDoc document;
        document.AddNewImages(&stream, 1);
        const std::wstring path = (folder / name).wstring();
        document.OnSaveDocument(path.c_str());
        CDocument* const opened = app.OpenDocumentFile(path.c_str());
        settle();
        return opened;
    }
    CSurfMathView& view(std::size_t frame = 0)
    {
        return *dynamic_cast<CSurfMathView*>(app.frames().at(frame)->GetActiveView());
    }
    /// As its menu item does.
    void runCommand(unsigned id)
    {
        window.route(id, nullptr);
        settle();
    }
    /// The picture of the data, in pixels of the screen.
    QImage shown(std::size_t frame = 0)
    {
        view(frame).flushTimers();
        const QImage all = host::widget_of(&view(frame))->grab().toImage();
        const CRect& display = view(frame).displayRect;
        const int scale = std::max(1, qEnvironmentVariableIntValue("QT_SCALE_FACTOR"));
        return all.copy(display.left * scale, display.top * scale, display.Width() * scale, display.Height() * scale);
    }
};
