// Documents written to .spm files and read again.
#include "container_fixture.h"

#include <cstring>
#include <sstream>

namespace {

/// Texts that look like the format itself.
const std::vector<std::string> awkwardTexts = {"a < b & c > d \"quoted\" 'single'",
                                               "line 1\nline 2\r\nline 3\r",
                                               "]]>",
                                               "</var>",
                                               "</var></var>\n",
                                               "\t\ttabs\t",
                                               "&lt;&amp;&#10;",
                                               "<var id=\"x\">y</var>",
                                               "\x01\x02 control \x1f\x7f",
                                               "µm Å 中 \xF0\x9F\x94\xAC",
                                               "\xEF\xBF\xBE\xEF\xBF\xBF\xEF\xA3\xBF"
                                               "0041",
                                               "<!ENTITY e SYSTEM \"f\" NDATA spmRaw>",
                                               "-- <![CDATA[ ]]> ?>",
                                               " leading and trailing ",
                                               "\"/>",
                                               "%d %s %n",
                                               "\" name=\"x",
                                               "a</var>\r\n<var id=\"b"};

/// Ids and labels that look like attributes and elements.
const std::vector<std::string> awkwardNames = {
    "Deflection Error", "a\"b", "x\" name=\"y",     "<id>", "&amp;", "]>",          "e1", "id SYSTEM \".", "tab\there",
    "line\nbreak",      "é",    "\" NDATA spmRaw>", "a'b",  "..",    "back\\slash", "%41"};

void expect_equal(const CStorageDoc& read, const CStorageDoc& source)
{
    ASSERT_EQ(read.getImagesNumber(), source.getImagesNumber());
    EXPECT_EQ(read.strings(unsigned(-1)), source.strings(unsigned(-1)));
    for (unsigned i = 0; i < source.getImagesNumber(); ++i) {
        EXPECT_STREQ(read.getImage(i).description().c_str(), source.getImage(i).description().c_str());
        EXPECT_EQ(read.strings(i), source.strings(i));
        ASSERT_EQ(read.GetDataSize(i), source.GetDataSize(i));
        EXPECT_EQ(std::memcmp(read.getImageDataS(i, 0), source.getImageDataS(i, 0), source.GetDataSize(i)), 0);
    }
}

TEST_F(ContainerTest, TheDescriptionIsWrittenByteForByte)
{
    SPMDataStream image = heights("hgt", {2, 1}, 2);
    const char* names[] = {"Forward", "Reverse"};
    image.set_subimage_names(names, 2);
    const char* depends[] = {"defl"};
    image.set_dependent_vars(depends, 1);
    image.set_parameter_stream("z");
    image.offset = 9;
    image.values.set_axis(0, VLAxis(1234567.0, 1.0 / 3.0, "nm"));
    SPMDataStream untyped, text;
    untyped.Init("", nullptr, SPM_VAR_ARRAY, 1u, 4u);
    untyped.set_name("raw");
    text.Init("txt,string");
    const SPMDataStream streams[] = {image, untyped, text};
    document.AddNewImages(streams, 3);
    document.setString("b", "1 < 2", unsigned(-1));
    document.setString("a", "", unsigned(-1));
    document.setString("\\Date", "x", 0);
    std::ostringstream out;
    smart_string names2[2];
    EXPECT_EQ(document.generateXML(out, names2, 2, "UTF-8"), 2);
    EXPECT_STREQ(names2[0].c_str(), "hgt.raw");
    EXPECT_EQ(out.str(), "<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"no\" ?>\n"
                         "<!DOCTYPE spmx PUBLIC \"-//VLM//SPMx 1.0//EN\" "
                         "\"http://velmira.example/vlvarlist/SPMxFormat.dtd\" [\n"
                         "\t<!NOTATION spmRaw SYSTEM \"velmira.exe\">\n"
                         "\t<!ENTITY hgt SYSTEM \"./hgt.raw\" NDATA spmRaw>\n"
                         "\t<!ENTITY raw SYSTEM \"./raw.raw\" NDATA spmRaw>\n"
                         "\t<!ENTITY txt SYSTEM \"./txt.raw\" NDATA spmRaw>\n"
                         "]>\n"
                         "<spmx xmlns=\"http://velmira.example/vlvarlist/SPMxFormat.xsd\">\n"
                         "\t<var id=\"a\"/>\n"
                         "\t<var id=\"b\">1 < 2</var>\n"
                         "\t<stream id=\"hgt\" name=\"Height\" offset=\"9\" parameter=\"z\">\n"
                         "\t\t<var id=\"\\Date\">x</var>\n"
                         "\t\t<depends>defl</depends>\n"
                         "\t\t<subimage>Forward</subimage>\n"
                         "\t\t<subimage>Reverse</subimage>\n"
                         "\t\t<axis start=\"1.23457e+06\" scale=\"0.333333\" units=\"nm\"/>\n"
                         "\t\t<dimension length=\"2\">\n"
                         "\t\t\t<axis start=\"0\" scale=\"0.25\" units=\"nm\"/>\n"
                         "\t\t</dimension>\n"
                         "\t\t<dimension length=\"1\">\n"
                         "\t\t\t<axis start=\"0.5\" scale=\"0.25\" units=\"nm\"/>\n"
                         "\t\t</dimension>\n"
                         "\t\t<data content=\"int16\" ref=\"hgt\"/>\n"
                         "\t</stream>\n"
                         "\t<stream id=\"raw\" blocksize=\"4\">\n"
                         "\t\t<axis start=\"0\" scale=\"1\" units=\"\"/>\n"
                         "\t\t<data content=\"void\" ref=\"raw\"/>\n"
                         "\t</stream>\n"
                         "\t<stream id=\"txt\" blocksize=\"0\">\n"
                         "\t\t<axis start=\"0\" scale=\"1\" units=\"\"/>\n"
                         "\t\t<data content=\"void\" ref=\"txt\"/>\n"
                         "\t</stream>\n"
                         "</spmx>");
}

TEST_F(ContainerTest, ASecondReadGivesTheSameDocument)
{
    SPMDataStream image = heights("hgt", {3, 2}, 2), curve = heights("", {5}, 1, 100), doubles = heights("d", {2});
    const char* names[] = {"Forward", "Reverse \"fast\""};
    image.set_subimage_names(names, 2);
    image.values.set_axis(1, VLAxis(0.25, -3, "V"));
    curve.set_name("curve 1");
    curve.set_parameter_stream("hgt");
    const char* depends[] = {"hgt"};
    curve.set_dependent_vars(depends, 1);
    doubles.convert_stream(SPM_ARRAY_FLOAT64);
    const SPMDataStream streams[] = {image, curve, doubles};
    document.AddNewImages(streams, 3);
    for (std::size_t i = 0; i < awkwardTexts.size(); ++i) {
        document.setString(("key " + std::to_string(i)).c_str(), awkwardTexts[i].c_str(), i % 2 ? 0 : unsigned(-1));
        document.setString(("k<&>\n'" + std::to_string(i)).c_str(), awkwardTexts[i].c_str(), 1);
    }
    document.setString("empty", "", 2);
    save("a.spm");
    EXPECT_EQ(folder.files(), 1u) << "nothing is left beside the target";
    CStorageDoc read;
    ASSERT_TRUE(read.OnOpenDocument(path("a.spm").c_str()));
    EXPECT_FALSE(read.IsModified());
    EXPECT_EQ(read.fileType, FILE_SPMX);
    EXPECT_EQ(read.getFileSize(), std::filesystem::file_size(folder / "a.spm"));
    expect_equal(read, document);
}

TEST_F(ContainerTest, HostileIdsAndLabelsComeBack)
{
    for (std::size_t i = 0; i < awkwardNames.size(); ++i) {
        SPMDataStream image = heights("x", {2}, 1, static_cast<short>(10 * i));
        image.set_name(awkwardNames[i].c_str());
        image.set_description(awkwardTexts[i % awkwardTexts.size()].c_str());
        const char* names[] = {awkwardTexts[i % awkwardTexts.size()].c_str()};
        image.set_subimage_names(names, 1);
        image.values.set_axis(0, VLAxis(0, 1, awkwardNames[i].c_str()));
        document.AddNewImages(&image, 1);
    }
    save("a.spm");
    CStorageDoc read;
    ASSERT_TRUE(read.OnOpenDocument(path("a.spm").c_str()));
    expect_equal(read, document);
}

TEST_F(ContainerTest, AnEmptyDocumentIsAnEmptyFileAndSaysSoWhenOpened)
{
    save("e.spm");
    EXPECT_EQ(std::filesystem::file_size(folder / "e.spm"), 0u);
    CStorageDoc read;
    try {
        read.OnOpenDocument(path("e.spm").c_str());
        FAIL();
    } catch (const CArchiveException& refused) {
        EXPECT_EQ(refused.cause, CArchiveException::endOfFile);
        EXPECT_EQ(std::string(refused.what()), "File " + (folder / "e.spm").native() + " is empty.");
    }
}

TEST_F(ContainerTest, UnsuitableIdsAreRefusedBeforeTheTargetIsTouched)
{
    write_file(folder / "old.spm", "old content");
    for (const char* second : {"a", "b/c", "", "c\x01"}) {
        CStorageDoc bad;
        const SPMDataStream streams[] = {heights("a", {2}), heights(second, {2})};
        bad.AddNewImages(streams, 2);
        bad.getImage(1).set_name(second);
        EXPECT_FALSE(bad.DoSave(path("old.spm").c_str(), true));
        EXPECT_NE(last().find("id"), std::string::npos);
        EXPECT_EQ(file_content(folder / "old.spm"), "old content");
        EXPECT_EQ(folder.files(), 1u);
    }
}

TEST_F(ContainerTest, TheSaveDialogFollowsTitleAndPath)
{
    const SPMDataStream image = heights("a", {2});
    document.AddNewImages(&image, 1);
    document.SetTitle(L"night 3; second try");
    document.SetModifiedFlag();
    EXPECT_FALSE(document.DoSave(nullptr, true)) << "cancelled";
    ASSERT_EQ(host.savePrompts.size(), 1u);
    EXPECT_EQ(host.savePrompts[0].suggestedPath, (std::filesystem::current_path() / "night.spm").wstring());
    EXPECT_EQ(host.savePrompts[0].extension, "spm") << "for a name typed without one";
    EXPECT_EQ(host.savePrompts[0].filter, "Velmira files (*.spm)|*.spm|All Files (*.*)|*.*||");
    EXPECT_TRUE(document.IsModified());
    host.savePaths.push_back(path("chosen.spm"));
    EXPECT_TRUE(document.DoSave(L"", true));
    EXPECT_EQ(document.GetPathName(), path("chosen.spm"));
    EXPECT_FALSE(document.IsModified());
    EXPECT_EQ(app.recentFiles().size(), 1u);
    EXPECT_TRUE(document.DoSave(path("copy.spm").c_str(), false));
    EXPECT_EQ(document.GetPathName(), path("chosen.spm")) << "a copy leaves the path";
    EXPECT_EQ(host.waiting, 0);
}

TEST_F(ContainerTest, RevertReadsAgainAndTellsTheViews)
{
    struct counting_view : CView {
        std::vector<std::uint32_t> hints;
        void OnUpdate(CView*, std::uint32_t hint, const hint_object&) override { hints.push_back(hint); }
    } view;
    const SPMDataStream image = heights("a", {2});
    document.AddNewImages(&image, 1);
    ASSERT_TRUE(document.DoSave(path("a.spm").c_str(), true));
    document.getDataPoint1S(0, 0, 0) = 77;
    document.AddView(&view);
    EXPECT_TRUE(document.Revert());
    EXPECT_EQ(document.getDataPoint1S(0, 0, 0), 0);
    EXPECT_EQ(view.hints, (std::vector<std::uint32_t>{1, 258}));
    std::filesystem::rename(folder / "a.spm", folder / "b");
    document.SetPathName(path("b.SPM").c_str(), false);
    EXPECT_TRUE(document.Revert()) << "the source stands beside the name with .spm";
    std::filesystem::remove(folder / "b");
    EXPECT_FALSE(document.Revert());
    EXPECT_NE(last().find("b.SPM"), std::string::npos) << "not a file that never was: " << last();
    document.autoDelete = false;
}

TEST_F(ContainerTest, AMissingFileLeavesTheDocumentAsItWas)
{
    const SPMDataStream image = heights("a", {2});
    document.AddNewImages(&image, 1);
    EXPECT_FALSE(document.OnOpenDocument(path("missing.spm").c_str()));
    EXPECT_NE(last().find("missing.spm: No such file"), std::string::npos) << last();
    EXPECT_EQ(document.getImagesNumber(), 1u);
    EXPECT_FALSE(document.OnOpenDocument(folder.path.wstring().c_str()));
    EXPECT_NE(last().find("directory"), std::string::npos) << last();
}

TEST_F(ContainerTest, ADocumentThatWasNotReadIsNotSaved)
{
    write_file(folder / "bad.spm", "PK\3\4 and no more");
    EXPECT_THROW(document.OnOpenDocument(path("bad.spm").c_str()), CArchiveException);
    EXPECT_FALSE(document.DoSave(path("bad.spm").c_str(), true));
    EXPECT_EQ(file_content(folder / "bad.spm"), "PK\3\4 and no more");
}

TEST_F(ContainerTest, AllocationFailureInTheDescriptionIsARuntimeError)
{
    struct exhausted_buffer : std::streambuf {
        int_type overflow(int_type) override { throw std::bad_alloc(); }
    } buffer;
    std::ostream out(&buffer);
    out.exceptions(std::ios::badbit);
    try {
        document.generateXML(out, nullptr, 0, "UTF-8");
        FAIL();
    } catch (const std::runtime_error& failure) {
        EXPECT_TRUE(std::string(failure.what())
                        .ends_with("runtime error: Zero pointer exception in function: CStorageDoc::generateXML"));
    }
}

TEST_F(ContainerTest, FileNamesMayHoldAnyBytes)
{
    const SPMDataStream image = heights("a", {2});
    document.AddNewImages(&image, 1);
    const std::string name = "n\xff\xfe\xc3 µ";
    ASSERT_TRUE(document.DoSave(base::widen((folder / name).native()).c_str(), true));
    EXPECT_TRUE(std::filesystem::exists(folder / (name)));
    EXPECT_TRUE(document.Revert());
}

TEST_F(ContainerTest, KeysOfForeignFilesNeverEndTooSoon)
{
    formats::recording recording;
    formats::recorded_image image;
    image.stream = heights("hgt", {2, 1}, 2);
    image.strings["a \">b\"> \"c\""] = "v";
    recording.strings["\">"] = "w";
    recording.items.emplace_back(std::move(image));
    ASSERT_TRUE(document.addRecording(recording));
    EXPECT_EQ(document.strings(0).count("a '>b'> \"c\""), 1u);
    save("keys.spm");
    CStorageDoc read;
    ASSERT_TRUE(read.OnOpenDocument(path("keys.spm").c_str())) << last();
    expect_equal(read, document);
}

} // namespace
