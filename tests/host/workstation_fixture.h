#pragma once
#include "document/StorageDocTemplate.h"
#include "entry/Application.h"
#include "host/MainWindow.h"
#include "host/QtFrame.h"
#include "host/QtHost.h"
#include "platform/profile_store.h"
#include "support/temporary_folder.h"
#include "surface/SurfMathView.h"

#include <QApplication>
#include <QImage>
#include <gtest/gtest.h>

inline void settle()
{
    for (int i = 0; i < 20; ++i) {
        QApplication::processEvents();
        QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
}

/// The real main window on the toolkit's offscreen platform.
class WorkstationTest : public testing::Test {
protected:
    WorkstationTest()
    {
        machine.setMainWindow(&window);
        window.resize(1200, 900);
        window.show();
        settle();
    }
    ~WorkstationTest() override
    {
        app.closeAllFrames();
        machine.setMainWindow(nullptr);
        settle();
    }
    /// 64 by 64 with two sub-images: one that rises to the right, one that rises upwards.
    CDocument* open(const char* name)
    {
        SPMDataStream stream;
        stream.Init("height", "Height", SPM_VAR_ARRAY, 2u * 64 * 64, 2u);
        stream.set_array_type(SPM_ARRAY_INT16);
        SPMDataStream::dimension dimension;
        dimension.length = 64;
        stream.set_dimension(0, dimension);
        stream.set_dimension(1, dimension);
        const char* names[] = {"Forward", "Reverse"};
        stream.set_subimage_names(names, 2);
        for (unsigned i = 0; i < 2u * 64 * 64; ++i)
            static_cast<short*>(stream.array_data())[i] = static_cast<short>(100 * (i < 4096 ? i % 64 : i / 64 % 64));
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

    temporary_folder folder;
    CProfileStore profile{folder / "profile"};
    CQtHost machine{profile};
    CVldvApp app{machine};
    CMainWindow window{app};
};
