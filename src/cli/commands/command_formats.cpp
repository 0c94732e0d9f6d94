// vldv formats: what opens, and what is known of each kind of file.
#include "base/text.h"
#include "cli/commands.h"
#include "cli/output/aligned.h"
#include "cli/session.h"
#include "formats/shared/format_notes.h"

#include <CLI/CLI.hpp>
#include <iostream>

namespace vldv::cli {

namespace {

using formats::format_note;
using formats::format_row;

/// "*.tif, *.tiff"
std::string patterns_of(const format_row& row)
{
    std::string text;
    for (const std::string_view pattern : base::split(row.patterns, ';')) {
        if (!text.empty()) text += ", ";
        text += pattern;
    }
    return text;
}

void print_list()
{
    std::vector<std::vector<std::string>> rows = {{"format", "in dialogs", "names"}};
    for (const format_row& row : formats::format_table())
        rows.push_back({formats::note_of(row.type).title, row.name, patterns_of(row)});
    std::cout << aligned(rows);
}

constexpr const char* pageHead = R"(# Files that open

Content decides what a file is; its name only breaks ties, so that a file with a wrong extension opens as what it is. A
file that cannot be read is refused with the field and the reason. `vldv info` tells what of others is missing or in
doubt: parts that are named but not there, rows without numbers, counts that take fewer samples than the file holds,
units that are not known. Written by `vldv formats --markdown`; a test holds it against the formats that are built in.

| format | in dialogs | names | told by |
|---|---|---|---|
)";

void print_page()
{
    std::cout << pageHead;
    for (const format_row& row : formats::format_table()) {
        const format_note& note = formats::note_of(row.type);
        std::cout << "| " << note.title << " | " << row.name << " | `" << patterns_of(row) << "` | " << note.told
                  << " |\n";
    }
    for (const format_row& row : formats::format_table()) {
        const format_note& note = formats::note_of(row.type);
        std::cout << "\n## " << note.title << "\n\nRead: " << note.reads << ".\n";
        if (*note.leaves) std::cout << "\nNot read: " << note.leaves << ".\n";
    }
}

} // namespace

void add_formats(CLI::App& app, int& status)
{
    CLI::App* command = app.add_subcommand("formats", "List the formats that open");
    auto asPage = std::make_shared<bool>(false);
    command->add_flag("--markdown", *asPage, "Print a page of what is known of each");
    command->callback([asPage, &status] {
        *asPage ? print_page() : print_list();
        status = allDone;
    });
}

} // namespace vldv::cli
