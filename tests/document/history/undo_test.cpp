#include "document/fixtures.h"
#include "support/allocation_count.h"

#include <cstring>

namespace {

constexpr const char* undoLost = "Can't save Undo information.\nUndo buffer will be erased.";
constexpr const char* redoLost = "Can't save Redo information.\nRedo buffer will be erased.";

int allocationsUntilFailure = -1; ///< negative: never
void* failing_heap(std::size_t size)
{
    if (allocationsUntilFailure == 0) return nullptr;
    if (allocationsUntilFailure > 0) --allocationsUntilFailure;
    return std::malloc(size);
}

class UndoTest : public DocumentTest {
protected:
    UndoTest()
    {
        document::set_undo_heap(failing_heap);
        allocationsUntilFailure = -1;
        document.autoDelete = false;
        document.AddView(&view);
    }
    ~UndoTest() override
    {
        document::set_undo_heap(nullptr);
        document.RemoveView(&view);
    }

    void add(const SPMDataStream& stream) { document.AddNewImages(&stream, 1); }
    short first(unsigned image = 0) const { return *static_cast<const short*>(document.getImage(image).array_data()); }
    void setFirst(short value, unsigned image = 0)
    {
        document.pushUndo(image, true);
        document.setImageDataS(image, &value, 1, 0, 0);
        document.SetModifiedFlag(true);
    }

    fake_view view{0};
};

TEST_F(UndoTest, StepsBackAndForthThroughTheValues)
{
    add(heights("a", {2, 2}, 1, 10));
    document.SetModifiedFlag(false);
    setFirst(20);
    setFirst(30);
    document.undo(0);
    EXPECT_EQ(first(), 20);
    EXPECT_TRUE(document.IsModified());
    document.undo(0);
    EXPECT_EQ(first(), 10);
    EXPECT_FALSE(document.IsModified()) << "back at its first state";
    document.undo(0);
    EXPECT_EQ(first(), 10) << "nothing left";
    document.redo(0);
    EXPECT_EQ(first(), 20);
    EXPECT_TRUE(document.IsModified());
    EXPECT_TRUE(document.canRedo(0)) << "a redo keeps the steps after it";
    EXPECT_EQ(view.hints, (std::vector<std::uint32_t>{258, 258, 258}));
    setFirst(40);
    EXPECT_FALSE(document.canRedo(0)) << "new work ends the chain";
    document.restore(0);
    EXPECT_EQ(first(), 20);
    EXPECT_TRUE(document.canUndo(0)) << "a restored step stays";
    document.dropUndo(0);
    document.dropUndo(0);
    EXPECT_FALSE(document.canUndo(0));
    document.dropUndo(0);
    document.dropRedo(0);
    document.undo(7);
    document.pushUndo(7, true);
}

TEST_F(UndoTest, BringsShapeAxesAndNamesBack)
{
    add(heights("a", {4, 3}, 2, 1));
    const SPMDataStream before = document.getImage(0);
    document.pushUndo(0, true);
    SPMDataStream& stream = document.getImage(0);
    stream.get_dimension(0).length = 2;
    stream.get_dimension(1).set_axis(0, VLAxis(5, 6, "mm"));
    stream.set_array_len(6);
    stream.set_description("Other");
    document.revalidateImage(0);
    view.hints.clear();
    document.undo(0);
    EXPECT_EQ(view.hints, (std::vector<std::uint32_t>{1, 258}));
    EXPECT_STREQ(document.getImage(0).description().c_str(), before.description().c_str());
    ASSERT_EQ(document.GetDataSize(0), before.data_size());
    EXPECT_EQ(std::memcmp(document.getImage(0).array_data(), before.array_data(), before.data_size()), 0);
    EXPECT_EQ(document.getSubImagesNumber(0), 2u);
    document.redo(0);
    EXPECT_EQ(document.getImage(0).get_dimension(0).length, 2u);
    EXPECT_EQ(view.hints, (std::vector<std::uint32_t>{1, 258, 1, 258}));
}

TEST_F(UndoTest, BringsTextsOfTheStepBackAndNoOthers)
{
    add(heights("a", {4}));
    document.setString("changed", "before", 0);
    document.setString("removed", "there", 0);
    document.pushUndo(0, true);
    document.changeTexts(0, {{"changed", "between"}});
    document.changeTexts(0, {{"changed", "after"}, {"removed", std::nullopt}, {"added", "new"}});
    const auto after = document.strings(0);
    EXPECT_EQ(after, (CStorageDoc::string_table{{"added", "new"}, {"changed", "after"}}));
    document.setString("note", "of the user", 0);
    document.undo(0);
    EXPECT_EQ(document.strings(0),
              (CStorageDoc::string_table{{"changed", "before"}, {"note", "of the user"}, {"removed", "there"}}));
    document.redo(0);
    EXPECT_STREQ(document.getString("changed", 0), "after");
    EXPECT_FALSE(document.strings(0).contains("removed"));
    document.undo(0);
    EXPECT_STREQ(document.getString("removed", 0), "there");
}

TEST_F(UndoTest, TakesTheParameterStreamAlongOnce)
{
    SPMDataStream curve = heights("curve", {3}, 1, 1), position = heights("position", {3}, 1, 5),
                  time = heights("time", {3}, 1, 7);
    curve.set_parameter_stream("position");
    position.set_parameter_stream("time");
    for (const SPMDataStream& stream : {curve, position, time, heights("position", {3}, 1, 9)}) add(stream);
    for (unsigned i = 0; i < 4; ++i) setFirst(100, i);
    document.undo(0);
    EXPECT_EQ(first(0), 1);
    EXPECT_EQ(first(1), 5);
    EXPECT_EQ(first(2), 100) << "not further along the chain";
    EXPECT_EQ(first(3), 100) << "only the first of that name";
    EXPECT_FALSE(document.IsModified()) << "by this image's history, though another is changed";
    document.redo(0);
    EXPECT_EQ(first(0), 100);
    EXPECT_EQ(first(1), 100);
    document.dropUndo(1);
    document.undo(0);
    EXPECT_EQ(first(0), 1);
    EXPECT_EQ(first(1), 100) << "it has no step to take";
}

TEST_F(UndoTest, WithoutMemoryTheHistoryIsGivenUpAndWorkGoesOn)
{
    add(heights("a", {2, 2}, 1, 10));
    for (const int succeeding : {0, 1}) { // the declaration, then the bytes
        setFirst(11);
        ASSERT_TRUE(document.canUndo(0));
        const std::vector<short> before(4, first());
        allocationsUntilFailure = succeeding;
        host.messages.clear();
        document.pushUndo(0, false);
        allocationsUntilFailure = -1;
        EXPECT_EQ(host.messages, std::vector<std::string>{undoLost});
        EXPECT_FALSE(document.canUndo(0));
        EXPECT_EQ(first(), 11) << "the image is untouched";
        EXPECT_EQ(document.getDataPoint2S(0, 1, 1, 0), 13);
    }
    host.messages.clear();
    setFirst(20);
    setFirst(30);
    document.undo(0);
    ASSERT_TRUE(document.canRedo(0));
    allocationsUntilFailure = 0;
    document.undo(0);
    allocationsUntilFailure = -1;
    EXPECT_EQ(host.messages, std::vector<std::string>{redoLost});
    EXPECT_FALSE(document.canRedo(0));
    EXPECT_EQ(first(), 11) << "the step itself is made";
    EXPECT_FALSE(document.canUndo(0));
}

TEST_F(UndoTest, RedoGoesOnWhereItCannotBeUndone)
{
    add(heights("a", {2, 2}, 1, 10));
    setFirst(20);
    setFirst(30);
    document.undo(0);
    document.SetModifiedFlag(false);
    allocationsUntilFailure = 0;
    document.redo(0);
    allocationsUntilFailure = -1;
    EXPECT_EQ(host.messages, std::vector<std::string>{undoLost});
    EXPECT_EQ(first(), 30) << "the step itself is made";
    EXPECT_TRUE(document.IsModified());
    EXPECT_FALSE(document.canUndo(0));
    EXPECT_FALSE(document.canRedo(0));
}

/// Everything but the samples: the declaration's text, the lists, what is restored.
TEST_F(UndoTest, EveryOtherAllocationMayFailAsWell)
{
    add(heights("a", {2, 2}, 1, 10));
    for_each_failing_allocation(
        [&] {
            document.pushUndo(0, true);
            host.messages.clear();
        },
        [&] { document.pushUndo(0, false); },
        [&](bool, bool hasFailed) {
            ASSERT_EQ(host.messages, std::vector<std::string>(hasFailed ? 1 : 0, undoLost));
            EXPECT_EQ(document.canUndo(0), !hasFailed);
            EXPECT_EQ(first(), 10);
        });
}

TEST_F(UndoTest, AStepWithoutMemoryLeavesImageAndHistory)
{
    document.RemoveView(&view); // telling views takes memory of its own
    for (const unsigned width : {4u, 2u}) {
        const SPMDataStream changed = heights("a", {width, 3}, 1, 20);
        for_each_failing_allocation(
            [&] {
                document.DeleteContents();
                add(heights("a", {4, 3}, 1, 10));
                document.pushUndo(0, true);
                document.getImage(0) = changed;
                document.revalidateImage(0);
            },
            [&] { document.undo(0); },
            [&](bool isDone, bool hasFailed) {
                EXPECT_EQ(document.canUndo(0), !isDone);
                EXPECT_EQ(first(), isDone ? 10 : 20);
                EXPECT_EQ(document.getSubImageLength(0), isDone ? 12 : width * 3);
                EXPECT_EQ(document.GetDataSize(0), isDone ? 24 : width * 6);
                EXPECT_EQ(document.canRedo(0), !hasFailed) << "nothing to come back from, or no memory for it";
                if (!isDone) {
                    EXPECT_STREQ(document.getImage(0).description().c_str(), changed.description().c_str());
                }
            });
    }
    document.AddView(&view);
}

TEST_F(UndoTest, AStepWithoutMemoryForTheParameterStreamLeavesBoth)
{
    document.RemoveView(&view);
    for (const unsigned width : {4u, 2u}) // the parameter stream keeps its shape, or changes it
        for_each_failing_allocation(
            [&] {
                document.DeleteContents();
                SPMDataStream curve = heights("curve", {4}, 1, 10);
                curve.set_parameter_stream("position");
                add(curve);
                add(heights("position", {4}, 1, 50));
                setFirst(20, 0);
                document.pushUndo(1, true);
                document.getImage(1) = heights("position", {width}, 1, 60);
                document.revalidateImage(1);
            },
            [&] { document.undo(0); },
            [&](bool isDone, bool) {
                EXPECT_EQ(first(0), isDone ? 10 : 20);
                EXPECT_EQ(first(1), isDone ? 50 : 60);
                EXPECT_EQ(document.getSubImageLength(1), isDone ? 4u : width);
                for (const unsigned image : {0u, 1u}) {
                    EXPECT_EQ(document.canUndo(image), !isDone);
                    EXPECT_TRUE(!document.canRedo(image) || isDone) << "what was not done cannot be done again";
                }
            });
    document.AddView(&view);
}

TEST_F(UndoTest, StepsGoWithTheirImageAndCopyWithIt)
{
    add(heights("a", {2}, 1, 1));
    add(heights("b", {2}, 1, 5));
    setFirst(50, 1);
    document.RemoveImage(0);
    EXPECT_TRUE(document.canUndo(0)) << "b's history moved with it";
    document.DeleteContents();
    EXPECT_FALSE(document.canUndo(0));
    const CUndoData record("text\n", 3, "abc");
    CUndoData copy("", 0, nullptr);
    copy = record;
    EXPECT_STREQ(copy.description, "text\n");
    EXPECT_EQ(std::memcmp(copy.data, "abc", 3), 0);
    EXPECT_NE(copy.data, record.data);
}

} // namespace
