#include "resources/menus.h"
#include "resources/strings.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <map>
#include <set>
#include <string>

namespace {

TEST(Strings, AreFoundByNumber)
{
    const std::vector<unsigned> ids = string_resource_ids();
    EXPECT_TRUE(std::ranges::is_sorted(ids, std::less_equal{})) << "each number once, ascending";
    for (const unsigned id : ids) EXPECT_NE(std::string(string_resource(id)), "") << id;
    EXPECT_STREQ(string_resource(1040), "File %s is empty.");
    EXPECT_STREQ(string_resource(10061), "Cutoff poits behind left and right edges of selection");
    EXPECT_STREQ(string_resource(0), "");
    EXPECT_STREQ(string_resource(99999), "");
}

TEST(Strings, DocumentStringsHaveSevenLines)
{
    for (const unsigned id : string_resource_ids())
        EXPECT_TRUE(id > 125 || std::ranges::count(std::string(string_resource(id)), '\n') == 6) << id;
}

TEST(Strings, TheOpenFilterNamesEveryPatternAmongAllKnownFormats)
{
    const std::string filter = string_resource(1025);
    std::vector<std::string> fields;
    for (std::size_t begin = 0; begin < filter.size();) {
        const std::size_t end = filter.find('|', begin);
        fields.push_back(filter.substr(begin, end - begin));
        begin = end + 1;
    }
    ASSERT_EQ(fields.size(), 2u * 26u + 1u) << "24 formats, all known and all files, and the closing bar";
    const auto split = [](const std::string& patterns) {
        std::set<std::string> out;
        for (std::size_t begin = 0; begin <= patterns.size();) {
            const std::size_t end = std::min(patterns.find(';', begin), patterns.size());
            out.insert(patterns.substr(begin, end - begin));
            begin = end + 1;
        }
        return out;
    };
    std::set<std::string> all;
    for (std::size_t i = 3; i + 3 < fields.size(); i += 2) all.merge(split(fields[i]));
    EXPECT_EQ(split(fields[1]), all);
    EXPECT_EQ(fields[50], "All files (*.*)");
}

TEST(Menus, AreWellFormed)
{
    for (const unsigned id : menu_resource_ids()) {
        const std::vector<menu_row> rows = menu_resource(id);
        ASSERT_FALSE(rows.empty()) << id;
        std::map<std::string, unsigned> shortcuts;
        unsigned deepest = 0; // that the next row may have
        for (const menu_row& row : rows) {
            EXPECT_LE(row.depth, deepest) << id << ' ' << row.text;
            deepest = row.depth + (row.kind == menu_kind::popup ? 1u : 0u);
            const bool hasText = row.kind == menu_kind::popup || row.kind == menu_kind::command;
            EXPECT_EQ(*row.text != '\0', hasText) << id << ' ' << row.id;
            EXPECT_EQ(row.id != 0, row.kind == menu_kind::command || row.kind == menu_kind::dynamic) << row.text;
            EXPECT_TRUE(row.kind != menu_kind::dynamic || row.id < row.lastId) << row.id;
            if (!*row.shortcut) continue;
            const auto [place, isNew] = shortcuts.emplace(row.shortcut, row.id);
            EXPECT_EQ(place->second, row.id) << id << ": two commands on " << row.shortcut;
        }
    }
    EXPECT_TRUE(menu_resource(99).empty());
}

TEST(Menus, EveryFrameHasOneAndToolbarsUseItsCommands)
{
    for (const unsigned id : string_resource_ids()) {
        if (id > 121) break;
        EXPECT_FALSE(menu_resource(id).empty()) << id;
    }
    const std::set<unsigned> elsewhere = {10012, 6012, 6013}; // the palette bar; modes of the surface
    for (const unsigned id : menu_resource_ids()) {
        const std::vector<menu_row> rows = menu_resource(id == mainMenu ? 102 : id);
        for (const unsigned command : toolbar_resource(id)) {
            if (command == 0 || elsewhere.contains(command)) continue;
            EXPECT_TRUE(std::ranges::any_of(rows, [&](const menu_row& row) { return row.id == command; }))
                << id << ' ' << command;
        }
    }
}

} // namespace
