#include "recovery_fixture.h"

#include "recovery/sealed_bytes.h"

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
    kept.baseTitle = "grün";
    kept.displayTitle = "a set";
    kept.derived = 3;
    kept.images = {{"x", "x(Label),array,2,2", {{"k", std::string("a\0b", 3)}}, "n-1", 0, 4, {}, "n-2", "n-3"},
                   {"y", "y,array,0,2", {}, "", 7, 0, 0x80000001u}};
    return kept;
}

/// As the version before wrote it: without what is drawn over images and parts of titles.
std::vector<std::byte> in_former_layout(const recovery::kept_document& kept, bool hasPrint)
{
    recovery::byte_writer out;
    out.plain("VLKEPT2\n");
    out.number(kept.time);
    out.text("a title");
    out.text("/data/a.spm");
    out.number(std::uint8_t{1}); // a source
    out.text("/data/a.spm");
    for (const std::uint64_t number : {1, 2, 3, 4, 5}) out.number(number); // its stamp
    out.number(std::uint32_t{0});                                          // texts
    out.number(std::uint32_t{1});                                          // images
    out.text("x");
    out.text("x,array,2,2");
    out.number(std::uint32_t{0});
    out.text("n-1");
    out.number(std::uint32_t{7});
    out.number(std::uint64_t{4});
    out.number(std::uint8_t{0});
    if (hasPrint) out.number(std::uint32_t{9});
    return out.sealed();
}

TEST(KeptDocument, OfAnEarlierVersionIsRead)
{
    for (const bool hasPrint : {false, true}) {
        const auto back = recovery::decode(in_former_layout(everything(), hasPrint));
        ASSERT_TRUE(back);
        EXPECT_EQ(back->title, L"a title");
        EXPECT_EQ(back->sourcePrint, hasPrint ? std::optional(9u) : std::nullopt);
        ASSERT_EQ(back->images.size(), 1u);
        EXPECT_EQ(back->images[0].file, "n-1");
        EXPECT_EQ(back->images[0].fileImage, 7u);
        EXPECT_EQ(back->images[0].overlayFile + back->images[0].drawingsFile + back->baseTitle, "");
    }
}

TEST(KeptDocument, NamesFilesInItsFolderOnly)
{
    for (const char* name : {"../x", "/etc/passwd", "a/b", "..", ".", "manifest", "source"})
        for (std::string recovery::kept_image::* const file :
             {&recovery::kept_image::file, &recovery::kept_image::overlayFile, &recovery::kept_image::drawingsFile}) {
            recovery::kept_document kept = everything();
            kept.images[0].*file = name;
            EXPECT_FALSE(recovery::decode(recovery::encode(kept))) << name;
        }
    recovery::kept_document kept = everything();
    kept.images[1].fileImage = 0xffffffffu; // a list of as many places takes 32 GiB
    EXPECT_FALSE(recovery::decode(recovery::encode(kept)));
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
    EXPECT_EQ(back->images[0].overlayFile, "n-2");
    EXPECT_EQ(back->images[0].drawingsFile, "n-3");
    EXPECT_EQ(back->baseTitle, kept.baseTitle);
    EXPECT_EQ(back->displayTitle, kept.displayTitle);
    EXPECT_EQ(back->derived, kept.derived);
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
