#include "resources/menus.h"
#include "resources/strings.h"

#include <algorithm>
#include <cctype>
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

TEST(Strings, OfACommandSpeakInTwoPlaces)
{
    EXPECT_EQ(command_prompt_of(6009).status, "Select column");
    EXPECT_EQ(command_prompt_of(6009).tip, "Column selection");
    EXPECT_EQ(command_prompt_of(10147).status, "Build separation curve");
    EXPECT_EQ(command_prompt_of(10147).tip, "");
    EXPECT_EQ(command_prompt_of(1).status, "");
    EXPECT_NE(command_prompt_of(10026).status.find("trash"), std::string::npos) << "one key, and the file is gone";
}

TEST(Strings, EveryRowOfAMenuSaysWhatItDoes)
{
    for (const unsigned menu : menu_resource_ids())
        for (const menu_row& row : menu_resource(menu)) {
            const bool isOfModules = row.kind == menu_kind::dynamic && row.id == 9192; // they describe themselves
            if (row.id == 0 || isOfModules) continue;
            for (const unsigned id : {row.id, std::max(row.id, row.lastId)})
                EXPECT_FALSE(command_prompt_of(id).status.empty()) << menu << ": " << id << ' ' << row.text;
        }
    for (const unsigned menu : menu_resource_ids())
        for (const unsigned id : toolbar_resource(menu))
            EXPECT_TRUE(id == 0 || id == 10012 || !command_prompt_of(id).status.empty()) << id;
}

/// Of every row of a menu, the texts of the popups around it and its access key: "&File s".
std::vector<std::string> access_keys(unsigned menu)
{
    std::vector<std::string> path, keys;
    for (const menu_row& row : menu_resource(menu)) {
        const std::string text = row.text;
        path.resize(row.depth);
        std::string around;
        for (const std::string& popup : path) around += popup + ' ';
        const std::size_t mark = text.find('&');
        if (mark != std::string::npos) keys.push_back(around + static_cast<char>(std::tolower(text[mark + 1])));
        path.push_back(text);
    }
    return keys;
}

TEST(Menus, HaveAnAccessKeyOnceButWhereBothTextsAreFixed)
{
    const std::set<std::string> fixed = {"&File s",   "&File p",   "&View a",  "&Cursor i",
                                         "&Cursor d", "&Cursor l", "&Cursor c", "&Mathematics d"};
    for (const unsigned menu : menu_resource_ids()) {
        std::multiset<std::string> keys;
        for (const std::string& key : access_keys(menu)) keys.insert(key);
        for (const std::string& key : keys) EXPECT_TRUE(keys.count(key) == 1 || fixed.contains(key)) << menu << ": " << key;
    }
}

/// What stands behind the percent signs of a format: "lG", "hs", ...
std::string specifiers(const std::string& format)
{
    std::string out;
    for (std::size_t at = format.find('%'); at != std::string::npos; at = format.find('%', at)) {
        const std::size_t begin = format.find_first_not_of("0123456789.*", at + 1);
        const std::size_t end = format.find_first_of("dsfgG%", begin);
        out += format.substr(begin, end - begin + 1) + ' ';
        at = end + 1;
    }
    return out;
}

TEST(Strings, FormatsTakeTheArgumentsTheirUsersPass)
{
    struct format_row {
        unsigned id;
        const char* arguments;
    };
    const format_row expected[] = {
        {1001, "lG hs lG hs lG hs "},
        {1002, "lG hs lG hs lG hs "},
        {1003, "lG hs lG hs lG hs "},
        {1004, "lf lG hs "},
        {1005, "lf "},
        {1006, "lG hs "},
        {1007, "d lG hs "},
        {1008, ""},
        {1012, "d "},
        {1017, "lG hs "},
        {1019, "lG hs "},
        {1020, "lG hs "},
        {1024, "lf hs lf hs lf hs % lf "},
        {1038, "s "},
        {1040, "s "},
        {1049, "d s "},
        {1055, "s "},
        {1056, "s "},
        {1066, "lG hs "},
        {1067, "lG hs "},
        {1077, "hs "},
        {1080, "hs "},
        {4027, "s d "},
        {4033, "d "},
    };
    for (const auto& [id, arguments] : expected) EXPECT_EQ(specifiers(string_resource(id)), arguments) << id;
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
    ASSERT_EQ(fields.size(), 2u * 27u + 1u) << "25 formats, all known and all files, and the closing bar";
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
    EXPECT_EQ(fields[52], "All files (*.*)");
}

TEST(Menus, AreWellFormed)
{
    for (const unsigned id : menu_resource_ids()) {
        const std::vector<menu_row> rows = menu_resource(id);
        ASSERT_FALSE(rows.empty()) << id;
        std::map<std::string, unsigned> shortcuts;
        std::map<unsigned, std::string> texts;
        unsigned deepest = 0; // that the next row may have
        for (const menu_row& row : rows) {
            EXPECT_LE(row.depth, deepest) << id << ' ' << row.text;
            deepest = row.depth + (row.kind == menu_kind::popup ? 1u : 0u);
            const bool hasText = row.kind == menu_kind::popup || row.kind == menu_kind::command;
            EXPECT_EQ(*row.text != '\0', hasText) << id << ' ' << row.id;
            EXPECT_EQ(row.id != 0, row.kind == menu_kind::command || row.kind == menu_kind::dynamic) << row.text;
            EXPECT_TRUE(row.kind != menu_kind::dynamic || row.id < row.lastId) << row.id;
            if (row.kind == menu_kind::command) {
                const std::string& first = texts.emplace(row.id, row.text).first->second;
                EXPECT_EQ(first, row.text) << id << ": two texts for " << row.id;
            }
            if (!*row.shortcut) continue;
            const auto [place, isNew] = shortcuts.emplace(row.shortcut, row.id);
            EXPECT_EQ(place->second, row.id) << id << ": two commands on " << row.shortcut;
        }
    }
    EXPECT_TRUE(menu_resource(99).empty());
}

TEST(Menus, HoldTheCommandsOfTheirViews)
{
    struct known_row {
        unsigned menu, id;
        const char *text, *shortcut;
    };
    const known_row known[] = {
        {scalePopup, 12007, "Multicolor &1", ""},
        {scalePopup, 10156, "Per-line Autoscaling with Planefit", ""},
        {cursorModePopup, 6010, "&Lengthy Objects", ""},
        {101, 10122, "&Select X curve...", ""},
        {102, 10100, "Measure &Distance && Height", "Ctrl+D"},
        {102, 10191, "&Hilighted", ""},
        {102, 10143, "&Inverse Selection", "Ctrl+Shift+I"},
        {105, 10139, "&Stereo", "S"},
        {106, 10061, "Cutoff", ""},
        {109, 10098, "Increase", "Ctrl+Up"},
        {112, 10078, "Capture &multiple frames", ""},
        {113, 10104, "E&xclude filtered from histogram", ""},
        {118, 10120, "&Align on Slice", ""},
        {119, 10169, "Copy &data as text", ""},
    };
    for (const known_row& wanted : known) {
        const std::vector<menu_row> rows = menu_resource(wanted.menu);
        const auto row = std::ranges::find(rows, wanted.id, &menu_row::id);
        ASSERT_NE(row, rows.end()) << wanted.menu << ' ' << wanted.id;
        EXPECT_STREQ(row->text, wanted.text);
        EXPECT_STREQ(row->shortcut, wanted.shortcut);
    }
    for (const unsigned id : {101u, 102u, 118u, 119u}) {
        const std::vector<menu_row> rows = menu_resource(id);
        EXPECT_TRUE(std::ranges::any_of(rows, [](const menu_row& row) { return row.id == 9192 && row.lastId > 9192; }))
            << id << ": the first function of the first module is left out";
    }
}

TEST(Menus, OptionsChooseThePartsOfASurfacesContextMenu)
{
    EXPECT_TRUE(surface_context_menu(false, false, false).empty()) << "the preferences open in its place";
    const auto commands = [](const std::vector<menu_row>& rows) {
        std::set<unsigned> ids;
        for (const menu_row& row : rows) ids.insert(row.id);
        return ids;
    };
    const unsigned rectangle = 6001, save = 57603, preferences = 10118, filters = 10183;
    for (unsigned parts = 1; parts < 8; ++parts) {
        const std::vector<menu_row> rows = surface_context_menu(parts & 1u, parts & 2u, parts & 4u);
        const std::set<unsigned> ids = commands(rows);
        EXPECT_EQ(ids.contains(rectangle), (parts & 1u) != 0);
        EXPECT_EQ(ids.contains(save), (parts & 2u) != 0);
        EXPECT_EQ(ids.contains(filters), (parts & 4u) != 0);
        EXPECT_TRUE(ids.contains(preferences));
        EXPECT_EQ(rows.back().id, (parts & 4u) != 0 ? filters : preferences);
    }
}

TEST(Menus, EveryFrameHasOneAndToolbarsUseItsCommands)
{
    for (const unsigned id : string_resource_ids()) {
        if (id > 125) break;
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
