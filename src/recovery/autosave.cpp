#include "recovery/autosave.h"

#include "document/StorageDoc.h"
#include "platform/Exceptions.h"
#include "platform/paths.h"
#include "recovery/closed_documents.h"

#include <algorithm>
#include <utility>

namespace recovery {

namespace {

namespace fs = std::filesystem;

std::optional<std::span<const std::byte>> samples_in(const std::vector<std::pair<std::uint64_t, SPMDataStream>>& images,
                                                     std::uint64_t state)
{
    const auto found = std::ranges::find(images, state, &std::pair<std::uint64_t, SPMDataStream>::first);
    if (found == images.end()) return std::nullopt;
    return std::span(static_cast<const std::byte*>(found->second.array_data()), found->second.data_size());
}

} // namespace

autosave::autosave(const fs::path& root) : session(root / "sessions"), closed(root / "closed")
{
    std::error_code error;
    fs::create_directories(closed, error);
    if (error) throw CFileException(error.value(), platform::to_wide(closed));
}

autosave::~autosave() { finish(); }

document_copy autosave::newCopy()
{
    const std::string name = session.name() + "-" + std::to_string(++copies);
    return document_copy(session.path() / name, name + "-", writer);
}

autosave::tracked& autosave::entryOf(const CStorageDoc& document)
{
    const auto found = std::ranges::find(entries, &document, &tracked::document);
    tracked& entry = found == entries.end() ? entries.emplace_back() : *found;
    entry.document = &document;
    if (!entry.copy) entry.copy = std::make_unique<document_copy>(newCopy());
    return entry;
}

void autosave::replaceFailed(tracked& entry)
{
    if (entry.former.empty()) entry.former = entry.copy->path();
    entry.copy = std::make_unique<document_copy>(newCopy());
}

std::size_t autosave::feed(tracked& entry, std::size_t budget)
{
    const std::size_t used = entry.copy->feed(
        [&entry](std::uint64_t state) {
            return entry.document ? entry.document->samplesIn(state) : samples_in(entry.held, state);
        },
        budget);
    if (!entry.copy->isBusy() && !entry.former.empty())
        writer.give([old = std::exchange(entry.former, {}), now = entry.copy->path()] {
            std::error_code error;
            if (read_manifest(now)) fs::remove_all(old, error);
        });
    return used;
}

void autosave::step(const std::vector<CStorageDoc*>& open)
{
    if (hasLeft) return;
    std::erase_if(entries, [&](const tracked& entry) {
        if (!entry.document) return false;
        const auto found = std::ranges::find(open, entry.document);
        const bool isOver = found == open.end() || !(*found)->isChanged();
        if (isOver) letGo(entry, found != open.end() && (*found)->getImagesNumber() == 0);
        return isOver;
    });
    std::size_t budget = writer.waitingBytes() < waitingBytes ? stepBytes : 0;
    for (const CStorageDoc* document : open) {
        if (!document->isChanged()) continue;
        tracked& entry = entryOf(*document);
        if (entry.copy->hasFailed() && !entry.copy->holds(document->contentState())) replaceFailed(entry);
        if (entry.copy->isBusy()) budget -= std::min(budget, feed(entry, budget));
        if (entry.copy->isBusy() || entry.copy->holds(document->contentState())) continue;
        entry.copy->begin(take_snapshot(*document));
        budget -= std::min(budget, feed(entry, budget));
    }
    for (tracked& entry : entries)
        if (!entry.document) budget -= std::min(budget, feed(entry, budget));
    settleClosed();
}

bool autosave::isUpToDate() const
{
    return std::ranges::all_of(entries, [](const tracked& entry) {
        return entry.copy->hasFailed() || (entry.document && entry.copy->holds(entry.document->contentState()));
    });
}

void autosave::documentCloses(CStorageDoc& document)
{
    if (hasLeft) return;
    const auto found = std::ranges::find(entries, &document, &tracked::document);
    if (!document.isChanged()) {
        if (found == entries.end()) return;
        letGo(*found, document.getImagesNumber() == 0);
        entries.erase(found);
        return;
    }
    tracked& entry = entryOf(document);
    entry.wanted = document.contentState();
    if (entry.copy->hasFailed()) replaceFailed(entry);
    if (!entry.copy->holds(entry.wanted)) {
        entry.copy->begin(take_snapshot(document));
        entry.held = document.releaseImages();
    }
    entry.document = nullptr;
    settleClosed();
}

void autosave::settleClosed()
{
    std::erase_if(entries, [this](const tracked& entry) {
        if (entry.document) return false;
        const bool isOver = entry.copy->holds(entry.wanted) || !entry.copy->isBusy();
        if (isOver) moveToClosed(entry);
        return isOver;
    });
}

void autosave::letGo(const tracked& entry, bool isEmptied)
{
    if (isEmptied)
        moveToClosed(entry);
    else
        discard(entry);
}

void autosave::moveToClosed(const tracked& entry)
{
    writer.give([from = entry.copy->path(), to = closed] {
        std::error_code error;
        if (!read_manifest(from)) { // nothing came of it
            fs::remove_all(from, error);
            return;
        }
        fs::rename(from, to / from.filename());
        prune_closed(to);
    });
}

void autosave::discard(const tracked& entry)
{
    writer.give([folder = entry.copy->path()] {
        std::error_code error; // what cannot be removed is offered again, which loses nothing
        fs::remove_all(folder, error);
    });
}

fs::path autosave::takeCopy(const fs::path& folder)
{
    const fs::path taken = session.path() / folder.filename();
    std::error_code error;
    fs::rename(folder, taken, error);
    return error ? fs::path() : taken;
}

void autosave::adopt(CStorageDoc& document, const fs::path& folder, std::map<std::uint64_t, std::string> files)
{
    const std::string names = session.name() + "-" + std::to_string(++copies) + "-";
    tracked& entry = entries.emplace_back();
    entry.document = &document;
    entry.copy = std::make_unique<document_copy>(folder, names, writer, document.contentState(), std::move(files));
}

void autosave::feedAll()
{
    for (tracked& entry : entries)
        while (entry.copy->isBusy()) {
            writer.waitUntilBelow(waitingBytes);
            feed(entry, stepBytes);
        }
}

void autosave::finish()
{
    feedAll();
    settleClosed();
    writer.wait();
}

void autosave::leave(const std::vector<CStorageDoc*>& open)
{
    // The first time completes what was begun for earlier states.
    for (int pass = 0; pass < 2; ++pass) {
        step(open);
        feedAll();
    }
    finish();
    entries.clear();
    hasLeft = true;
}

} // namespace recovery
