// One of everything in a process: lists, stamps and memory are those of the library, whoever loads it.
#include "base/text.h"
#include "module.h"
#include "platform/files/Exceptions.h"

#include <dlfcn.h>
#include <gtest/gtest.h>

namespace {

class Module : public testing::Test {
protected:
    static void SetUpTestSuite()
    {
        void* const loaded = dlopen(VLDV_TEST_MODULE, RTLD_NOW | RTLD_LOCAL);
        ASSERT_NE(loaded, nullptr) << dlerror();
        face = static_cast<const test_module_face*>(dlsym(loaded, "test_module"));
        ASSERT_NE(face, nullptr) << dlerror();
    }

    static const test_module_face* face;
};

const test_module_face* Module::face = nullptr;

TEST_F(Module, SharesTheGlobalOptions)
{
    VLGlobalVarList* const list = VLGlobalVarList::GetVarList("global_options");
    SPMVar made;
    made.Init("of the module,double");
    list->set_var(made);
    EXPECT_EQ(face->setGlobal("of the module", "2.5"), 2u) << "the program holds the same list";
    EXPECT_DOUBLE_EQ(static_cast<double>((*list)["of the module"]), 2.5);
    list->ReleaseList();
}

TEST_F(Module, StampsChangesInOneOrder)
{
    SPMVarList list;
    SPMVar first, second;
    first.Init("first,double");
    second.Init("second,double");
    list.set_var(first);
    list.set_var(second);
    std::uint64_t last = 0;
    for (int i = 1; i < 5; ++i) {
        face->change(list, "first", std::to_string(i).c_str());
        EXPECT_GT(list["first"].timestamp, last);
        last = list["first"].timestamp;
        list.set_var("second", std::to_string(i).c_str());
        EXPECT_GT(list["second"].timestamp, last);
        last = list["second"].timestamp;
    }
}

TEST_F(Module, TakesMemoryFromTheHeapOfTheLibrary)
{
    void* (*const own)(std::size_t) = &VLAllocator::operator new;
    EXPECT_EQ(face->heap(), reinterpret_cast<const void*>(own));
    delete[] face->makeVariables(3);
    char* const text = face->makeText(L"\u00b5m");
    EXPECT_STREQ(text, "\xc2\xb5m");
    vlutl_free(text);
}

TEST_F(Module, ThrowsWhatTheProgramCatches) { EXPECT_THROW(face->fail(), CMemoryException); }

} // namespace
