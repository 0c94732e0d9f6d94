#include "base/text.h"
#include "formats/instrument_fixture.h"
#include "formats/shared/format_notes.h"
#include "resources/strings.h"
#include "support/manifest.h"

#include <algorithm>
#include <filesystem>
#include <gtest/gtest.h>
#include <set>
#include <string>
#include <tuple>

namespace {

using instrument_fixture::type_of;

std::span<const std::byte> bytes_of(const std::string& text) { return std::as_bytes(std::span(text)); }

/// The local header of a stored zip entry.
std::string zip_entry(const std::string& name)
{
    std::string header("PK\3\4", 4);
    header.append(22, '\0');
    header += static_cast<char>(name.size());
    header.append(3, '\0');
    return header + name + "content";
}

TEST(Registry, PatternsMatchFileNames)
{
    const std::tuple<const char*, const char*, bool> rows[] = {
        {"*.0??", "scan.001", true},
        {"*.0??", "scan.0012", false},
        {"*.0??", "a.b.0zz", true},
        {"*.jpk*", "map.JPK-force", true},
        {"*.TO?", "a.top", true},
        {"*.to?", "a.to", false},
        {"*.to?", "a.to\u00E4", true},
        {"*", "", true},
        {"", "", true},
        {"", "a", false},
        {"a*b*c", "a1b2b3c", true},
        {"a*b*c", "a1b2b3", false},
        {"**a**", "bab", true},
        {"*aab", "aaaab", true},
    };
    for (const auto& [pattern, name, matches] : rows)
        EXPECT_EQ(formats::pattern_matches(pattern, name), matches) << pattern << " " << name;
}

TEST(Registry, TheLastEndingTellsRecordings)
{
    const std::pair<const char*, bool> rows[] = {
        {"scan.jpk", true},
        {"a.b.jpk-force-map", true},
        {"scan.001", true},
        {"SCAN.SPM", true},
        {"scan.jpk-force.png", false},
        {"map.jpk-qi-data-4-0.svg", false},
        {"scan.001.txt", false},
        {"._scan.spm", false},
        {"jpk-force", false},
        {"", false},
    };
    for (const auto& [name, isOwn] : rows) EXPECT_EQ(formats::has_own_ending(name), isOwn) << name;
}

TEST(Registry, TheContentDecidesWhateverTheNameSays)
{
    EXPECT_EQ(type_of("\\*File list\r\n\\Version: 0x05120000\r\n", "picture.bmp"), FILE_NANOSCOPE);
    EXPECT_EQ(type_of(zip_entry("main.xml"), "scan.001"), FILE_SPMX);
    EXPECT_NE(type_of(zip_entry("main.xml2"), "scan.spm"), FILE_SPMX);
    EXPECT_NE(type_of(zip_entry("header.properties"), "scan.spm"), FILE_SPMX);
    EXPECT_EQ(type_of("", "scan.001"), FILE_UNKNOWN);
}

/// The types to try in their order.
std::vector<int> to_try(const std::string& head, const char* name)
{
    std::vector<int> types;
    for (const formats::format_row* row : formats::formats_to_try(bytes_of(head), name)) types.push_back(row->type);
    return types;
}

TEST(Registry, WhatTheNameSuggestsIsTriedFirstAndTablesUnderAnyName)
{
    const std::string table = "1 2 3\n4 5 6\n", wave("\5\0 1", 4), tree("\0\0\0\0\4", 5);
    const std::tuple<std::string, const char*, std::vector<int>> rows[] = {
        {table, "m.txt", {FILE_TEXT}},
        {table, "", {FILE_TEXT}},
        {table, "m.par", {FILE_TEXT}}, // samples of that name have bytes that no text has
        {table, "m.tmd", {FILE_TMD, FILE_TEXT}},
        {table, "m.img", {FILE_IMG, FILE_TEXT}},
        {table, "m.aist", {FILE_TEXT}},
        {std::string("1 2\0 3", 6), "m.par", {FILE_SCALA}}, // no text
        {wave, "m.ibw", {FILE_IBW}},
        {wave, "m.csv", {}},
        {tree, "m", {FILE_AIST}},
        {tree, "m.tmd", {FILE_TMD, FILE_AIST}},
        {std::string("PK\3\4", 4), "m.bin", {FILE_JPK}},
        {"prose", "m.csv", {}},
        {"\\*File list\r\n\\Version: 0x05120000\r\n 1 2 3", "m.par", {FILE_NANOSCOPE}},
    };
    for (const auto& [head, name, types] : rows) {
        EXPECT_EQ(to_try(head, name), types) << name << ": " << head;
        const SupportedFileTypes likely = type_of(head, name);
        EXPECT_TRUE(likely == FILE_UNKNOWN || likely == types.at(0)) << name;
    }
}

TEST(Registry, NoSniffReadsBeyondAShortHead)
{
    for (const std::string& head : {zip_entry("main.xml"), std::string("\\*Force file list\r\nData_File_Type 7\r\n")})
        for (std::size_t length = 0; length <= head.size(); ++length) // a block of its own: the sanitizer sees its end
            type_of(std::string(head, 0, length), "a.001");
}

TEST(Registry, RowsAreWholeAndTypesUnique)
{
    std::set<int> types;
    for (const formats::format_row& row : formats::format_table()) {
        EXPECT_TRUE(types.insert(row.type).second) << row.name;
        EXPECT_TRUE(row.sniff || row.possible) << row.name;
        EXPECT_TRUE(row.read || row.type == FILE_SPMX) << row.name;
        EXPECT_EQ(formats::note_of(row.type).type, row.type) << row.name;
    }
}

/// Patterns of each filter of the open dialog, in its order.
std::vector<std::set<std::string>> dialog_filters()
{
    const auto fields = base::split(string_resource(1025), '|');
    std::vector<std::set<std::string>> filters;
    for (std::size_t i = 1; i < fields.size(); i += 2) {
        const auto patterns = base::split(fields[i], ';');
        filters.emplace_back(patterns.begin(), patterns.end());
    }
    return filters;
}

TEST(Registry, TheOpenDialogOffersAllThatOpens)
{
    const auto filters = dialog_filters();
    ASSERT_GE(filters.size(), formats::format_table().size());
    std::size_t at = 0;
    std::string_view shown;
    for (const formats::format_row& row : formats::format_table()) {
        if (shown != row.name) ++at; // behind all known formats, one for each name
        shown = row.name;
        for (const std::string_view pattern : base::split(row.patterns, ';')) {
            EXPECT_TRUE(filters[0].contains(std::string(pattern))) << row.name << ' ' << pattern;
            EXPECT_TRUE(filters[at].contains(std::string(pattern))) << row.name << ' ' << pattern;
        }
    }
    for (const char* table : {"*.csv", "*.asc", "*.xyz"})
        EXPECT_TRUE(filters[0].contains(table)) << "tables open under any name";
    std::error_code error; // every sample that opens is listed
    for (const auto& folder : std::filesystem::directory_iterator(test_support::sample_folder(""), error))
        for (const test_support::manifest_row& row : test_support::read_manifest(folder.path().filename())) {
            const auto matches = [file = row.text("file")](const std::string& pattern) {
                return formats::pattern_matches(pattern, file);
            };
            EXPECT_TRUE(row.text("kind") == "reject" || std::ranges::any_of(filters[0], matches)) << row.title();
        }
}

} // namespace
