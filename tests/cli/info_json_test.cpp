// `vldv info --json` and `vldv dump` of documents whose content is known number by number.
#include "document/fixtures.h"
#include "program_fixture.h"

namespace {

using json = nlohmann::json;
using ordered_json = nlohmann::ordered_json;

/// A surface of two sub-images (0 to 11) and a curve of doubles measured against it.
void fill_document(CStorageDoc& document)
{
    formats::recording content;
    formats::recorded_image surface{heights("Topo", {2, 3}, 2), {{"Tip", "no. \"7\" <new>\r\n"}}};
    const char* directions[] = {"Forward", "Reverse"};
    surface.stream.set_subimage_names(directions, 2);
    surface.stream.get_dimension(0).set_axis(1, VLAxis(10, 2, "ms"));
    formats::recorded_image curve;
    curve.stream.Init("Drift", "Slow drift", SPM_VAR_ARRAY, 2u, 8u);
    curve.stream.set_array_type(SPM_ARRAY_FLOAT64);
    SPMDataStream::dimension time;
    time.length = 2;
    time.set_axis(0, VLAxis(0, 1.5, "s"));
    curve.stream.set_dimension(0, time);
    curve.stream.values.set_axis(0, VLAxis(0, 1, "V"));
    curve.stream.set_parameter_stream("Topo");
    const char* depends[] = {"Topo", "Gain"};
    curve.stream.set_dependent_vars(depends, 2);
    auto* samples = static_cast<double*>(curve.stream.array_data());
    samples[0] = 0.1;
    samples[1] = -1e300;
    content.items.emplace_back(std::move(surface));
    content.items.emplace_back(std::move(curve));
    content.strings["Operator"] = "Zoë";
    ASSERT_TRUE(document.addRecording(content));
}

std::vector<std::string> keys(const ordered_json& object)
{
    std::vector<std::string> out;
    for (const auto& [key, value] : object.items()) out.push_back(key);
    return out;
}

TEST_F(ProgramTest, InfoTakesTheUnitOfNumbersAsItWritesThem)
{
    SPMDataStream wide = heights("Wide", {4, 5});
    for (unsigned side : {0u, 1u})
        wide.get_dimension(side).set_axis(0, VLAxis(0, 999.97 / wide.get_dimension(side).length, "nm"));
    wide.values.set_axis(0, VLAxis(0, 999.97 / 19, "mV")); // samples from 0 to 19
    write("wide.spm", {wide});
    const std::string text = vldv({"info", "wide.spm"}).out;
    EXPECT_THAT(text, HasSubstr("1 x 1 µm"));
    EXPECT_THAT(text, HasSubstr("0 to 1 V"));
}

TEST_F(ProgramTest, InfoTellsAllThatADocumentHolds)
{
    writeDocument("known.spm", fill_document);
    json expected = json::parse(R"({"files": [{
        "type": "Velmira", "title": "known", "strings": {"Operator": "Zoë"},
        "images": [{
            "id": "Topo", "label": "Height", "type": "int16", "length": 12,
            "dimensions": [
                {"length": 2, "axes": [{"start": 0.0, "scale": 0.25, "units": "nm"},
                                       {"start": 10.0, "scale": 2.0, "units": "ms"}]},
                {"length": 3, "axes": [{"start": 0.5, "scale": 0.25, "units": "nm"}]}],
            "values": [{"start": -1.0, "scale": 0.01, "units": "nm"}],
            "subimages": ["Forward", "Reverse"], "subimage_count": 2, "parameter": null, "depends": [],
            "strings": {"Tip": "no. \"7\" <new>\r\n"},
            "range": [{"min": 0, "max": 5}, {"min": 6, "max": 11}]
        }, {
            "id": "Drift", "label": "Slow drift", "type": "float64", "length": 2,
            "dimensions": [{"length": 2, "axes": [{"start": 0.0, "scale": 1.5, "units": "s"}]}],
            "values": [{"start": 0.0, "scale": 1.0, "units": "V"}],
            "subimages": [], "subimage_count": 1, "parameter": "Topo", "depends": ["Topo", "Gain"],
            "strings": {}, "range": null
        }],
        "warnings": ["\"Slow drift\": 1 sample was not measured: no number, or 1e30 and more"]}]})");
    expected["files"][0]["path"] = (std::filesystem::canonical(folder.path) / "known.spm").native();
    expected["files"][0]["size"] = std::filesystem::file_size(folder / "known.spm");
    EXPECT_EQ(info({"known.spm"}), expected) << json::diff(expected, info({"known.spm"})).dump(1);
}

TEST_F(ProgramTest, InfoOfEveryExampleIsComplete)
{
    examples();
    std::vector<std::string> arguments = {"info", "--json"};
    for (const auto& entry : std::filesystem::directory_iterator(folder / "ex"))
        arguments.push_back("ex/" + entry.path().filename().native());
    ASSERT_EQ(arguments.size(), 2u + 7u);
    const program_result result = vldv(arguments);
    ASSERT_EQ(result.status, 0) << result.err;
    EXPECT_EQ(result.err, "");
    const ordered_json all = ordered_json::parse(result.out);
    for (const ordered_json& file : all["files"]) {
        SCOPED_TRACE(file["path"].get<std::string>());
        EXPECT_THAT(keys(file), testing::ElementsAre("path", "type", "size", "title", "strings", "images"));
        for (const ordered_json& image : file["images"]) {
            EXPECT_THAT(keys(image),
                        testing::ElementsAre("id", "label", "type", "length", "dimensions", "values", "subimages",
                                             "subimage_count", "parameter", "depends", "strings", "range"));
            std::size_t samples = image["subimage_count"];
            for (const ordered_json& dimension : image["dimensions"]) {
                samples *= dimension["length"].get<std::size_t>();
                EXPECT_NE(dimension["axes"][0]["scale"], 0.0);
                EXPECT_NE(dimension["axes"][0]["units"], "");
            }
            EXPECT_EQ(image["length"], samples);
            EXPECT_EQ(image["range"].size(), image["subimage_count"]);
            for (const ordered_json& range : image["range"]) EXPECT_LT(range["min"], range["max"]);
        }
    }
}

TEST_F(ProgramTest, DumpPrintsTheChosenSubImage)
{
    writeDocument("known.spm", fill_document);
    EXPECT_EQ(vldv({"dump", "known.spm"}).out, "0\t1\n2\t3\n4\t5\n");
    EXPECT_EQ(vldv({"dump", "known.spm", "--sub", "1"}).out, "6\t7\n8\t9\n10\t11\n");
    // -1 + 0.01 n in double precision
    EXPECT_EQ(vldv({"dump", "known.spm", "--sub", "1", "--physical"}).out,
              "-0.93999999999999995\t-0.92999999999999994\n-0.92000000000000004\t-0.91000000000000003\n"
              "-0.90000000000000002\t-0.89000000000000001\n");
    EXPECT_EQ(vldv({"dump", "known.spm", "--image", "1"}).out, "0.1\t-1e+300\n");
    EXPECT_EQ(vldv({"dump", "known.spm", "--image", "1", "--physical"}).out,
              "0.10000000000000001\t-1.0000000000000001e+300\n");
    EXPECT_EQ(vldv({"dump", "known.spm", "--sub", "2"}).status, 1);
    EXPECT_EQ(vldv({"dump", "known.spm", "--image", "-1"}).status, 2);
    const program_result full = vldv({"dump", "known.spm"}, "/dev/full");
    EXPECT_EQ(full.status, 1) << "what could not be written is no success";
    EXPECT_NE(full.err, "");
}

TEST_F(ProgramTest, NativeFilesKeepTheirNameAndContent)
{
    writeDocument("known.spm", fill_document);
    std::filesystem::copy_file(folder / "known.spm", folder / "UPPER.SPM");
    std::filesystem::copy_file(folder / "known.spm", folder / "other.zip");
    ASSERT_EQ(vldv({"convert", "known.spm", "UPPER.SPM", "other.zip", "--to", "out"}).status, 0);
    const json before = info({"known.spm"})["files"][0];
    for (const char* name : {"out/known.spm", "out/UPPER.SPM", "out/other.zip.spm"}) {
        const json after = info({name})["files"][0];
        EXPECT_EQ(after["images"], before["images"]) << name;
        EXPECT_EQ(after["strings"], before["strings"]) << name;
    }
    EXPECT_EQ(vldv({"dump", "out/known.spm", "--image", "1"}).out, "0.1\t-1e+300\n");
}

} // namespace
