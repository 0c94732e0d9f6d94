#pragma once
#include "document/StorageDocTemplate.h"
#include "entry/Application.h"
#include "platform/app/FrameWnd.h"
#include "platform/app/menu_item.h"
#include "support/HeadlessHost.h"
#include "support/streams.h"
#include "support/temporary_folder.h"
#include "vldv.h"

#include <gtest/gtest.h>

/// The workstation without a screen, with files of its own.
class EntryTest : public testing::Test {
protected:
    std::wstring surface(const char* name, unsigned side = 4)
    {
        const SPMDataStream stream =
            test_support::made_stream("height", {{side}, {side}}, VLAxis(0, 1, "nm"), [](unsigned i) { return i; });
        CStorageDoc document;
        document.AddNewImages(&stream, 1);
        document.setString("\\Date", "Monday", 0);
        document.setString("operator", "Ada", unsigned(-1));
        const std::wstring path = (folder / name).wstring();
        EXPECT_TRUE(document.OnSaveDocument(path.c_str()));
        return path;
    }
    void setGlobal(const char* name, const char* value)
    {
        VLGlobalVarList* const list = VLGlobalVarList::GetVarList("global_options");
        EXPECT_TRUE(list->set_var(name, value));
        list->ReleaseList();
    }
    bool enabled(unsigned id)
    {
        CCmdUI ui{.m_nID = id};
        EXPECT_TRUE(app->routeCommand(id, &ui)) << id;
        return ui.enabled;
    }
    /// What a menu that begins with this command is filled with.
    std::vector<std::string> menuTexts(unsigned first)
    {
        std::vector<menu_item> items;
        EXPECT_TRUE(app->AppendMenuItems(first, items));
        std::vector<std::string> texts;
        for (const menu_item& each : items) texts.push_back(each.text);
        return texts;
    }
    /// Opens it and makes its frame active. \return its document
    CStorageDoc& opened(const std::wstring& path)
    {
        CDocument* const made = app->OpenDocumentFile(path.c_str());
        EXPECT_NE(made, nullptr);
        app->setActiveFrame(app->frames().back().get());
        return dynamic_cast<CStorageDoc&>(*made);
    }
    /// A sample, as an operation does.
    void change(CStorageDoc& changed, short to)
    {
        changed.pushUndo(0, true);
        changed.getDataPoint2S(0, 1, 1, 0) = to;
        changed.SetModifiedFlag(true);
    }
    CStorageDoc& document(std::size_t i = 0)
    {
        return *dynamic_cast<CStorageDoc*>(vldvSurfaceTemplate.documents().at(i).get());
    }

    temporary_folder folder;
    CHeadlessHost host;
    std::unique_ptr<CVldvApp> app = std::make_unique<CVldvApp>(host);
};
