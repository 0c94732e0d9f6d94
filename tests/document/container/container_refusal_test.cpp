// Containers that this program did not write: other layouts, missing parts, and claims that are not true.
#include "container_fixture.h"
#include "resources/commands.h"

#include <memory>
#include <zip.h>

namespace {

/// Archives put together by hand.
class archive_writer {
public:
    explicit archive_writer(const std::filesystem::path& path)
        : archive(zip_open(path.c_str(), ZIP_CREATE | ZIP_TRUNCATE, nullptr))
    {
    }
    ~archive_writer() { zip_close(archive); }
    archive_writer& add(const std::string& name, const std::string& content)
    {
        contents.push_back(std::make_unique<std::string>(content));
        zip_source_t* source = zip_source_buffer(archive, contents.back()->data(), contents.back()->size(), 0);
        zip_file_add(archive, name.c_str(), source, ZIP_FL_ENC_UTF_8);
        return *this;
    }

private:
    zip_t* archive;
    std::vector<std::unique_ptr<std::string>> contents;
};

std::string description_of(const std::string& streams,
                           const std::string& entities = "\t<!ENTITY a SYSTEM \"./a.raw\" NDATA spmRaw>\n")
{
    return "<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"no\" ?>\n<!DOCTYPE spmx PUBLIC \"p\" \"s\" [\n"
           "\t<!NOTATION spmRaw SYSTEM \"x.exe\">\n" +
           entities + "]>\n<spmx xmlns=\"u\">\n" + streams + "</spmx>";
}

std::string stream_of(const std::string& attributes, const std::string& inside)
{
    return "\t<stream id=\"a\"" + attributes + ">\n" + inside + "\t</stream>\n";
}

TEST_F(ContainerTest, MissingPartsHaveDefaults)
{
    archive_writer(folder / "a.spm")
        .add("main.xml", description_of(stream_of("", "\t\t<axis/>\n\t\t<dimension length=\"3\">\n\t\t</dimension>\n"
                                                      "\t\t<data content=\"\" ref=\"a\"/>\n")))
        .add("a.raw", std::string("\1\0\2\0\3\0\4\0", 8));
    CStorageDoc read;
    ASSERT_TRUE(read.OnOpenDocument(path("a.spm").c_str()));
    EXPECT_EQ(read.getImage(0).array_type(), SPM_ARRAY_INT16) << "no type and no size: 16-bit heights";
    EXPECT_EQ(read.getSubImagesNumber(0), 2u) << "four samples are a sub-image and a part of one";
    EXPECT_EQ(read.getDataPoint1S(0, 0, 1), 4);
    EXPECT_EQ(read.getDataPoint1S(0, 1, 1), 0);
}

TEST_F(ContainerTest, SamplesThatDoNotFillTheirShapeAreTold)
{
    const std::string name = "\t\t<subimage>N</subimage>\n";
    const auto with_names = [&](std::size_t names) {
        std::string all;
        for (std::size_t i = 0; i < names; ++i) all += name;
        return description_of(stream_of(
            "", all + "\t\t<dimension length=\"3\">\n\t\t</dimension>\n\t\t<data content=\"int16\" ref=\"a\"/>\n"));
    };
    const struct {
        std::size_t names, bytes;
        const char* note;
    } rows[] = {{0, 6, ""},
                {0, 12, ""},
                {2, 12, ""},
                {1, 12, ""},
                {2, 6, "2 sub-images are named, the samples of 1 are there"},
                {3, 12, "3 sub-images are named, the samples of 2 are there"},
                {0, 5, "6 bytes of samples, 5 are there"},
                {0, 0, "6 bytes of samples, 0 are there"},
                {0, 7, "12 bytes of samples, 7 are there"}};
    for (const auto& row : rows) {
        archive_writer(folder / "a.spm")
            .add("main.xml", with_names(row.names))
            .add("a.raw", std::string(row.bytes, '\1'));
        CStorageDoc read;
        ASSERT_TRUE(read.OnOpenDocument(path("a.spm").c_str())) << row.bytes;
        const std::string told = read.getReadWarnings().empty() ? "" : read.getReadWarnings()[0];
        EXPECT_EQ(told.empty(), *row.note == '\0') << row.bytes << told;
        EXPECT_NE(told.find(row.note), std::string::npos) << told;
        EXPECT_EQ(read.getString("\\Reader note", unsigned(-1)), told) << "kept when the file is saved";
    }
}

TEST_F(ContainerTest, OtherLayoutsAreReadWhenTheyAreXml)
{
    archive_writer(folder / "a.spm")
        .add("main.xml", "<?xml version=\"1.0\"?><!DOCTYPE spmx [<!NOTATION spmRaw SYSTEM \"x\">"
                         "<!ENTITY a SYSTEM \"./other.raw\" NDATA spmRaw>]><spmx><var id=\"k\">1 &lt; 2</var>"
                         "<stream id=\"a\" name=\"A &amp; B\"><data content=\"uint8\" ref=\"a\"/></stream></spmx>")
        .add("other.raw", "\7");
    CStorageDoc read;
    ASSERT_TRUE(read.OnOpenDocument(path("a.spm").c_str()));
    EXPECT_STREQ(read.getString("k", unsigned(-1)), "1 < 2");
    EXPECT_STREQ(read.getImage(0).get_description(), "A & B");
    EXPECT_EQ(*static_cast<std::uint8_t*>(read.getImageDataS(0, 0)), 7);
}

TEST_F(ContainerTest, MixedLayoutsAreReadAsTheXmlThatTheyAre)
{
    const std::string own = description_of(
        stream_of(" name=\"A\"", "\t\t<var id=\"k\">1</var>\n\t\t<var id=\"l\">2</var>\n\t\t<subimage>F</subimage>\n"
                                 "\t\t<subimage>R</subimage>\n\t\t<axis start=\"1\" scale=\"2\" units=\"nm\"/>\n"
                                 "\t\t<dimension length=\"3\">\n\t\t\t<axis start=\"0\" scale=\"1\" units=\"s\"/>\n"
                                 "\t\t</dimension>\n\t\t<data content=\"int16\" ref=\"a\"/>\n"));
    const std::pair<std::string_view, std::string_view> changes[] = {
        {"id=\"a\" name=\"A\"", "name=\"A\" id=\"a\""},
        {"name=\"A\">\n\t\t<var", "name=\"A\"><var"},
        {"name=\"A\">", "name=\"A\" >"},
        {"units=\"nm\"/>", "units=\"nm\" />"},
        {"units=\"nm\"/>", "units=\"nm\"></axis>"},
        {"units=\"nm\"/>\n\t\t<dim", "units=\"nm\"/><dim"},
        {"</var>\n\t\t<var", "</var><var"},
        {"</subimage>\n\t\t<sub", "</subimage><sub"},
        {"length=\"3\">\n\t\t\t<axis", "length=\"3\"><axis"},
    };
    for (const auto& [from, to] : changes) {
        std::string text = own;
        ASSERT_NE(text.find(from), std::string::npos);
        text.replace(text.find(from), from.size(), to);
        std::filesystem::remove(folder / "a.spm");
        archive_writer(folder / "a.spm")
            .add("main.xml", text)
            .add("a.raw", std::string("\1\0\2\0\3\0\4\0\5\0\6\0", 12));
        CStorageDoc read;
        ASSERT_TRUE(read.OnOpenDocument(path("a.spm").c_str())) << to;
        EXPECT_EQ(std::string(read.getImage(0).get_name()) + read.getImage(0).get_description(), "aA") << to;
        EXPECT_EQ(read.strings(0), (CStorageDoc::string_table{{"k", "1"}, {"l", "2"}})) << to;
        EXPECT_EQ(read.getSubImagesNumber(0), 2u) << to;
        EXPECT_EQ(std::string(read.getImage(0).subimage_names()[1].c_str()), "R") << to;
        EXPECT_EQ(read.getImage(0).values.get_axis(0).scale, 2.0) << to;
        EXPECT_EQ(read.getImage(0).get_dimension(0).length, 3u) << to;
    }
}

TEST_F(ContainerTest, CutAnywhereTheFileIsRefused)
{
    const SPMDataStream image = heights("a", {8, 8});
    document.AddNewImages(&image, 1);
    save("a.spm");
    const std::string whole = file_content(folder / "a.spm");
    for (std::size_t length = 0; length < whole.size(); length += 7) {
        write_file(folder / "cut.spm", whole.substr(0, length));
        EXPECT_NE(refusal("cut.spm"), "") << length;
    }
    std::string damaged = whole;
    const std::size_t header = whole.find("a.raw") - 30; // of the entry; the samples follow name and extra field
    const std::size_t samples = header + 35 + std::size_t(whole[header + 28]);
    damaged[samples + 20] = static_cast<char>(damaged[samples + 20] ^ 0x10);
    write_file(folder / "damaged.spm", damaged);
    EXPECT_NE(refusal("damaged.spm"), "");
}

/// Turns a bit of the samples of an entry over.
void damage_samples(const std::filesystem::path& file, const std::string& entry)
{
    std::string bytes = file_content(file);
    const std::size_t header = bytes.find(entry) - 30; // its name, an extra field and its samples stand behind it
    const std::size_t samples = header + 30 + entry.size() + std::size_t(bytes[header + 28]);
    bytes[samples + 4] = static_cast<char>(bytes[samples + 4] ^ 0x10);
    write_file(file, bytes);
}

class DamagedContainerTest : public ContainerTest {
protected:
    DamagedContainerTest()
    {
        const SPMDataStream images[] = {heights("aa", {8, 8}), heights("bb", {8, 8}), heights("cc", {8, 8}, 1, 5)};
        document.AddNewImages(images, 3);
        document.setString("k", "of c", 2);
        save("a.spm");
    }
    std::filesystem::path file() const { return folder / "a.spm"; }
    void damage(std::initializer_list<const char*> entries)
    {
        const auto time = std::filesystem::last_write_time(file());
        for (const char* entry : entries) damage_samples(file(), entry);
        std::filesystem::last_write_time(file(), time); // a disk that loses bits says nothing of it
    }
};

TEST_F(DamagedContainerTest, GivesTheWholeImagesAndNamesTheOthers)
{
    damage({"bb.raw"});
    CStorageDoc read;
    ASSERT_TRUE(read.OnOpenDocument(path("a.spm").c_str()));
    ASSERT_EQ(read.getImagesNumber(), 2u);
    EXPECT_STREQ(read.getImage(0).get_name(), "aa");
    EXPECT_STREQ(read.getImage(1).get_name(), "cc");
    EXPECT_EQ(read.getDataPoint2S(1, 1, 0, 0), 6);
    EXPECT_STREQ(read.getString("k", 1), "of c");
    ASSERT_EQ(read.getReadWarnings().size(), 1u);
    EXPECT_NE(read.getReadWarnings()[0].find("left out: the samples of stream \"bb\""), std::string::npos);
    EXPECT_EQ(read.getString("\\Reader note", unsigned(-1)), read.getReadWarnings()[0]) << "in a saved copy, too";
    ASSERT_EQ(host.outputLines.size(), 1u);
    EXPECT_TRUE(host.outputLines[0].starts_with("a.spm: ")) << host.outputLines[0];
    EXPECT_FALSE(read.isChanged());
    damage({"aa.raw", "cc.raw"});
    EXPECT_NE(refusal("a.spm").find("\"aa\" cannot be unpacked"), std::string::npos) << "none is whole";
}

TEST_F(DamagedContainerTest, WithoutAnEntryIsReadAsFarAsItGoes)
{
    std::string bytes = file_content(file());
    for (std::size_t at = bytes.find("aa.raw"); at != std::string::npos; at = bytes.find("aa.raw", at))
        bytes.replace(at, 2, "xx");
    write_file(file(), bytes);
    CStorageDoc read;
    ASSERT_TRUE(read.OnOpenDocument(path("a.spm").c_str()));
    ASSERT_EQ(read.getImagesNumber(), 2u);
    EXPECT_STREQ(read.getImage(0).get_name(), "bb");
    EXPECT_NE(read.getReadWarnings().at(0).find("\"aa\" are missing"), std::string::npos);
}

TEST_F(DamagedContainerTest, IsNotReplacedUnasked)
{
    CStorageDoc read;
    ASSERT_TRUE(read.OnOpenDocument(path("a.spm").c_str()));
    read.SetPathName(path("a.spm").c_str(), false);
    damage({"bb.raw"});
    const std::string before = file_content(file());
    ASSERT_TRUE(read.Revert()) << "the file that it knew as its own";
    EXPECT_TRUE(read.isOfDamagedFile());
    EXPECT_EQ(read.storedFile(), nullptr);
    read.setString("k", "new", 0);
    read.OnCmdMsg(commands::deleteFile, nullptr);
    EXPECT_NE(last().find("It is not deleted"), std::string::npos);
    EXPECT_EQ(file_content(file()), before);
    host.answers = {2};
    EXPECT_FALSE(read.Save()) << "given up";
    ASSERT_EQ(host.questions.size(), 1u);
    EXPECT_NE(host.questions[0].text.find("\"a.spm\" is damaged"), std::string::npos) << host.questions[0].text;
    ASSERT_TRUE(read.Save()) << "the first answer keeps both";
    EXPECT_EQ(read.GetPathName(), path("a (2).spm"));
    EXPECT_EQ(file_content(file()), before);
    EXPECT_FALSE(read.isOfDamagedFile());
    EXPECT_EQ(host.questions.size(), 2u);
    ASSERT_TRUE(read.Save());
    EXPECT_EQ(host.questions.size(), 2u) << "its own by now";
    EXPECT_EQ(document::file_to_delete(read.ownFiles(), path("a.spm")), path("a (2).spm"));
}

struct lying_archive {
    const char* name;
    std::string streams;
    std::vector<std::pair<std::string, std::string>> entries;
    const char* reason;
};

TEST_F(ContainerTest, WhatLiesIsRefused)
{
    const auto dims = [](std::initializer_list<const char*> lengths) {
        std::string text;
        for (const char* length : lengths)
            text += std::string("\t\t<dimension length=\"") + length + "\">\n\t\t</dimension>\n";
        return text;
    };
    const std::string data = "\t\t<data content=\"int16\" ref=\"a\"/>\n";
    const auto axis = [](const char* attributes) { return "\t\t<axis " + std::string(attributes) + "/>\n"; };
    const lying_archive cases[] = {
        {"overflow", stream_of("", dims({"65536", "65536", "65536", "65536"}) + data), {{"a.raw", "ab"}}, "2^32"},
        {"too large", stream_of("", dims({"20000", "20000"}) + data), {{"a.raw", "ab"}}, "more than the file holds"},
        {"a length of 33 bits", stream_of("", dims({"4294967306"}) + data), {{"a.raw", "ab"}}, "length"},
        {"a length of 0", stream_of("", dims({"4", "0"}) + data), {{"a.raw", "ab"}}, "length of a dimension is 0"},
        {"a scale of 0", stream_of("", axis("scale=\"0\"") + data), {{"a.raw", "ab"}}, "scale of an axis is 0"},
        {"a scale in words", stream_of("", axis("scale=\"two\"") + data), {{"a.raw", "ab"}}, "the scale \"two\""},
        {"an infinite scale", stream_of("", axis("scale=\"inf\"") + data), {{"a.raw", "ab"}}, "the scale \"inf\""},
        {"no number as another system writes it",
         stream_of("", axis("scale=\"1.#QNAN\"") + data),
         {{"a.raw", "ab"}},
         "the scale \"1.#QNAN\""},
        {"a start that is no number",
         stream_of("", "\t\t<dimension length=\"1\">\n" + axis("start=\"nan\"") + "\t\t</dimension>\n" + data),
         {{"a.raw", "ab"}},
         "the start \"nan\""},
        {"a negative length", stream_of("", dims({"-5"}) + data), {{"a.raw", "ab"}}, "length"},
        {"a size in words", stream_of(" blocksize=\"two\"", data), {{"a.raw", "ab"}}, "blocksize"},
        {"an unknown type", stream_of("", "\t\t<data content=\"float16\" ref=\"a\"/>\n"), {{"a.raw", "ab"}}, "float16"},
        {"no samples", stream_of("", data), {}, "missing"},
        {"a folder", stream_of("", data), {{"a.raw", "ab"}, {"../../etc/evil", "x"}}, "folder"},
        {"equal ids", stream_of("", data) + stream_of("", data), {{"a.raw", "ab"}}, "two streams"},
        {"no XML", "\t<stream", {}, "main.xml"},
        {"nested",
         stream_of("", "\t\t<dimension length=\"2\">\n<x>\n" + stream_of("", "\t\t<axis/>\n") + "</x></dimension>\n" +
                           data),
         {{"a.raw", "ab"}},
         "inside"},
    };
    for (const lying_archive& each : cases) {
        {
            archive_writer archive(folder / "lie.spm");
            archive.add("main.xml", description_of(each.streams));
            for (const auto& [name, content] : each.entries) archive.add(name, content);
        }
        EXPECT_NE(refusal("lie.spm").find(each.reason), std::string::npos) << each.name << ": " << refusal("lie.spm");
    }
}

/// Overwrites 32 bits in the central directory, behind the signature of the entry with this name.
std::string with_directory_field(std::string archive, const std::string& entry, std::size_t field, std::uint32_t value)
{
    const std::size_t record = archive.rfind(entry) - 46;
    for (int i = 0; i < 4; ++i) archive[record + field + std::size_t(i)] = static_cast<char>(value >> 8 * i);
    return archive;
}

std::string repeated(const std::string& text, int count)
{
    std::string out;
    for (int i = 0; i < count; ++i) out += text;
    return out;
}

struct greedy_archive {
    const char* name;
    std::string entities, streams;
    const char* reason;
};

TEST_F(ContainerTest, CountsBeyondAllMeasureAreRefusedByName)
{
    const std::string data = "\t\t<data content=\"int16\" ref=\"a\"/>\n";
    const std::string entity = "\t<!ENTITY a SYSTEM \"./a.raw\" NDATA spmRaw>\n";
    const std::string share = "\t\t<dimension length=\"400000\">\n\t\t</dimension>\n" + data;
    std::string sharing;
    for (int i = 0; i < 400; ++i) sharing += "\t<stream id=\"" + std::to_string(i) + "\">\n" + share + "\t</stream>\n";
    const greedy_archive cases[] = {
        {"dimensions", entity, stream_of("", repeated("\t\t<dimension length=\"1\">\n\t\t</dimension>\n", 33) + data),
         "32 dimensions"},
        {"axes", entity, stream_of("", repeated("\t\t<axis/>\n", 257) + data), "256 axes"},
        {"texts", entity, repeated("\t<var id=\"k\"/>\n", 1'000'001) + stream_of("", data), "1000000 texts"},
        {"entities", repeated("\t<!ENTITY b SYSTEM \"b\">\n", 65'536), stream_of("", data), "65535 entities"},
        {"streams of one entry", entity, sharing, "more than the file holds"},
    };
    for (const greedy_archive& each : cases) {
        archive_writer(folder / "greedy.spm")
            .add("main.xml", description_of(each.streams, each.entities))
            .add("a.raw", "ab");
        EXPECT_NE(refusal("greedy.spm").find(each.reason), std::string::npos)
            << each.name << ": " << refusal("greedy.spm");
    }
}

TEST_F(ContainerTest, ManyEntitiesTakeNoLongerThanTheyAreMany)
{
    // Each of another layout than the writer's: to look for the end of its id through all of the rest takes minutes.
    archive_writer(folder / "a.spm")
        .add("main.xml", description_of(stream_of("", "\t\t<data content=\"int16\" ref=\"a\"/>\n"),
                                        repeated("\t<!ENTITY b SYSTEM \"b.raw\" NDATA spmRaw>\n", 60'000) +
                                            "\t<!ENTITY a SYSTEM \"./a.raw\" NDATA spmRaw>\n"))
        .add("a.raw", "ab");
    EXPECT_EQ(refusal("a.spm"), "");
}

TEST_F(ContainerTest, SizesThatNoDeflateStreamHoldsAreRefused)
{
    const SPMDataStream image = heights("a", {8});
    document.AddNewImages(&image, 1);
    save("a.spm");
    write_file(folder / "bomb.spm", with_directory_field(file_content(folder / "a.spm"), "a.raw", 24, 0x7fffffff));
    EXPECT_NE(refusal("bomb.spm").find("claims more bytes"), std::string::npos) << refusal("bomb.spm");
}

TEST_F(ContainerTest, EqualEntryNamesAreRefused)
{
    SPMDataStream streams[] = {heights("aa", {8}), heights("bb", {8})};
    document.AddNewImages(streams, 2);
    save("a.spm");
    std::string content = file_content(folder / "a.spm");
    for (std::size_t at = content.find("bb.raw"); at != std::string::npos; at = content.find("bb.raw", at))
        content.replace(at, 2, "aa");
    write_file(folder / "twice.spm", content);
    EXPECT_NE(refusal("twice.spm").find("twice"), std::string::npos) << refusal("twice.spm");
}

TEST_F(ContainerTest, ManyNamesTakeNoLongerThanTheyAreMany)
{
    std::string names;
    for (int i = 0; i < 200'000; ++i) names += "\t\t<subimage>x</subimage>\n"; // quadratic: hours
    archive_writer(folder / "a.spm")
        .add("main.xml", description_of(stream_of("", names + "\t\t<data content=\"int16\" ref=\"a\"/>\n")))
        .add("a.raw", "ab");
    CStorageDoc read;
    ASSERT_TRUE(read.OnOpenDocument(path("a.spm").c_str()));
    EXPECT_EQ(read.getImage(0).get_subimage_names(nullptr, 0), 200'000u);
}

} // namespace
