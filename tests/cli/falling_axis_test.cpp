// The same heights over a value axis that falls: what compares samples must say the same of them.
#include "document/fixtures.h"
#include "document/samples/rising_heights.h"
#include "program_fixture.h"

#include <algorithm>

namespace {

using FallingAxisTest = ProgramTest;

/// Two hills of different heights on a slope of 0.5 nm a step, with an edge along the rows.
SPMDataStream hills()
{
    constexpr int width = 40, height = 30;
    SPMDataStream stream = heights("Topo", {width, height});
    auto* const samples = static_cast<short*>(stream.array_data());
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x) {
            const int near = (x - 10) * (x - 10) + (y - 10) * (y - 10), far = (x - 28) * (x - 28) + (y - 18) * (y - 18);
            samples[y * width + x] = static_cast<short>(x / 4 + (near < 25 ? 900 - near : 0) +
                                                        (far < 49 ? 400 - far : 0) + (x > 35 ? 60 : 0));
        }
    stream.values.set_axis(0, VLAxis(3, 0.5, "nm"));
    return stream;
}

SPMDataStream falling(SPMDataStream stream)
{
    auto* const samples = static_cast<short*>(stream.array_data());
    document::turn_heights({samples, stream.array_length()}, samples);
    stream.values.set_axis(0, VLAxis(2.5, -0.5, "nm")); // 2.5 - 0.5 (-1 - raw) = 3 + 0.5 raw
    return stream;
}

TEST_F(FallingAxisTest, ChangesNoFigureAndNoColour)
{
    const std::vector<std::string> calls[] = {
        {"dump", "s.spm", "--physical"},
        {"stats", "s.spm"},
        {"stats", "s.spm", "--json"},
        {"histogram", "s.spm"},
        {"features", "s.spm"},
        {"features", "s.spm", "--level", "0.3", "--csv", "t.csv", "--mask", "m.png"},
        {"isoline", "s.spm", "--at", "10,6"},
        {"steps", "s.spm"},
        {"render", "s.spm", "-o", "a.png"},
        {"render", "s.spm", "-o", "f.png", "--fixed", "0,300,nm", "--absolute"},
        {"render", "s.spm", "-o", "l.png", "--legend", "full"},
    };
    const char* const files[] = {"t.csv", "m.png", "a.png", "f.png", "l.png"};
    const auto results = [&](const SPMDataStream& stream) {
        write("s.spm", {stream});
        std::vector<std::string> all;
        for (const auto& call : calls) {
            const program_result result = vldv(call);
            EXPECT_EQ(result.status, 0) << result.err;
            all.push_back(result.out);
        }
        for (const char* const file : files) {
            all.push_back(file_content(folder / file));
            std::filesystem::remove(folder / file);
        }
        return all;
    };
    const std::vector<std::string> rising = results(hills()), turned = results(falling(hills()));
    ASSERT_EQ(rising.size(), turned.size());
    for (std::size_t i = 0; i < rising.size(); ++i) {
        EXPECT_FALSE(rising[i].empty()) << i;
        EXPECT_EQ(turned[i], rising[i]) << (i < std::size(calls) ? calls[i][0] : files[i - std::size(calls)]);
    }
}

} // namespace
