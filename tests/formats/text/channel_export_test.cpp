#include "text_table_fixture.h"

#include <gmock/gmock.h>

// Headers of matrix exports of which a line is damaged: understood, or told.

namespace {

using namespace formats;
using namespace instrument_fixture;
using namespace text_table_fixture;

const std::string rows = "1\t2\t3\n4\t5\t6\n";

/// What is read, and all notes behind it, a line each.
std::string told_with_notes(const std::string& header)
{
    const auto result = read(header + rows);
    std::string text = told(result);
    if (result)
        for (const std::string& note : result->warnings) text += "\n" + note;
    return text;
}

TEST(ChannelExport, ADamagedLineCostsNoMoreThanItsField)
{
    const std::string name = "# Channel: T\n", width = "# Width: 9 um\n", height = "# Height: 4 um\n",
                      units = "# Value units: m\n";
    const std::string x = "3: 0 + 3 \u00B5m", y = "2: 0 + 2 \u00B5m", heights = ": 4 5 6 1 2 3",
                      all = "T [m] (" + x + "; " + y + ")" + heights;
    const std::string noMark = " lacks its comment mark";
    const std::pair<std::string, std::string> cases[] = {
        {name + width + height + units, all},
        {name + "Width: 9 um\n" + height + units, all + "\nthe header line \"Width: 9 um\"" + noMark},
        {"Channel: T\n" + width + height + units, all + "\nthe header line \"Channel: T\"" + noMark},
        {"Channel: T\nWidth: 9 um\nHeight: 4 um\nValue units: m\n", all + "\nthe header line \"Channel: T\"" + noMark},
        {name + width + height + "Value units: m\n", all + "\nthe header line \"Value units: m\"" + noMark},
        {name + width + height + "# Value un\n",
         "T (" + x + "; " + y + ")" + heights + "\nthe header line \"# Value un\" is damaged: the values have no unit"},
        {name + width + height, "T (" + x + "; " + y + ")" + heights + "\nthe header states no unit of the values"},
        {name + height + units, "T [m] (3; " + y + ")" + heights +
                                    "\nthe header states one size of two, \"Height\": points are counted along x"},
        {name + width + units, "T [m] (" + x + "; 2)" + heights +
                                   "\nthe header states one size of two, \"Width\": points are counted along y"},
        {"# Kanal: T\n# Breite: 9 um\n# Werteinheit: m\n",
         "T [m] (3; 2)" + heights +
             "\nthe header states one size of two, \"Breite\": points are counted along both sides"},
        {width + height + units,
         "Z [m] (" + x + "; " + y + ")" + heights + "\nthe header lacks the line of the channel's name"},
        {name + width + "# Width: 20 um\n" + height + units,
         "T [m] (3; " + y + ")" + heights +
             "\nthe header states \"Width\" twice, \"9 um\" and \"20 um\": neither is taken, and points are counted"},
        {name + width + height + "# Height: 8 um\n" + units,
         "T [m] (" + x + "; 2)" + heights +
             "\nthe header states \"Height\" twice, \"4 um\" and \"8 um\": neither is taken, and points are counted"},
        {name + width + width + height + units, all},
        {name + width + height + units + "garbage\n", all + "\nthe line \"garbage\" before the rows was passed over"},
        {name + width + height + units + "# a remark\n", all},
    };
    for (const auto& [header, line] : cases) EXPECT_EQ(told_with_notes(header), line) << header;
}

TEST(ChannelExport, OtherWritersUnitsAndCountsAreToldWhenTheyAreNone)
{
    const std::string wsxm = "WSxM file copyright UAM\nWSxM ASCII Matrix file\nX Amplitude: 9 um\nY Amplitude: 4 um\n";
    const std::string turned = " (3: 0 + 3 \u00B5m; 2: 0 + 2 \u00B5m): 3 2 1 6 5 4";
    const std::string spip = "# File Format = ASCII\n";
    const std::string data = "# Start of Data:\n", plain = ": 4 5 6 1 2 3";
    const std::pair<std::string, std::string> cases[] = {
        {wsxm + "Z Amplitude: 7x nm\n",
         "Z" + turned + "\nZ Amplitude, \"7x nm\", is no number with a unit: values have none"},
        {wsxm + "Z Amplitude: 7 qq\n", "Z [qq]" + turned + "\nZ Amplitude, \"qq\", is no known unit"},
        {spip + "# z-unit = qq\n" + data, "Z [qq] (3; 2)" + plain + "\nz-unit, \"qq\", is no known unit"},
        {spip + "# x-pixels = 0x3\n" + data,
         "Z (3; 2)" + plain + "\nx-pixels, \"0x3\", is no count: the lines of numbers decide"},
    };
    for (const auto& [header, line] : cases) EXPECT_EQ(told_with_notes(header), line) << header;
    expect_refused(read_text_table,
                   {{spip + "# x-length = 0x10\n" + data + rows, "no number: the stated width is \"0x10\""}});
}

} // namespace
