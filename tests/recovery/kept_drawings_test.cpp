#include "recovery/kept_drawings.h"
#include "recovery/sealed_bytes.h"

#include <algorithm>
#include <functional>
#include <gtest/gtest.h>

namespace {

document::decoration drawing(std::uint32_t type, unsigned tupleLength, std::vector<double> coordinates,
                             std::vector<document::decoration::element> elements = {})
{
    document::decoration made;
    made.type = type;
    made.tupleLength = tupleLength;
    made.coordinates = std::move(coordinates);
    made.elements = std::move(elements);
    made.name = "edge " + std::to_string(type);
    made.text = std::string("3 nm\0", 5);
    made.color = 0x123456;
    made.state = DECORATION_SELECTED | DECORATION_HIT_TESTABLE;
    return made;
}

/// One of each kind that keeps data, one that keeps none, and a group without members.
document::decorations everything()
{
    document::decorations made;
    document::decorations::group shapes, blocks, none;
    shapes.imageType = DEC_IMAGE_SURFACE;
    shapes.members = {drawing(DECORATION_X, 1, {-1.5, 1e-300}), drawing(DECORATION_POLYLINE, 2, {0, 1, 2, 3}),
                      drawing(DECORATION_XYZ, 3, {1, 2, 3}), drawing(9, 0, {})};
    blocks.members = {drawing(DECORATION_BLOCK, 1, {1, 2}, {{3, 0, 0, 7, {1, 2, 3}}}),
                      drawing(DECORATION_BITMAP, 2, {0, 0, 4, 5}, {{2, 2, 0, 8, {1, 2, 3, 4}}}),
                      drawing(DECORATION_VOLUME, 3, {0, 0, 0, 1, 1, 1}, {{1, 2, 2, 9, {1, 2, 3, 4}}})};
    EXPECT_TRUE(made.put("steps", shapes));
    EXPECT_TRUE(made.put("masks", blocks));
    EXPECT_TRUE(made.put("", none));
    return made;
}

bool is_equal(const document::decoration& a, const document::decoration& b)
{
    const auto sameElement = [](const auto& one, const auto& other) {
        return one.width == other.width && one.height == other.height && one.depth == other.depth &&
               one.mode == other.mode && one.bytes == other.bytes;
    };
    return a.type == b.type && a.tupleLength == b.tupleLength && a.coordinates == b.coordinates && a.name == b.name &&
           a.text == b.text && a.color == b.color && a.state == b.state &&
           std::ranges::equal(a.elements, b.elements, sameElement);
}

TEST(KeptDrawings, ComeBackAsTheyWent)
{
    const document::decorations went = everything();
    const auto back = recovery::decode_drawings(recovery::encode(went));
    ASSERT_TRUE(back);
    ASSERT_EQ(back->all().size(), went.all().size());
    for (const auto& [key, group] : went.all()) {
        const auto found = back->all().find(key);
        ASSERT_NE(found, back->all().end()) << key;
        EXPECT_EQ(found->second.imageType, group.imageType) << key;
        EXPECT_TRUE(std::ranges::equal(found->second.members, group.members, is_equal)) << key;
    }
}

TEST(KeptDrawings, AreRefusedWhenAnyByteIsLostOrWrong)
{
    const std::vector<std::byte> whole = recovery::encode(everything());
    for (std::size_t i = 0; i < whole.size(); ++i) {
        EXPECT_FALSE(recovery::decode_drawings(std::span(whole).first(i))) << i;
        std::vector<std::byte> wrong = whole;
        wrong[i] ^= std::byte{0x10};
        EXPECT_FALSE(recovery::decode_drawings(wrong)) << i;
    }
}

TEST(KeptDrawings, ThatNothingCouldHaveMadeAreRefused)
{
    const std::pair<const char*, std::function<void(document::decoration&)>> lies[] = {
        {"no kind", [](auto& each) { each.type = DECORATION_END; }},
        {"points of another length", [](auto& each) { each.tupleLength = 3; }},
        {"no length, which a walk never gets past", [](auto& each) { each.type = 8, each.tupleLength = 0; }},
        {"half a point", [](auto& each) { each.coordinates.pop_back(); }},
        {"bytes of a point", [](auto& each) { each.elements.push_back({}); }},
        {"an element without corners",
         [](auto& each) { each = drawing(DECORATION_BITMAP, 2, {}, {{1, 1, 0, 0, {1}}}); }},
        {"sizes beyond the bytes",
         [](auto& each) { each = drawing(DECORATION_BITMAP, 2, {0, 0, 1, 1}, {{9, 9, 0, 0, {1}}}); }},
        {"sizes whose product leaves 64 bits",
         [](auto& each) {
             // 2^31 * 2^31 * 4 is 2^64, and 0 where it wraps around
             each = drawing(DECORATION_VOLUME, 3, {0, 0, 0, 1, 1, 1}, {{1u << 31, 1u << 31, 4, 0, {1}}});
         }},
    };
    for (const auto& [name, lie] : lies) {
        document::decorations::group group;
        group.members.push_back(drawing(DECORATION_POLYLINE, 2, {0, 1, 2, 3}));
        lie(group.members.back());
        document::decorations made;
        EXPECT_FALSE(made.put("k", group)) << name;
        EXPECT_TRUE(made.all().empty());
    }
    recovery::byte_writer counts; // more groups, members and numbers than there are bytes
    counts.plain("VLDRAW1\n");
    for (int i = 0; i < 20; ++i) counts.number(0xffffffffu);
    EXPECT_FALSE(recovery::decode_drawings(counts.sealed()));
}

} // namespace
