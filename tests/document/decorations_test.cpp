#include "fixtures.h"

namespace {

/// What a group holds, as text: "type color name text: coordinates [sizes mode bytes]".
std::string told(const VLPluginDecoration& record)
{
    std::string out = std::to_string(record.type) + "/" + std::to_string(record.count) + ":";
    const auto add = [&](const auto& value) { out += " " + std::to_string(value); };
    const auto bytes = [&](const void* data, unsigned count) {
        for (unsigned i = 0; data && i < count; ++i) add(unsigned{static_cast<const unsigned char*>(data)[i]});
    };
    for (unsigned i = 0; i < record.count; ++i) {
        if (record.type == 10) {
            const auto& one = static_cast<const decoration_block*>(record.data)[i];
            add(int(one.x)), add(int(one.y)), add(one.mode), bytes(one.bytes, one.size);
        } else if (record.type == 11) {
            const auto& one = static_cast<const decoration_bitmap*>(record.data)[i];
            add(int(one.x0)), add(int(one.y0)), add(int(one.x1)), add(int(one.y1)), add(one.mode);
            bytes(one.bytes, one.width * one.height);
        } else if (record.type == 12) {
            const auto& one = static_cast<const decoration_volume*>(record.data)[i];
            add(int(one.x0)), add(int(one.z0)), add(int(one.z1)), add(one.mode);
            bytes(one.bytes, one.width * one.height * one.depth);
        } else if (record.type < 8) {
            const unsigned numbers = record.type == 1 ? 1 : record.type % 2 ? 3 : 2;
            for (unsigned k = 0; k < numbers; ++k) add(int(static_cast<const double*>(record.data)[i * numbers + k]));
        }
    }
    return out;
}

class DecorationsTest : public DocumentTest {
protected:
    DecorationsTest()
    {
        const SPMDataStream images[] = {heights("a", {2, 2}), heights("b", {2, 2})};
        document.AddNewImages(images, 2);
        document.autoDelete = false;
        document.AddView(&view);
    }
    ~DecorationsTest() override { document.RemoveView(&view); }

    VLPluginDecoration record(std::uint32_t type, unsigned count, void* data, const char* name = nullptr,
                              std::uint32_t color = 5)
    {
        return {type, count, color, 0x123456, nullptr, name, data};
    }
    void set(const char* key, std::vector<VLPluginDecoration> list)
    {
        document.set_decoration(key, list.data(), static_cast<unsigned>(list.size()), DEC_IMAGE_SURFACE, 1);
    }
    std::vector<std::string> keys() const
    {
        std::vector<std::string> out(document.get_decorations_list(nullptr, 0, 1));
        EXPECT_EQ(document.get_decorations_list(out.data(), 99, 1), out.size());
        return out;
    }

    fake_view view{1};
    double numbers[6] = {1, 2, 3, 4, 5, 6};
    unsigned char bytes[8] = {11, 12, 13, 14, 15, 16, 17, 18};
};

TEST_F(DecorationsTest, EveryTypeComesBackAsItWent)
{
    decoration_block blocks[] = {{1, 2, 3, 7, bytes}, {3, 4, 0, 8, nullptr}};
    decoration_bitmap bitmap = {1, 2, 3, 4, 2, 3, 9, bytes};
    decoration_volume volume = {1, 2, 3, 4, 5, 6, 2, 2, 2, 5, bytes};
    const std::tuple<std::uint32_t, unsigned, void*, const char*> cases[] = {
        {1, 6, numbers, "1/6: 1 2 3 4 5 6"},
        {2, 3, numbers, "2/3: 1 2 3 4 5 6"},
        {3, 2, numbers, "3/2: 1 2 3 4 5 6"},
        {4, 2, numbers, "4/2: 1 2 3 4"},
        {5, 1, numbers, "5/1: 1 2 3"},
        {6, 1, numbers, "6/1: 1 2"},
        {7, 2, numbers, "7/2: 1 2 3 4 5 6"},
        {8, 2, numbers, "8/0:"}, // keeps no data
        {9, 2, numbers, "9/0:"},
        {10, 2, blocks, "10/2: 1 2 7 11 12 13 3 4 8"},
        {11, 1, &bitmap, "11/1: 1 2 3 4 9 11 12 13 14 15 16"},
        {12, 1, &volume, "12/1: 1 3 6 5 11 12 13 14 15 16 17 18"},
        {99, 5, numbers, "99/0:"},
        {4, 0, numbers, "4/0:"},
    };
    for (const auto& [type, count, data, text] : cases) {
        set("group", {record(type, count, data)});
        unsigned found = 0;
        DecImageType imageType{};
        VLPluginDecoration* const copy = document.get_decorations("group", &found, &imageType, 1);
        ASSERT_NE(copy, nullptr) << text;
        EXPECT_EQ(found, 1u);
        EXPECT_EQ(imageType, DEC_IMAGE_SURFACE);
        EXPECT_EQ(told(copy[0]), text);
        EXPECT_EQ(copy[1].type, 0u) << "closed by an empty record";
        document.free_decorations(copy);
    }
    document.free_decorations(nullptr);
}

TEST_F(DecorationsTest, OnlyBlackGreenAndBlueKeepTheirIndices)
{
    const std::tuple<std::uint32_t, std::uint32_t, std::uint32_t> cases[] = {
        {0, 6, 0x0000FF}, {1, 1, 0}, {2, 2, 0},        {3, 6, 0xFFFFFF},
        {4, 6, 0x7F7F7F}, {5, 5, 0}, {6, 6, 0x123456}, {77, 5, 0},
    };
    for (const auto& [index, back, custom] : cases) {
        set("group", {record(2, 1, numbers, "n", index)});
        VLPluginDecoration* const copy = document.get_decorations("group", nullptr, nullptr, 1);
        EXPECT_EQ(copy[0].colorIndex, back) << index;
        EXPECT_EQ(copy[0].customColor, custom) << index;
        EXPECT_STREQ(copy[0].name, "n");
        EXPECT_EQ(copy[0].text, nullptr);
        document.free_decorations(copy);
    }
}

TEST_F(DecorationsTest, RecordsWithoutTypeOrDataArePassedOver)
{
    VLPluginDecoration labelled = record(2, 1, numbers, "last");
    labelled.text = "label";
    set("group", {record(0, 3, numbers), record(2, 1, nullptr), labelled});
    unsigned count = 0;
    VLPluginDecoration* const copy = document.get_decorations("group", &count, nullptr, 1);
    ASSERT_EQ(count, 1u);
    EXPECT_STREQ(copy[0].text, "label");
    document.set_decoration("group", copy, 1, DEC_IMAGE_CURVE, 1); // texts point into the group that is replaced
    document.free_decorations(copy);
    EXPECT_EQ(document.decorations(1).all().at("group").members[0].text, "label");

    set("empty", {record(0, 1, numbers)});
    for (const char* without : {"empty", "absent"}) {
        count = 7;
        EXPECT_EQ(document.get_decorations(without, &count, nullptr, 1), nullptr);
        EXPECT_EQ(count, 0u) << without;
    }
    EXPECT_EQ(keys(), (std::vector<std::string>{"empty", "group"}));
}

TEST_F(DecorationsTest, SizesThatNoMemoryHoldsLeaveTheGroup)
{
    set("group", {record(2, 1, numbers, "kept")});
    view.hints.clear();
    constexpr std::uint32_t most = 0xffffffff;
    decoration_bitmap bitmap = {0, 0, 1, 1, most, most, 0, bytes};
    // 2^64 and 2^64 + 2^32 bytes: 64 bits would hold 0 and 2^32
    decoration_volume volumes[] = {{0, 0, 0, 1, 1, 1, 1u << 31, 1u << 31, 4, 0, bytes},
                                   {0, 0, 0, 1, 1, 1, 641 * 2, 6700417, 1u << 31, 0, bytes}};
    for (const VLPluginDecoration& hostile :
         {record(11, 1, &bitmap), record(12, 1, &volumes[0]), record(12, 1, &volumes[1])}) {
        EXPECT_THROW(set("group", {hostile}), std::length_error);
        EXPECT_EQ(document.decorations(1).all().at("group").members[0].name, "kept");
    }
    EXPECT_TRUE(view.hints.empty());
    bitmap.bytes = volumes[0].bytes = nullptr;
    set("group", {record(11, 1, &bitmap), record(12, 1, volumes)});
    EXPECT_EQ(document.decorations(1).all().at("group").members[1].elements[0].bytes.size(), 0u) << "no bytes to hold";
}

TEST_F(DecorationsTest, ACountOfZeroRemovesTheGroupAndTellsTheViews)
{
    set("b", {record(2, 1, numbers)});
    set("a", {record(2, 1, numbers)});
    view.hints.clear();
    document.set_decoration("b", nullptr, 0, DEC_IMAGE_ANY, 1);
    document.set_decoration("absent", nullptr, 0, DEC_IMAGE_ANY, 1);
    EXPECT_EQ(view.hints, (std::vector<std::uint32_t>{1u << 16 | 2, 1u << 16 | 2}));
    EXPECT_EQ(keys(), std::vector<std::string>{"a"});
    document.set_decoration("a", nullptr, 3, DEC_IMAGE_ANY, 1);
    document.set_decoration("a", nullptr, 0, DEC_IMAGE_ANY, 9);
    EXPECT_EQ(view.hints.size(), 2u) << "no list, no such image";
    std::string key;
    EXPECT_EQ(document.get_decorations_list(&key, 0, 1), 0u);
    EXPECT_EQ(document.get_decorations_list(nullptr, 0, 9), 0u);
    document.clear_decorations(1);
    EXPECT_TRUE(keys().empty());
}

TEST_F(DecorationsTest, ActionsChangeStateWordsByName)
{
    const auto fill = [&] {
        set("one", {record(2, 1, numbers, "n"), record(2, 1, numbers, "m")});
        set("two", {record(2, 1, numbers, "n")});
    };
    fill();
    EXPECT_TRUE(document.ObjectAction(1, OBJECT_SELECT, "n"));
    EXPECT_EQ(document.GetObjectFlags(1, "n"), 1u);
    EXPECT_FALSE(document.ObjectAction(1, OBJECT_SELECT, "n")) << "all are selected already";
    EXPECT_EQ(document.GetObjectFlags(1, "m"), 0u);
    EXPECT_TRUE(document.ObjectAction(1, OBJECT_DESELECT, "n"));
    EXPECT_FALSE(document.ObjectAction(1, OBJECT_CLEAR_STATE, "n"));
    document.ObjectAction(1, OBJECT_SELECT, "m");
    EXPECT_TRUE(document.ObjectAction(1, OBJECT_CLEAR_STATE, "m"));
    for (const char* nobody : {"", "absent"}) {
        EXPECT_FALSE(document.ObjectAction(1, OBJECT_DELETE, nobody));
        EXPECT_EQ(document.GetObjectFlags(1, nobody), 0u);
    }
    EXPECT_FALSE(document.ObjectAction(1, OBJECT_DELETE, nullptr));
    EXPECT_FALSE(document.ObjectAction(9, OBJECT_DELETE, "n"));
    EXPECT_EQ(document.GetObjectFlags(9, "n"), 0u);

    EXPECT_TRUE(document.ObjectAction(1, OBJECT_DELETE, "n"));
    EXPECT_EQ(keys(), std::vector<std::string>{"one"}) << "a group left empty goes";
    EXPECT_EQ(document.decorations(1).all().at("one").members.size(), 1u);
}

} // namespace
