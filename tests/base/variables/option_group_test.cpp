#include "base/variables/option_group.h"

#include <gtest/gtest.h>
#include <vector>

namespace {

TEST(OptionGroup, EveryRowReadsByItself)
{
    const struct {
        const char *declaration, *label;
    } rows[] = {
        {"CompactLegend(Compact View),boolean", "Compact View"},
        {"CompactLegend.scale_mark(Scale mark),boolean", "Compact View: Scale mark"},
        {"CompactLegend.scale_mark.direction(Direction),enum,Vertical,Horizontal",
         "Compact View, Scale mark: Direction"},
        {"FullLegend.scale_mark(Scale mark),boolean", "Full legend: Scale mark"},
        {"section.line.solid.width(Width),int,1", "Section line solid: Width"},
        {"section.line.color(Color),int", "Section line: Color"},
        {"grid.line.style(Line style),enum,Solid,Dot", "Grid: Line style"},
        {"tics.x.number(X tics number),int,0", "X tics number"},
        {"text(Text Color),int", "Text Color"},
        {"text.compact_length(Compact text length),int,0", "Compact text length"},
        {"background(Background Color),int", "Background Color"},
    };
    std::vector<SPMVar> variables;
    for (const auto& row : rows) variables.emplace_back().Init(row.declaration);
    SPMVarList list;
    list.set_variables(variables.data(), static_cast<unsigned>(variables.size()));
    for (unsigned i = 0; i < std::size(rows); ++i)
        EXPECT_EQ(base::grouped_label(list, list.get_var(i)), rows[i].label) << rows[i].declaration;
}

TEST(OptionGroup, AGroupOfAllRowsTellsNothing)
{
    std::vector<SPMVar> variables;
    for (const char* const each : {"search.gap(Gap),int", "search.hidden,int", "search.row.first(First),int"})
        variables.emplace_back().Init(each);
    variables.emplace_back().Init("unlabelled,int");
    SPMVarList list;
    list.set_variables(variables.data(), static_cast<unsigned>(variables.size()));
    EXPECT_EQ(base::grouped_label(list, list.get_var(0u)), "Gap");
    EXPECT_EQ(base::grouped_label(list, list.get_var(2u)), "Row: First");
}

} // namespace
