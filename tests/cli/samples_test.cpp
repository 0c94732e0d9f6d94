// The program on the folder of real recordings.
#include "document/StorageDoc.h"
#include "platform/app/WinApp.h"
#include "program_fixture.h"
#include "support/HeadlessHost.h"

#include <cmath>
#include <filesystem>

namespace {

namespace fs = std::filesystem;

class SamplesTest : public ProgramTest {
protected:
    void SetUp() override
    {
        if (!fs::is_directory(VLDV_SAMPLES)) GTEST_SKIP() << "sample files are not here: " << VLDV_SAMPLES;
    }
    std::unique_ptr<CStorageDoc> open(const fs::path& path)
    {
        auto document = std::make_unique<CStorageDoc>();
        return document->OnOpenDocument(path.wstring().c_str()) ? std::move(document) : nullptr;
    }

    CHeadlessHost host;
    CWinApp app{host};
};

/// Six significant digits are kept.
void expect_same(const VLAxis& read, const VLAxis& original)
{
    EXPECT_NEAR(read.start, original.start, 5.01e-6 * std::fabs(original.start));
    EXPECT_NEAR(read.scale, original.scale, 5.01e-6 * std::fabs(original.scale));
    EXPECT_STREQ(read.get_units(), original.get_units());
}

void expect_same(const VLAxesContainer& read, const VLAxesContainer& original)
{
    ASSERT_EQ(read.get_axes_number(), original.get_axes_number());
    for (unsigned i = 0; i < read.get_axes_number(); ++i) expect_same(read.get_axis(i), original.get_axis(i));
}

std::string parameter_of(const SPMDataStream& stream)
{
    const char* const name = stream.get_parameter_stream();
    return name ? name : "";
}

void expect_same(const SPMDataStream& read, const SPMDataStream& original)
{
    EXPECT_STREQ(read.get_description(), original.get_description());
    EXPECT_STREQ(read.get_name(), original.get_name());
    EXPECT_EQ(parameter_of(read), parameter_of(original));
    ASSERT_EQ(read.array_type(), original.array_type());
    ASSERT_EQ(read.array_length(), original.array_length());
    EXPECT_EQ(std::memcmp(read.array_data(), original.array_data(), original.data_size()), 0) << "samples";
    ASSERT_EQ(read.get_dimensions_number(), original.get_dimensions_number());
    for (unsigned i = 0; i < read.get_dimensions_number(); ++i) {
        EXPECT_EQ(read.get_dimension(i).length, original.get_dimension(i).length);
        expect_same(read.get_dimension(i), original.get_dimension(i));
    }
    expect_same(read.values, original.values);
    ASSERT_EQ(read.subimage_names().size(), original.subimage_names().size());
    for (std::size_t i = 0; i < read.subimage_names().size(); ++i)
        EXPECT_STREQ(read.subimage_names()[i].c_str(), original.subimage_names()[i].c_str());
}

TEST_F(SamplesTest, EveryRecordingConvertsToAContainerThatReadsBackEqual)
{
    const program_result result = vldv({"convert", VLDV_SAMPLES, "--to", "out"});
    EXPECT_EQ(result.status, 1) << "some samples are there to be refused";
    std::size_t converted = 0, samples = 0;
    for (const fs::directory_entry& group : fs::directory_iterator(VLDV_SAMPLES)) {
        if (!group.is_directory()) continue;
        for (const fs::directory_entry& sample : fs::directory_iterator(group)) {
            if (sample.path().filename() == "MANIFEST.tsv") continue;
            ++samples;
            fs::path container = folder / "out" / group.path().filename() / sample.path().filename();
            container += ".spm";
            const std::string told = fs::canonical(sample).native() + ":";
            if (!fs::exists(container)) continue;
            SCOPED_TRACE(sample.path());
            EXPECT_EQ(result.err.find(told), std::string::npos) << "converted, and yet an error was told";
            const auto original = open(sample), read = open(container);
            ASSERT_TRUE(original && read);
            ++converted;
            EXPECT_EQ(read->fileType, FILE_SPMX);
            EXPECT_EQ(read->strings(unsigned(-1)), original->strings(unsigned(-1)));
            ASSERT_EQ(read->getImagesNumber(), original->getImagesNumber());
            for (unsigned i = 0; i < read->getImagesNumber(); ++i) {
                SCOPED_TRACE(i);
                EXPECT_EQ(read->strings(i), original->strings(i));
                expect_same(read->getImage(i), original->getImage(i));
            }
        }
    }
    // Ten are marked as rejects in the manifests, three waves hold nothing to show, and four data files open with the
    // parameter file beside them.
    EXPECT_EQ(converted + 17, samples) << result.err;
}

// Slopes and adhesions as an analysis gives them that was written apart from this program, from the same samples.
TEST_F(SamplesTest, ApproachAndRetractOfEveryInstrumentGiveSlopeAndAdhesion)
{
    struct figures {
        double slope, minimum;
    };
    const struct {
        const char *file, *units;
        figures approach, retract;
    } rows[] = {
        {"nanoscope/20200904_Egel4-Z1.0_00025.spm", "nN/nm", {0.00221801, -0.0154555}, {0.00407680, -0.974725}},
        {"nanoscope/BrukerReader_ForceCurve_Sapphire_TAP525.001", "nN/nm", {35.50832, -42.29383}, {41.64156, -107.109}},
        {"jpk/fmt-jpk-fd_spot3-0192.jpk-force", "N/m", {-0.0174286, -4.86741e-11}, {-0.0194851, -3.84872e-10}},
        {"jpk/fmt-jpk-fd_flipsign_2015.05.22-15.31.49.352.jpk-force",
         "N/m",
         {-0.00682993, -2.07195e-11},
         {-0.00816329, -7.10490e-10}},
        {"jpk/fmt-jpk-fd_qi-data-2021.04.13.jpk-qi-series", "N/m", {-4.87870, -3.36429e-9}, {-5.52440, -5.57989e-9}},
        {"ibw/fmt-igor-fd_SiN_FD_plot.ibw", "m/m", {0.451674, -2.33106e-9}, {0.465886, -1.07832e-8}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.file);
        const program_result result = vldv({"force", "--json", std::string(VLDV_SAMPLES) + "/" + row.file});
        ASSERT_EQ(result.status, 0) << result.err;
        const auto files = nlohmann::json::parse(result.out)["files"];
        ASSERT_EQ(files.size(), 1u); // the one channel of force or deflection
        const auto& curves = files[0]["curves"];
        ASSERT_EQ(curves.size(), 2u);
        for (const auto& [curve, expected] : {std::pair{curves[0], row.approach}, {curves[1], row.retract}}) {
            EXPECT_EQ(curve["slope_units"], row.units);
            EXPECT_NEAR(curve["slope"].get<double>(), expected.slope, 1e-4 * std::fabs(expected.slope));
            EXPECT_NEAR(curve["fmin"].get<double>(), expected.minimum, 1e-4 * std::fabs(expected.minimum));
        }
    }
}

TEST_F(SamplesTest, InfoIsATableOfWhatTheyHold)
{
    const std::string folderName = std::string(VLDV_SAMPLES) + "/nanoscope",
                      row = "BrukerReader_ForceCurve_Sapphire_TAP525.001";
    const program_result result = vldv({"info", folderName + "/" + row, std::string(VLDV_SAMPLES) + "/tmd"});
    ASSERT_EQ(result.status, 0) << result.err;
    // Sizes of the files; ranges of force and measured height as the manifest and its note tell them.
    for (const char* told : {"45056 bytes", "  512  ", "-0.2505 to 1.319 \u00B5N", "275.8 to 868.1 nm",
                             "Approach, Retract; over Height_Sensor", "360080 bytes"})
        EXPECT_THAT(result.out, HasSubstr(told));
}

} // namespace
