// vldv examples: writes the bundled example documents.
#include "base/text.h"
#include "cli/commands.h"
#include "cli/session.h"
#include "cli/terminal.h"
#include "document/examples.h"
#include "document/formats/zip_reader.h"
#include "document/stream_source.h"
#include "platform/Archive.h"
#include "platform/paths.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <utility>

namespace cli {

namespace {

namespace fs = std::filesystem;

struct example_options {
    std::string folder;
    bool replaces = false;
};

/// What a document stores itself into.
class memory_archive : public CArchive {
public:
    memory_archive() : CArchive(L"memory", true) {}
    void Write(const void* data, std::size_t count) override
    {
        const auto* const first = static_cast<const std::byte*>(data);
        bytes.insert(bytes.end(), first, first + count);
    }
    std::vector<std::byte> bytes;
};

/// Whether two containers hold the same, whenever and however well each was packed.
bool hold_the_same(formats::source& a, formats::source& b)
{
    const auto first = formats::zip_reader::open(a), second = formats::zip_reader::open(b);
    return first && second && std::ranges::equal(first->all(), second->all(), [](const auto& x, const auto& y) {
               return x.first == y.first && x.second.bytes == y.second.bytes && x.second.checksum == y.second.checksum;
           });
}

/// Whether something else than the example lies where it would be written.
bool is_other(const fs::path& path, CStorageDoc& example)
{
    std::error_code ignored;
    if (!fs::exists(path, ignored)) return false;
    memory_archive made;
    example.Serialize(made);
    formats::memory_source expected(made.bytes);
    std::ifstream in(path, std::ios::binary);
    document::stream_source found(in, platform::to_wide(path));
    return !hold_the_same(found, expected);
}

void write(document::example each, const fs::path& path, bool replaces, session& call)
{
    CStorageDoc document;
    const std::string shown = path_line(path.native());
    if (!document.addRecording(each.content)) return call.report(platform::to_wide(path), document.getReadError());
    if (!replaces && is_other(path, document)) {
        std::cerr << shown << ": stays as it is, which is not the example; --force replaces it\n";
        return;
    }
    if (const std::string reason = call.save(document, platform::to_wide(path)); !reason.empty())
        return call.report(platform::to_wide(path), reason);
    std::cout << shown << ": " << each.title << '\n';
}

int run(const example_options& options)
{
    session call;
    const fs::path target = platform::to_path(platform::full_path(base::widen(options.folder)));
    std::error_code error;
    fs::create_directories(target, error);
    if (error) {
        call.report(platform::to_wide(target), error.message());
        return call.status();
    }
    for (document::example& each : document::make_examples()) {
        const fs::path path = target / each.fileName;
        write(std::move(each), path, options.replaces, call);
    }
    return call.status();
}

} // namespace

void add_examples(CLI::App& app, int& status)
{
    auto options = std::make_shared<example_options>();
    CLI::App* command = app.add_subcommand("examples", "Write the bundled example files");
    command->add_option("folder", options->folder, "Where to put them")->required();
    command->add_flag("--force", options->replaces, "Replace files of their names that hold something else");
    command->callback([options, &status] { status = run(*options); });
}

} // namespace cli
