#include "base/SPMVarList.h"

#include "support/allocation_count.h"

#include <gtest/gtest.h>

namespace {

struct recording_handler : SPMVarListHandler {
    std::vector<int> told;
    SPMVarList* leaves = nullptr;
    void OnFireVariableChange(int index, const SPMVarList*) override
    {
        told.push_back(index);
        if (leaves) leaves->RemoveFireVariableChangeHandler(this);
    }
};

SPMVarList list_of(std::initializer_list<const char*> declarations)
{
    std::vector<SPMVar> vars;
    for (const char* each : declarations) vars.emplace_back().Init(each);
    SPMVarList list;
    list.set_variables(vars.data(), static_cast<unsigned>(vars.size()));
    return list;
}

TEST(SPMVarList, LookupsByTextAllocateNothing)
{
    const SPMVarList list = list_of({"a.name.that.is.longer.than.a.short.string,int,3"});
    const std::size_t before = allocation_count();
    const double value = list.get_var("a.name.that.is.longer.than.a.short.string");
    const bool missing = list["b.name.that.is.longer.than.a.short.string"];
    EXPECT_EQ(allocation_count(), before);
    EXPECT_EQ(value, 3.0);
    EXPECT_FALSE(missing);
}

TEST(SPMVarList, TellsHandlersWhenTheStampChanges)
{
    SPMVarList list = list_of({"a,int", "b,int"});
    recording_handler handler;
    list.AddFireVariableChangeHandler(&handler);
    SPMVar copy = list["b"];
    copy = 5;
    list.set_var(copy);
    EXPECT_TRUE(handler.told.empty()) << "the same stamp";
    EXPECT_EQ(int(list["b"]), 5);
    copy.update_timestamp();
    list.set_var(copy);
    EXPECT_TRUE(list.set_var("a", "7"));
    EXPECT_FALSE(list.set_var("a", "seven"));
    EXPECT_FALSE(list.set_var("c", "7"));
    EXPECT_EQ(handler.told, (std::vector<int>{1, 0}));
    EXPECT_EQ(int(list["a"]), 7);
}

TEST(SPMVarList, HandlersMayLeaveWhileTheyAreTold)
{
    SPMVarList list = list_of({"a,int"});
    recording_handler first, second;
    first.leaves = &list;
    list.AddFireVariableChangeHandler(&first);
    list.AddFireVariableChangeHandler(&second);
    list.set_var("a", "1");
    list.set_var("a", "2");
    EXPECT_EQ(first.told.size(), 1u);
    EXPECT_EQ(second.told.size(), 2u);
}

TEST(VLGlobalVarList, IsOneListForAllWhoNameIt)
{
    VLGlobalVarList* one = VLGlobalVarList::GetVarList("test_options");
    SPMVar var;
    var.Init("a,int,2");
    one->set_var(var);
    VLGlobalVarList* other = VLGlobalVarList::GetVarList("test_options");
    EXPECT_EQ(one, other);
    EXPECT_EQ(one->references(), 2u);
    one->ReleaseList();
    other->ReleaseList();
    VLGlobalVarList* again = VLGlobalVarList::GetVarList("test_options");
    EXPECT_EQ(again->references(), 1u);
    EXPECT_EQ(int((*again)["a"]), 2);
    again->ReleaseList();
}

} // namespace
