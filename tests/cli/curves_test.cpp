// `vldv profile`, `curve` and `force` of documents whose curves are known.
#include "document/fixtures.h"
#include "program_fixture.h"

#include <cmath>
#include <fstream>

namespace {

using json = nlohmann::json;

/// A curve of 4 samples in two sub-images, a surface of 5 x 4, a volume of 60 x 3 x 2 contacts.
std::vector<SPMDataStream> known()
{
    SPMDataStream volume = heights("Force", {60, 3, 2});
    volume.set_description("Force");
    auto* samples = static_cast<short*>(volume.array_data());
    for (int curve = 0; curve < 6; ++curve)
        for (int i = 0; i < 60; ++i) *samples++ = static_cast<short>(i < 25 ? (10 + curve) * (20 - i) : 0);
    return {heights("Curve", {4}, 2), heights("Topo", {5, 4}), volume};
}

class CurvesProgram : public ProgramTest {
protected:
    void SetUp() override { write("known.spm", known()); }
};

TEST_F(CurvesProgram, ProfilePrintsWhatASectionExports)
{
    EXPECT_EQ(vldv({"profile", "known.spm", "--image", "0", "--sub", "1"}).out,
              "Dependency\nSubimage 2\nX,nm\tY,nm\n0\t-0.96\n0.25\t-0.95\n0.5\t-0.94\n0.75\t-0.93\n");
    EXPECT_EQ(vldv({"profile", "known.spm", "--points", "1,0;1,1"}).out,
              "\tX\tY\nPoint 1\t1\t0\nPoint 2\t1\t1\nCross-Section\nSubimage 1\nX,nm\tY,nm\n0.5\t-0.99\n0.75\t-0.94\n");
    EXPECT_EQ(vldv({"profile", "known.spm", "none.spm"}).status, 1);
}

TEST_F(CurvesProgram, ProfileTellsMachinesTheRawSamples)
{
    const json curve = filesOf({"profile", "known.spm", "none.spm"}, 1);
    ASSERT_EQ(curve.size(), 2u);
    EXPECT_TRUE(curve[1].contains("error"));
    expect_fields(curve[0], {{"length", 4},
                             {"segments", json::array({4})},
                             {"x", json::parse(R"({"start":0.0,"scale":0.25,"units":"nm"})")}});
    EXPECT_EQ(curve[0]["y"]["scale"], 0.01);
    EXPECT_EQ(curve[0]["curves"], json::parse(R"([{"subimage":0,"raw":[0,1,2,3]},{"subimage":1,"raw":[4,5,6,7]}])"));

    const json line = filesOf({"profile", "known.spm", "--points", "0,0;4,0;4,3;"});
    EXPECT_EQ(line[0]["segments"], json::array({5, 4}));
    EXPECT_EQ(line[0]["curves"][0]["raw"], json::array({0, 1, 2, 3, 4, 9, 14, 19}));
    // Three rows around row 1: 5 below, 5 above.
    EXPECT_EQ(filesOf({"profile", "known.spm", "--points", "0,1;2,1", "--width", "1"})[0]["curves"][0]["raw"],
              json::array({5, 6, 7}));
    const json deep = filesOf({"profile", "known.spm", "--points", "0,2,1;3,2,1"});
    EXPECT_EQ(deep[0]["image"], 2);
    EXPECT_EQ(deep[0]["curves"][0]["raw"], json::array({300, 285, 270, 255}));
}

TEST_F(CurvesProgram, CurvesRefuseWhatTheyCannotDo)
{
    for (const char* points : {";", "1,a;2,3", "1,2;3", "1,2,3,4;1,2,3,4", "1,2;;3,4", "1,99999999999;2,3"})
        EXPECT_EQ(vldv({"profile", "known.spm", "--points", points}).status, 2) << points;
    EXPECT_EQ(vldv({"curve", "known.spm", "--op", "fold"}).status, 2);
    EXPECT_EQ(vldv({"curve", "known.spm"}).status, 2);
    EXPECT_EQ(vldv({"force", "known.spm", "--window", "-1"}).status, 2);
    const std::pair<std::vector<std::string>, const char*> failures[] = {
        {{"profile", "known.spm", "--image", "1"}, "image 1 has 2 dimensions"},
        {{"profile", "known.spm", "--image", "9"}, "there is no image 9"},
        {{"profile", "known.spm", "--sub", "2"}, "sub-image 2"},
        {{"profile", "known.spm", "--points", "1,1"}, "two points"},
        {{"force", "known.spm", "--image", "1"}, "no curves"},
        {{"force", "known.spm", "--image", "0", "--map", "out.spm"}, "no volume"},
        {{"force", "known.spm", "--map", "known.spm"}, "is an input"},
    };
    for (const auto& [arguments, reason] : failures) {
        tells(arguments, reason);
        tells(arguments, "known.spm");
    }
    EXPECT_FALSE(std::filesystem::exists(folder / "out.spm"));
}

TEST_F(CurvesProgram, CurveCalculates)
{
    const auto first = [&](const char* operation) -> json {
        return filesOf({"curve", "known.spm", "--op", operation})[0]["curves"][0];
    };
    const auto expect = [&](const char* operation, const char* units, const std::vector<double>& expected) {
        const json found = first(operation);
        EXPECT_EQ(found["units"], units) << operation;
        ASSERT_EQ(found["values"].size(), expected.size());
        for (std::size_t i = 0; i < expected.size(); ++i)
            EXPECT_NEAR(found["values"][i].get<double>(), expected[i], 1e-6) << operation << i;
    };
    expect("differentiate", "nm", {0.02, 0.02, 0.02, 0.02}); // -1, -0.99, -0.98, -0.97
    expect("structure", "nm^2", {0.0, 1e-4, 4e-4, 9e-4});
    expect("structure-cyclic", "nm^2", {0.0, 3e-4, 4e-4, 3e-4});
    const double whole = 1.0 + 0.99 * 0.99 + 0.98 * 0.98 + 0.97 * 0.97;
    expect("autocorrelation", "",
           {1.0, 4.0 / 3.0 * (0.99 + 0.99 * 0.98 + 0.98 * 0.97) / whole, 2.0 * (0.98 + 0.99 * 0.97) / whole,
            4.0 * 0.97 / whole});
    expect("autocorrelation-cyclic", "",
           {1.0, (0.99 + 0.99 * 0.98 + 0.98 * 0.97 + 0.5 * 0.97) / whole, (0.98 + 0.99 * 0.97) * 1.5 / whole,
            (0.97 + 0.5 * (0.99 + 0.99 * 0.98 + 0.98 * 0.97)) / whole});
    const json trend = first("trend");
    for (const auto& [name, value] : {std::pair{"a", -1.0}, {"b", 0.01}, {"r2", 1.0}, {"sd", 0.0}})
        EXPECT_NEAR(trend[name].get<double>(), value, 1e-12) << name;
    const json spectrum = filesOf(
        {"curve", "known.spm", "--op", "spectrum", "--mode", "magnitude", "--points", "0,0;4,0;4,3"})[0]["curves"][0];
    EXPECT_EQ(spectrum["spectrum"].size(), 5u);
    EXPECT_EQ(spectrum["phase"].size(), 5u);
    EXPECT_GT(spectrum["max"].get<double>(), 0.0);
    EXPECT_THAT(vldv({"curve", "known.spm", "--op", "trend"}).out,
                HasSubstr("Subimage\tA,nm\tB,nm\tR^2\tSD,nm\n1\t-1\t0.01\t1"));
}

TEST_F(CurvesProgram, PaddingIsNoData)
{
    writeDocument("ragged.spm", [](CStorageDoc& document) { // the second holds 2, the third was not measured
        const SPMDataStream curves = heights("Curve", {4}, 3);
        document.AddNewImages(&curves, 1);
        document.setString("\\Curve lengths", "4 2 0", 0);
    });
    const std::string table = vldv({"profile", "ragged.spm"}).out;
    EXPECT_THAT(table, HasSubstr("Subimage 2\nX,nm\tY,nm\n0\t-0.96\n0.25\t-0.95\nSubimage 3\nX,nm\tY,nm\n"));
    EXPECT_EQ(filesOf({"profile", "ragged.spm"})[0]["curves"][1]["raw"], json::array({4, 5}));
    EXPECT_EQ(vldv({"dump", "ragged.spm", "--sub", "0"}).out, "0\t1\t2\t3\n");
    EXPECT_EQ(vldv({"dump", "ragged.spm", "--sub", "1"}).out, "4\t5\n");
    EXPECT_EQ(vldv({"dump", "ragged.spm", "--sub", "2"}).out, "\n");
    const json spectra = filesOf({"curve", "ragged.spm", "--op", "spectrum"})[0]["curves"];
    EXPECT_EQ(spectra[1]["spectrum"].size(), 2u); // of two samples: 2 / 2 + 1 bins
    EXPECT_EQ(spectra[2]["measured"], false);
    const std::string trends = vldv({"curve", "ragged.spm", "--op", "trend"}).out;
    EXPECT_THAT(trends, HasSubstr("\n2\t-0.96\t0.01\t1\t"));
    EXPECT_THAT(trends, HasSubstr("\n3\tnot measured\n"));
    const json steps = filesOf({"curve", "ragged.spm", "--op", "differentiate"})[0]["curves"];
    EXPECT_EQ(steps[1]["values"].size(), 2u);
    EXPECT_EQ(steps[2], json::parse(R"({"subimage":2,"measured":false})"));
    EXPECT_EQ(filesOf({"profile", "ragged.spm"})[0]["curves"][2],
              json::parse(R"({"subimage":2,"raw":[],"measured":false})"));
    const json counted = filesOf({"histogram", "ragged.spm"})[0]["images"];
    EXPECT_EQ(counted[0]["total"], 4);
    expect_fields(counted[1], {{"total", 2}, {"max", -0.95e-9}}); // in m
    EXPECT_EQ(counted[2]["measured"], false);
    const std::string details = vldv({"info", "--details", "ragged.spm"}).out;
    EXPECT_THAT(details, HasSubstr("sub-image 1: -0.96 to -0.95 nm (raw 4 to 5)"));
    EXPECT_THAT(details, HasSubstr("sub-image 2: not measured"));
}

TEST_F(CurvesProgram, ForceSaysWhatWasNotMeasured)
{
    std::string table = "Z (nm)\tForce (nN)\n"; // contact to 37.5 nm, a dip behind it, the free end is missing
    for (int i = 0; i < 200; ++i)
        table += std::to_string(0.5 * i) + '\t' +
                 (i < 90 ? std::to_string(i < 75 ? 60 - 0.8 * i : i - 90.0) : std::string("nan")) + '\n';
    std::ofstream(folder / "tail.txt") << table;
    const json curve = filesOf({"force", "tail.txt"})[0]["curves"][0];
    expect_fields(curve, {{"voids", 110}, {"fmin", nullptr}});
    const std::string text = vldv({"force", "tail.txt"}).out;
    EXPECT_THAT(text, HasSubstr("\n  not measured: 110 samples of 1 of 1 curves\n"));
}

TEST_F(CurvesProgram, LinesAcrossCurvesTellGaps)
{
    writeDocument("volume.spm", [](CStorageDoc& document) {
        const SPMDataStream volume = heights("Volume", {4, 2, 1});
        document.AddNewImages(&volume, 1);
        document.setString("\\Curve lengths", "4 2", 0);
    });
    EXPECT_EQ(filesOf({"profile", "volume.spm", "--points", "3,1,0;0,1,0"})[0]["curves"][0]["raw"],
              json::array({nullptr, nullptr, 5, 4}));
    EXPECT_EQ(vldv({"curve", "volume.spm", "--op", "trend", "--points", "3,0,0;3,1,0"}).out,
              "Subimage\tA,nm\tB,nm\tR^2\tSD,nm\n1\t-0.97\t0\t1\t0\n\tnot measured, left out: 1\n");
}

TEST_F(CurvesProgram, ForceTellsEveryFigureOfEachCurve)
{
    const json images = filesOf({"force", "known.spm", "--image", "2", "--window", "5"});
    const json& curves = images[0]["curves"];
    ASSERT_EQ(curves.size(), 6u);
    const json& last = curves[5];
    expect_fields(last, {{"x", 2}, {"y", 1}});
    // 15 raw steps of 0.01 nm a sample, which are 0.25 nm apart.
    EXPECT_NEAR(last["slant_b"].get<double>(), -0.15, 1e-6);
    EXPECT_NEAR(last["dfdz"].get<double>(), (last["slant_b"].get<double>() - last["zero_b"].get<double>()) / 0.25,
                1e-9);
    EXPECT_NEAR(last["angle"].get<double>(), std::atan(std::fabs(last["dfdz"].get<double>())) * 180.0 / std::acos(-1.0),
                1e-9);
    EXPECT_EQ(last["min_index"], 24);
    for (const char* name : {"slant_a", "slant_rms", "slant_first", "slant_last", "zero_a", "zero_b", "zero_rms",
                             "zero_first", "zero_last", "local_minima", "valley_count", "valleys", "areas", "fmin"})
        EXPECT_TRUE(last.contains(name)) << name;
    EXPECT_EQ(last["areas"].size(), last["valley_count"].get<std::size_t>());
    const json rising = filesOf({"force", "known.spm", "--image", "0"})[0]["curves"][0]; // nothing falls
    expect_fields(rising, {{"dfdz", nullptr}, {"angle", nullptr}});
    EXPECT_THAT(vldv({"force", "known.spm", "--image", "0"}).out, HasSubstr("1\tcan't evaluate\t\t"));
}

/// Image 0: a deflection in N over time, measured against a sensor in m that falls by 2e-9 a sample, an approach with
/// contact, a pause and a constant. Image 1: the sensor. Image 2: a volume of 3 curves that measure it so, the last one
/// constant.
std::vector<SPMDataStream> sensed()
{
    constexpr int n = 100;
    const auto named = [](SPMDataStream stream, const char* label, const VLAxis& values) {
        stream.set_description(label);
        stream.values.set_axis(0, values);
        stream.get_dimension(0).set_axis(0, VLAxis(0.0, 0.01, "s"));
        return stream;
    };
    const auto fill = [](SPMDataStream& stream, const auto& value) {
        auto* const samples = static_cast<short*>(stream.array_data());
        for (unsigned i = 0; i < stream.array_length(); ++i)
            samples[i] = static_cast<short>(value(int(i) / n, int(i) % n));
    };
    SPMDataStream force = named(heights("f", {n}, 3), "vDeflection", VLAxis(0.0, 1e-12, "N"));
    SPMDataStream sensor = named(heights("s", {n}, 3), "measuredHeight", VLAxis(0.0, 1e-9, "m"));
    SPMDataStream volume = named(heights("v", {n, 3, 1}), "vDeflection", VLAxis(0.0, 1e-12, "N"));
    SPMDataStream heights3 = named(heights("h", {n, 3, 1}), "measuredHeight", VLAxis(0.0, 1e-9, "m"));
    const auto contact = [](int curve, int i) { return curve == 2 ? 7 : i < 30 ? (curve + 1) * 40 * (30 - i) : 0; };
    fill(force, contact);
    fill(volume, contact);
    fill(sensor, [](int, int i) { return -2 * i; });
    fill(heights3, [](int, int i) { return -2 * i; });
    force.set_parameter_stream("s");
    volume.set_parameter_stream("h");
    const char* names[] = {"Approach", "Pause", "Retract"};
    force.set_subimage_names(names, 3);
    return {force, sensor, volume, heights3};
}

TEST_F(CurvesProgram, ForceIsMeasuredAgainstItsSensor)
{
    write("sensed.spm", sensed());
    const json images = filesOf({"force", "sensed.spm"});
    ASSERT_EQ(images.size(), 2u); // neither sensor
    EXPECT_EQ(images[0]["x"], json::parse(R"({"parameter":"measuredHeight","units":"m"})"));
    const json& curves = images[0]["curves"];
    ASSERT_EQ(curves.size(), 2u); // not the pause
    // 40e-12 N a sample of -2e-9 m: the force falls where the sensor falls.
    EXPECT_NEAR(curves[0]["slope"].get<double>(), 0.02, 0.001);
    expect_fields(curves[0], {{"slope_units", "N/m"}, {"dfdz", curves[0]["slope"]}});
    EXPECT_TRUE(curves[0]["fmin"].is_number());
    EXPECT_TRUE(curves[1]["slope"].is_null()); // constant
    EXPECT_TRUE(curves[1]["fmin"].is_null());
    const program_result text = vldv({"force", "sensed.spm", "--image", "0"});
    EXPECT_EQ(text.out.substr(0, text.out.find('\n')),
              "Curve\tdF/dZ, N/m\tAng., deg\tLMS eq. A\t+B*X\tRMS, N\tFmin, N");
    EXPECT_EQ(filesOf({"force", "sensed.spm", "--image", "0", "--sub", "1"})[0]["curves"].size(), 1u);
    // The sensor itself lies over the time.
    const json sensor = filesOf({"force", "sensed.spm", "--image", "1"})[0]["curves"][0];
    expect_fields(sensor, {{"slope_units", "m/s"}, {"dfdz", nullptr}});
    EXPECT_THAT(vldv({"force", "sensed.spm", "--image", "1"}).out, HasSubstr("\tdF/dt, m/s\t"));

    const json written = filesOf({"force", "sensed.spm", "--map", "maps.spm"}).back();
    expect_fields(written, {{"maps", json::array({"Rigidity1", "Adhesion1"})}, {"voids", json::array({1, 1})}});
    const json map = info({"maps.spm", "--strings"})["files"][0]["images"][4];
    EXPECT_EQ(map["label"], "Rigidity1");
    EXPECT_EQ(map["values"][0]["units"], "N/m");
    EXPECT_EQ(map["strings"]["\\Void points"], "1");
    std::istringstream row(vldv({"dump", "maps.spm", "--image", "4", "--physical"}).out);
    double first = 0.0, second = 0.0, third = 0.0;
    row >> first >> second >> third;
    EXPECT_NEAR(first, 0.02, 0.001);
    EXPECT_NEAR(second, 0.04, 0.002);
    EXPECT_EQ(third, std::min(first, second)); // not measured
    EXPECT_THAT(vldv({"force", "sensed.spm", "--map", "more.spm"}).out, HasSubstr("Rigidity1: 1 point not measured"));
}

TEST_F(CurvesProgram, ForceWritesTheMapsOfAVolume)
{
    const json written = filesOf({"force", "known.spm", "--map", "out.spm"});
    EXPECT_EQ(written.back()["maps"], json::array({"Rigidity1", "Adhesion1"}));
    const json images = info({"out.spm"})["files"][0]["images"];
    ASSERT_EQ(images.size(), 5u);
    EXPECT_EQ(images[2]["id"], "Force");
    expect_fields(images[3], {{"label", "Rigidity1"}, {"id", "img3"}});
    EXPECT_EQ(images[4]["label"], "Adhesion1");
    for (const unsigned map : {3u, 4u})
        for (const unsigned side : {0u, 1u})
            EXPECT_EQ(images[map]["dimensions"][side], images[2]["dimensions"][side + 1]);
    // Rigidity in thousandths: -0.01 (10 + curve) nm over 0.25 nm, X running first.
    std::istringstream rows(vldv({"dump", "out.spm", "--image", "3"}).out);
    const json curves = filesOf({"force", "known.spm", "--image", "2"})[0]["curves"];
    for (int curve = 0; curve < 6; ++curve) {
        int raw = 0;
        rows >> raw;
        EXPECT_NEAR(raw, -40 * (10 + curve), 25) << curve;
        EXPECT_NEAR(raw, 1000.0 * curves[std::size_t(curve)]["dfdz"].get<double>(), 0.5) << curve;
    }
    EXPECT_EQ(vldv({"force", "known.spm", "--map", "maps"}).status, 0);
    EXPECT_TRUE(std::filesystem::exists(folder / "maps" / "known.spm"));
    write("again.spm", known());
    EXPECT_EQ(vldv({"force", "known.spm", "again.spm", "--map", "both.spm"}).status, 0);
    for (const char* name : {"both-known.spm", "both-again.spm"}) EXPECT_TRUE(std::filesystem::exists(folder / name));
}

/// A sphere of 20 nm on a half space, forces in nN and lengths in nm: Hertz on top of a constant adhesion.
struct model_contact {
    double modulus, hamaker, spring = 1.0; // GPa, nN nm, N/m
    double adhesion() const { return hamaker * 20.0 / (6.0 * 0.165 * 0.165); }
    double pressed(double indentation) const
    {
        return 4.0 / 3.0 * modulus * std::sqrt(20.0) * std::pow(indentation, 1.5);
    }
    double stiffness(double load) const // of the contact alone
    {
        return 2.0 * modulus * std::sqrt(20.0) * std::cbrt(0.75 * (load + adhesion()) / (modulus * std::sqrt(20.0)));
    }
    /// Of the probe on the sample, with the cantilever at z.
    double force(double z) const
    {
        double shallow = 0.0, deep = 200.0; // z falls while the indentation grows
        for (int i = 0; i < 100; ++i) {
            const double middle = 0.5 * (shallow + deep);
            (0.165 - middle - (pressed(middle) - adhesion()) / spring > z ? shallow : deep) = middle;
        }
        return pressed(shallow) - adhesion();
    }
    /// Of the line through its forces at samples `first` to `last`, a nm.
    double slope(int first, int last, double start, double step) const
    {
        const double mean = 0.5 * (first + last);
        double squares = 0.0, products = 0.0;
        for (int i = first; i <= last; ++i) {
            squares += (i - mean) * (i - mean);
            products += (i - mean) * force(start + step * i);
        }
        return products / squares / step;
    }
};

TEST_F(CurvesProgram, TheBundledForceVolumeGivesWhatItWasMadeWith)
{
    examples();
    const json volume = filesOf({"force", "ex/force-volume.spm"}).at(0);
    const json read = info({"ex/force-volume.spm"})["files"][0];
    const json& z = read["images"][0]["dimensions"][0]["axes"][0];
    const double start = z["start"], step = z["scale"], noise = 0.05;
    std::istringstream heights(vldv({"dump", "ex/force-volume.spm", "--image", "1", "--physical"}).out);
    std::vector<double> height(256);
    for (double& each : height) heights >> each;
    const model_contact matrix{0.5, 0.08}, particle{5.0, 0.04};
    ASSERT_EQ(volume["curves"].size(), 512u);
    for (const json& curve : volume["curves"]) {
        const bool isRetract = curve["subimage"] == 1;
        const bool isParticle = height[curve["y"].get<std::size_t>() * 16 + curve["x"].get<std::size_t>()] > 0.0;
        const model_contact& contact = isParticle ? particle : matrix;
        ASSERT_TRUE(curve["slope"].is_number()) << curve;
        ASSERT_TRUE(curve["fmin"].is_number()) << curve;
        const int first = curve["slant_first"], last = curve["slant_last"];
        const double deviation = noise / (step * std::sqrt(std::pow(last - first + 1, 3) / 12.0));
        EXPECT_NEAR(curve["slope"].get<double>(), contact.slope(first, last, start, step), 6.0 * deviation) << curve;
        EXPECT_GT(last - first, 80) << "40 nm of contact";
        if (!isRetract) continue;
        // The last sample before the jump off lies within a step of it.
        EXPECT_LT(-curve["fmin"].get<double>(), contact.adhesion() + 5.0 * noise) << curve;
        EXPECT_GT(-curve["fmin"].get<double>(), contact.adhesion() - contact.spring * step - 5.0 * noise) << curve;
    }
    const std::string stated = read["strings"]["Contact stiffness"];
    EXPECT_NEAR(std::stod(stated), matrix.stiffness(25.0), 1e-6) << stated;
    EXPECT_NEAR(std::stod(stated.substr(stated.find("particles ") + 10)), particle.stiffness(25.0), 1e-6) << stated;
    EXPECT_EQ(read["strings"]["Spring constant"], "1 N/m");
}

TEST_F(ProgramTest, OptionsThatWouldDoNothingAreRefused)
{
    examples();
    const struct {
        std::vector<std::string> call;
        const char* reason;
    } cases[] = {{{"profile", "ex/section.spm", "--width", "2"}, "--width: needs --points of a surface"},
                 {{"profile", "ex/force-volume.spm", "--points", "0,0,0;1,1,1", "--width", "2"}, "--width: needs"},
                 {{"profile", "ex/section.spm", "--points", "1;5"}, "is no list of points"},
                 {{"curve", "ex/section.spm", "--op", "trend", "--points", "1;5"}, "is no list of points"},
                 {{"steps", "ex/grains.spm", "--force"}, "--force"},
                 {{"force", "ex/force-volume.spm", "--force"}, "--force"}};
    for (const auto& [call, reason] : cases) tells(call, reason, 2);
}

} // namespace
