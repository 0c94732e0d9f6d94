#include "document/ProcessParser.h"

#include "support/interface_file.h"

#include <gtest/gtest.h>
#include <sstream>

namespace {

constexpr const char* labels = R"(<process><var id="open.filter" name="Zeige"><item filter="0" name="Alles"/>
<item filter="2" name="Fl&#228;chen"/><item name="ohne"/></var><item filter="x" name="frei"/><var id="a"/>
<var id="open.merged" name="Zusammen"/></process>)";

TEST(ProcessParser, ReplacesLabelsAndKeepsValues)
{
    const scoped_language language("labels-test-language");
    const interface_file plain("labels-test.xml", "<p><var id=\"open.filter\" name=\"Show\"/></p>");
    const interface_file translated("labels-test.xml", labels, true);
    CProcessParser parser;
    ASSERT_TRUE(parser.loadInterfaceFile("labels-test.xml"));
    EXPECT_FALSE(parser.loadInterfaceFile("labels-test-missing.xml"));
    SPMVar filter;
    filter.Init("open.filter(Filter),enum,0(All),1(Curves),2(Surfaces)");
    filter.set_enum_val(2);
    parser.applyLabels(filter);
    EXPECT_STREQ(filter.get_description(), "Zeige");
    EXPECT_STREQ(filter.get_enum_label(0), "Alles");
    EXPECT_STREQ(filter.get_enum_label(1), "Curves");
    EXPECT_STREQ(filter.get_enum_label(2), "Flächen");
    EXPECT_EQ(int(filter), 2);
    EXPECT_STREQ(filter.description().c_str(), "open.filter(Zeige),enum,0(Alles),1(Curves),2(Flächen)");
    SPMVar other;
    other.Init("other(Other),int");
    parser.applyLabels(other);
    EXPECT_STREQ(other.get_description(), "Other");
}

TEST(ProcessParser, ABrokenFileLeavesNoVariableOpenForTheNext)
{
    CProcessParser parser;
    std::istringstream broken("<p><var id=\"a\" name=\"A\">"), next("<p><item filter=\"x\" name=\"free\"/></p>");
    EXPECT_FALSE(parser.load_xml(broken));
    ASSERT_TRUE(parser.load_xml(next));
    EXPECT_EQ(parser.itemLabels.at("").at("x"), "free");
    EXPECT_EQ(parser.labels.at("a"), "A") << "what was read before the break stays";
}

} // namespace
