#include "recovery_fixture.h"

namespace {

recovery::kept_document everything()
{
    recovery::kept_document kept;
    kept.time = 1'700'000'000;
    kept.title = L"Copy 1 of grün";
    kept.path = L"/data/gr\u00fcn.mdt.spm";
    kept.source = document::own_files::entry{L"/data/gr\u00fcn.mdt", {1, 2, 3, -4, 5}};
    kept.sourcePrint = 0xfedcba98u;
    kept.texts = {{"\\Date", "Monday\n"}, {"empty", ""}};
    kept.images = {{"x", "x(Label),array,2,2", {{"k", std::string("a\0b", 3)}}, "n-1", 0, 4, {}},
                   {"y", "y,array,0,2", {}, "", 7, 0, 0x80000001u}};
    return kept;
}

TEST(KeptDocument, ComesBackAsItWent)
{
    const recovery::kept_document kept = everything();
    const auto back = recovery::decode(recovery::encode(kept));
    ASSERT_TRUE(back);
    EXPECT_EQ(back->time, kept.time);
    EXPECT_EQ(back->title, kept.title);
    EXPECT_EQ(back->path, kept.path);
    ASSERT_TRUE(back->source);
    EXPECT_EQ(back->source->path, kept.source->path);
    EXPECT_EQ(back->source->stamp, kept.source->stamp);
    EXPECT_EQ(back->sourcePrint, kept.sourcePrint);
    EXPECT_EQ(back->texts, kept.texts);
    ASSERT_EQ(back->images.size(), 2u);
    EXPECT_EQ(back->images[0].declaration, kept.images[0].declaration);
    EXPECT_EQ(back->images[0].texts, kept.images[0].texts);
    EXPECT_EQ(back->images[0].file, "n-1");
    EXPECT_EQ(back->images[0].bytes, 4u);
    EXPECT_EQ(back->images[0].checksum, std::nullopt);
    EXPECT_EQ(back->images[1].id, "y");
    EXPECT_EQ(back->images[1].fileImage, 7u);
    EXPECT_EQ(back->images[1].checksum, 0x80000001u);
    EXPECT_FALSE(recovery::decode(recovery::encode({}))->sourcePrint) << "as of an earlier version";
}

TEST(KeptDocument, IsRefusedWhenAnyByteIsLostOrWrong)
{
    const std::vector<std::byte> whole = recovery::encode(everything());
    for (std::size_t i = 0; i < whole.size(); ++i) {
        EXPECT_FALSE(recovery::decode(std::span(whole).first(i))) << i;
        std::vector<std::byte> wrong = whole;
        wrong[i] ^= std::byte{0x10};
        EXPECT_FALSE(recovery::decode(wrong)) << i;
    }
    EXPECT_FALSE(recovery::read_manifest("/nowhere"));
}

} // namespace
