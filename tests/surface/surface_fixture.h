#pragma once
#include "document/StorageDocTemplate.h"
#include "platform/RuntimeClass.h"
#include "support/HeadlessHost.h"
#include "support/temporary_folder.h"
#include "surface/SurfMathView.h"
#include "view/ChildFrame.h"

#include <gtest/gtest.h>

/// 40 columns of 1 nm and 20 rows of 2 nm, heights of 0.5 nm a step: raw 10 * column + row.
inline SPMDataStream slope(unsigned columns = 40, unsigned rows = 20)
{
    SPMDataStream stream;
    stream.Init("height", "Height", SPM_VAR_ARRAY, columns * rows, 2u);
    stream.set_array_type(SPM_ARRAY_INT16);
    const unsigned lengths[] = {columns, rows};
    for (unsigned i = 0; i < 2; ++i) {
        SPMDataStream::dimension dimension;
        dimension.length = lengths[i];
        dimension.set_axis(0, VLAxis(100, 1.0 + i, "nm"));
        stream.set_dimension(i, dimension);
    }
    stream.values.set_axis(0, VLAxis(3, 0.5, "nm"));
    for (unsigned i = 0; i < columns * rows; ++i)
        static_cast<short*>(stream.array_data())[i] = static_cast<short>(10 * (i % columns) + i / columns);
    return stream;
}

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
    ~SurfaceTest() override
    {
        while (!app.frames().empty()) app.frames().back()->DestroyFrame();
        app.freeClosed();
    }
    CSurfMathView& open(const SPMDataStream& stream = slope())
    {
        CStorageDoc saved;
        saved.AddNewImages(&stream, 1);
        const std::wstring path = (folder / "a.spm").wstring();
        EXPECT_TRUE(saved.OnSaveDocument(path.c_str()));
        document = dynamic_cast<CStorageDoc*>(app.OpenDocumentFile(path.c_str()));
        host.pump();
        auto& view = *dynamic_cast<CSurfMathView*>(app.frames().back()->GetActiveView());
        view.flushTimers();
        return view;
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
