// Saves whose description would not come back: refused by the name of the text, the old file whole.
#include "container_fixture.h"

#include <functional>
#include <random>

namespace {

constexpr unsigned ofDocument = unsigned(-1);

struct lost_part {
    const char* what;
    std::function<void(CStorageDoc&)> give;
    const char* name; ///< in the message
};

const lost_part lostParts[] = {
    {"text with the layout behind its end",
     [](CStorageDoc& d) { d.setString("Comment", "a</var>\n\t<var id=\"b\">c", ofDocument); },
     "the text \"Comment\" of the document"},
    {"text that ends the file", [](CStorageDoc& d) { d.setString("Note", "</var>\n</spmx>", 0); },
     "the text \"Note\" of image \"first\""},
    {"text behind which nothing is understood", [](CStorageDoc& d) { d.setString("Note", "</var>\n<stream &", 1); },
     "the text \"Note\" of image \"second\""},
    {"key", [](CStorageDoc& d) { d.setString("k\">v", "w", ofDocument); }, "the text \"k\">v\" of the document"},
    {"label with a tag's end and the layout",
     [](CStorageDoc& d) { d.getImage(1).set_description("a\"/>\n\t\t<axis start=\"1"); }, "image \"second\""},
    {"label with an attribute", [](CStorageDoc& d) { d.getImage(0).set_description("a\" offset=\"7"); },
     "the label of image \"first\""},
    {"unit", [](CStorageDoc& d) { d.getImage(0).values.set_axis(0, VLAxis(0, 1, "n\"/>\n<axis units=\"m")); },
     "image \"first\""},
    {"sub-image name",
     [](CStorageDoc& d) {
         const char* names[] = {"F</subimage>\n<subimage>R"};
         d.getImage(1).set_subimage_names(names, 1);
     },
     "a sub-image name of image \"second\""},
    {"parameter", [](CStorageDoc& d) { d.getImage(0).set_parameter_stream("p\">\n<axis units=\""); },
     "image \"first\""},
    {"more dimensions than a reader takes",
     [](CStorageDoc& d) {
         for (unsigned i = 1; i < 40; ++i) d.getImage(1).set_dimension(i, {});
     },
     "image \"second\""},
    {"more samples than the file holds", [](CStorageDoc& d) { d.getImage(0).get_dimension(0).length = 400'000'000; },
     "\"first\""},
};

TEST_F(ContainerTest, WhatWouldNotComeBackFailsTheSaveByItsName)
{
    write_file(folder / "old.spm", "old content");
    for (const lost_part& each : lostParts) {
        CStorageDoc lost;
        const SPMDataStream streams[] = {heights("first", {4}), heights("second", {3})};
        lost.AddNewImages(streams, 2);
        lost.setString("harmless", "<>&\"", 1);
        each.give(lost);
        EXPECT_FALSE(lost.DoSave(path("old.spm").c_str(), true)) << each.what;
        EXPECT_NE(last().find(each.name), std::string::npos) << each.what << ": " << last();
        EXPECT_EQ(file_content(folder / "old.spm"), "old content") << each.what;
        EXPECT_EQ(folder.files(), 1u) << each.what;
    }
}

TEST_F(ContainerTest, ADescriptionOverTheLimitNamesItsLongestText)
{
    const SPMDataStream image = heights("first", {4});
    document.AddNewImages(&image, 1);
    const std::string half(33u << 20, 'x');
    document.setString("Log", half.c_str(), 0);
    document.setString("Notes", (half + "y").c_str(), ofDocument);
    EXPECT_FALSE(document.DoSave(path("a.spm").c_str(), true));
    EXPECT_NE(last().find("a file can hold 64; the longest is the text \"Notes\" of the document"), std::string::npos)
        << last();
    EXPECT_EQ(folder.files(), 0u);
    document.setString("Log", "", 0);
    EXPECT_TRUE(document.DoSave(path("a.spm").c_str(), true));
}

/// Texts put together from pieces of the format.
std::string random_text(std::mt19937& random)
{
    static const char* const pieces[] = {"</var>", "\n",       "\t\t",      "<var id=\"", "\"/>",       "\">",
                                         "\"",     "<stream",  "</spmx>",   "<axis",      " units=\"",  "x",
                                         "&lt;",   " name=\"", "</stream>", "\r\n",       "</subimage>"};
    std::string out;
    for (auto count = random() % 6; count > 0; --count) out += pieces[random() % std::size(pieces)];
    return out;
}

TEST_F(ContainerTest, ASaveThatSucceedsComesBackWhateverTheTexts)
{
    std::mt19937 random(7);
    int saved = 0, refused = 0;
    for (int i = 0; i < 150; ++i) {
        CStorageDoc source;
        SPMDataStream image = heights("a", {2});
        image.set_description(random_text(random).c_str());
        image.values.set_axis(0, VLAxis(0, 1, random_text(random).c_str()));
        source.AddNewImages(&image, 1);
        source.setString(random_text(random).c_str(), random_text(random).c_str(), 0);
        if (!source.DoSave(path("a.spm").c_str(), true)) {
            ++refused;
            EXPECT_NE(last().find("would not come back"), std::string::npos) << last();
            continue;
        }
        ++saved;
        CStorageDoc read;
        ASSERT_TRUE(read.OnOpenDocument(path("a.spm").c_str()));
        EXPECT_EQ(read.strings(0), source.strings(0));
        EXPECT_STREQ(read.getImage(0).description().c_str(), source.getImage(0).description().c_str());
    }
    EXPECT_GT(saved, 40);
    EXPECT_GT(refused, 0);
}

TEST_F(ContainerTest, WhateverAForeignFileSaysItCanBeSaved)
{
    std::mt19937 random(11);
    for (int i = 0; i < 150; ++i) {
        formats::recording recording;
        formats::recorded_image image;
        image.stream = heights("a", {2});
        image.stream.set_description(random_text(random).c_str());
        const std::string name = random_text(random);
        const char* names[] = {name.c_str()};
        image.stream.set_subimage_names(names, 1);
        image.stream.get_dimension(0).set_axis(0, VLAxis(0, 1, random_text(random).c_str()));
        image.strings[random_text(random)] = random_text(random);
        recording.strings[random_text(random)] = random_text(random);
        recording.items.emplace_back(std::move(image));
        CStorageDoc source;
        ASSERT_TRUE(source.addRecording(recording));
        ASSERT_TRUE(source.DoSave(path("a.spm").c_str(), true)) << last();
    }
}

} // namespace
