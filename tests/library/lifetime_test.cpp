// Programs start and end in an order of their own; the library stands it.
#include "base/SPMVarList.h"
#include "document/StorageDoc.h"
#include "document/StorageDocTemplate.h"
#include "platform/app/RuntimeClass.h"
#include "vldv.h"

#include <cstdlib>
#include <gtest/gtest.h>

namespace {

/// Made before `main` and destroyed behind it, as the settings of a host may be.
class early_settings {
public:
    early_settings()
        : documentsAtStart(vldvSurfaceTemplate.documents().size()), list(VLGlobalVarList::GetVarList("early"))
    {
        SPMVar variable;
        variable.Init("kept,string");
        variable.set_string("until the end");
        list->set_var(variable);
        list->ReleaseList();
    }
    ~early_settings()
    {
        VLGlobalVarList* const later = VLGlobalVarList::GetVarList("late");
        const bool isThere = (*VLGlobalVarList::GetVarList("early"))["kept"].as_string() == "until the end";
        if (!isThere || later->references() == 0 || vldvSurfaceTemplate.documents().size() > 1) std::_Exit(3);
    }

    std::size_t documentsAtStart;

private:
    VLGlobalVarList* list;
};

early_settings settings;

TEST(Lifetime, TemplatesStandBeforeMain) { EXPECT_EQ(settings.documentsAtStart, 0u); }

/// A program whose own settings are made before the list that their end asks for.
[[noreturn]] void end_with_settings()
{
    static const early_settings local;
    VLGlobalVarList::GetVarList("late")->ReleaseList();
    std::exit(0);
}

[[noreturn]] void end_with_an_open_document()
{
    static constexpr CRuntimeClass documents = {"CStorageDoc", nullptr, vldv::create_object<CStorageDoc>};
    vldv::register_runtime_class(documents);
    const SPMDataStream stream;
    auto* const document = dynamic_cast<CStorageDoc*>(vldvSurfaceTemplate.CreateNewDocument());
    if (document) document->AddNewImages(&stream, 1);
    std::exit(document && vldvSurfaceTemplate.documents().size() == 1 ? 0 : 4);
}

TEST(LifetimeDeathTest, ListsAndTemplatesOutliveTheStaticsOfAProgram)
{
    EXPECT_EXIT(end_with_settings(), testing::ExitedWithCode(0), "");
}

TEST(LifetimeDeathTest, DocumentsLeftOpenEndWithTheProgram)
{
    EXPECT_EXIT(end_with_an_open_document(), testing::ExitedWithCode(0), "");
}

} // namespace
