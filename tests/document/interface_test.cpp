// The layouts and labels that are delivered can be used.
#include "document/ProcessParser.h"
#include "platform/dialogs/variable_layout.h"

#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>

namespace {

TEST(InterfaceFiles, CanAllBeRead)
{
    int layouts = 0, labels = 0;
    for (const auto& each : std::filesystem::recursive_directory_iterator(VLDV_INTERFACE)) {
        if (each.path().extension() != ".xml") continue;
        std::ifstream in(each.path(), std::ios::binary);
        if (each.path().stem().string().ends_with("ocParam")) {
            CProcessParser parser;
            EXPECT_TRUE(parser.load_xml(in)) << each.path();
            ++labels;
            if (each.path().stem() != "OpendocParam") continue;
            SPMVar filter;
            filter.Init("open.filter(Open),enum,0(All images),1(Curves),2(Surfaces),3(Volumes)");
            parser.applyLabels(filter);
            EXPECT_STRNE(filter.get_enum_label(0), "All images") << "the key is the number";
            continue;
        }
        std::string problem;
        const auto layout = platform::parse_variable_layout(in, &problem);
        ASSERT_TRUE(layout) << each.path() << ": " << problem;
        EXPECT_FALSE(layout->title.empty()) << each.path();
        for (const platform::layout_button& button : layout->buttons) {
            EXPECT_LE(layout->grid.bottom, button.place.top) << each.path() << ": a button over the grid";
            for (const platform::layout_button& other : layout->buttons)
                EXPECT_TRUE(&other == &button || other.place.left >= button.place.right ||
                            other.place.right <= button.place.left)
                    << each.path();
        }
        ++layouts;
    }
    EXPECT_GE(layouts, 4);
    EXPECT_EQ(labels, 4);
}

} // namespace
