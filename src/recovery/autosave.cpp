#include "recovery/autosave.h"

#include "base/text.h"
#include "document/StorageDoc.h"
#include "platform/files/Exceptions.h"
#include "platform/files/paths.h"
#include "recovery/closed_documents.h"

#include <algorithm>
#include <utility>

namespace vldv::recovery {

namespace {

namespace fs = std::filesystem;

/// The reading that dropped the changes gave less than the document had.
bool lost_images(const CStorageDoc& document) { return document.getImagesNumber() == 0 || document.isOfDamagedFile(); }

std::optional<std::span<const std::byte>> samples_in(const std::vector<std::pair<std::uint64_t, SPMDataStream>>& images,
                                                     std::uint64_t state)
{
    const auto found = std::ranges::find(images, state, &std::pair<std::uint64_t, SPMDataStream>::first);
    if (found == images.end()) return std::nullopt;
    return std::span(static_cast<const std::byte*>(found->second.array_data()), found->second.data_size());
}

} // namespace

autosave::autosave(const fs::path& root_, autosave_pauses pauses_)
    : root(root_), session(root / "sessions"), closed(root / "closed"), pauses(pauses_)
{
    std::error_code error;
    fs::create_directories(closed, error);
    if (error) throw CFileException(error.value(), platform::to_wide(closed));
}

autosave::~autosave()
{
    try {
        finish();
        retryClosed(clock::time_point::max()); // the last time that there is something to write
        finish();
    } catch (const std::exception&) {
        // the next session offers what is complete
    }
}

document_copy autosave::newCopy()
{
    session.renew();
    const std::string name = session.name() + "-" + std::to_string(++copies);
    return document_copy(session.path() / name, name + "-", writer);
}

autosave::tracked& autosave::entryOf(const CStorageDoc& document)
{
    const auto found = std::ranges::find(entries, &document, &tracked::document);
    tracked& entry = found == entries.end() ? entries.emplace_back() : *found;
    entry.document = &document;
    entry.title = document.GetTitle();
    if (!entry.copy) entry.copy = std::make_unique<document_copy>(newCopy());
    return entry;
}

void autosave::replaceFailed(tracked& entry)
{
    const fs::path folder = entry.copy->path();
    failedTitles.insert(entry.title);
    // What was half written may be what the disk has no room for.
    writer.give([folder] { remove_unnamed(folder); });
    if (const auto kept = read_manifest(folder)) {
        entry.copy = entry.copy->again(*kept);
    } else {
        if (entry.former.empty()) entry.former = folder;
        entry.copy = std::make_unique<document_copy>(newCopy());
    }
    entry.retry = clock::now() + pauses.retry;
}

std::size_t autosave::feed(tracked& entry, std::size_t budget)
{
    return entry.copy->feed(
        [&entry](std::uint64_t state) {
            return entry.document ? entry.document->samplesIn(state) : samples_in(entry.held, state);
        },
        budget);
}

void autosave::dropFormer(tracked& entry)
{
    if (entry.former.empty() || entry.copy->isBusy() || !entry.copy->isStored()) return;
    writer.give([old = std::exchange(entry.former, {})] {
        std::error_code error; // what cannot be removed is offered again, which loses nothing
        fs::remove_all(old, error);
    });
}

void autosave::feedAll(tracked& entry)
{
    while (entry.copy->isBusy()) {
        writer.waitUntilBelow(waitingBytes);
        feed(entry, stepBytes);
    }
}

void autosave::keep(const CStorageDoc& document, std::size_t& budget, bool looks)
{
    tracked& entry = entryOf(document);
    const document::content_state state = document.contentState();
    if (entry.copy->hasFailed()) {
        if (entry.wanted == state && clock::now() < entry.retry) return;
        replaceFailed(entry);
    }
    if (entry.copy->isBusy()) budget -= std::min(budget, feed(entry, budget));
    if (entry.copy->isBusy()) return;
    dropFormer(entry);
    const bool isIncomplete = looks && entry.copy->needsSource() && has_lost_source(document);
    if (entry.copy->holds(state) && !isIncomplete) return;
    entry.wanted = state;
    entry.copy->begin(take_snapshot(document));
    budget -= std::min(budget, feed(entry, budget));
}

void autosave::dropUnchanged(const std::vector<CStorageDoc*>& open)
{
    for (auto entry = entries.begin(); entry != entries.end();) {
        const auto found = std::ranges::find(open, entry->document);
        const CStorageDoc* const document = entry->document && found != open.end() ? *found : nullptr;
        // What is being read again may yet be refused, or given up.
        const bool stays = !entry->document || (document && (document->isChanged() || document->isBeingRead()));
        if (!stays) letGo(*entry, document && lost_images(*document));
        entry = stays ? entry + 1 : entries.erase(entry);
    }
}

void autosave::step(const std::vector<CStorageDoc*>& open)
{
    if (hasLeft) return;
    dropUnchanged(open);
    const bool looks = clock::now() >= nextLook;
    if (looks) nextLook = clock::now() + pauses.look;
    retryClosed(clock::now());
    // What a step copies is limited, and nothing is copied while the writer is far behind: the pieces on their way take
    // little memory however large the documents are, and no step waits for the disk.
    std::size_t budget = writer.waitingBytes() < waitingBytes ? stepBytes : 0;
    for (const CStorageDoc* document : open)
        if (document->isChanged()) keep(*document, budget, looks);
    for (tracked& entry : entries)
        if (!entry.document) budget -= std::min(budget, feed(entry, budget));
    settleClosed();
}

bool autosave::isUpToDate() const
{
    return std::ranges::all_of(entries, [](const tracked& entry) {
        if (entry.copy->hasFailed()) return true;
        return entry.document && entry.copy->holds(entry.document->contentState()) && entry.copy->isStored();
    });
}

std::string autosave::takeError()
{
    const std::string error = writer.takeError();
    if (error.empty()) return error;
    std::set<std::wstring> titles = std::exchange(failedTitles, {});
    for (const tracked& entry : entries)
        if (entry.copy->hasFailed()) titles.insert(entry.title);
    std::string named;
    for (const std::wstring& title : titles) named += (named.empty() ? "\"" : ", \"") + base::narrow(title) + "\"";
    return named.empty() ? error : named + ": " + error;
}

bool autosave::hasFailed() const
{
    return std::ranges::any_of(entries, [](const tracked& entry) { return entry.copy->hasFailed(); });
}

void autosave::documentCloses(CStorageDoc& document)
{
    if (hasLeft) return;
    const auto found = std::ranges::find(entries, &document, &tracked::document);
    if (!document.isChanged()) {
        if (found == entries.end()) return;
        letGo(*found, lost_images(document));
        entries.erase(found);
        return;
    }
    tracked& entry = entryOf(document);
    entry.wanted = document.contentState();
    if (entry.copy->hasFailed()) replaceFailed(entry);
    // Where the copy is not complete, the images move here from the document that goes, at no cost, and are written
    // from here.
    const bool isHeld = !entry.copy->isBusy() && entry.copy->holds(entry.wanted) &&
                        !(entry.copy->needsSource() && has_lost_source(document));
    if (!isHeld || !entry.copy->isStored()) {
        entry.closing = take_snapshot(document);
        if (!isHeld) entry.copy->begin(*entry.closing);
        entry.held = document.releaseImages();
    }
    entry.document = nullptr;
    settleClosed();
}

void autosave::retryClosed(clock::time_point now)
{
    for (tracked& entry : entries) {
        if (entry.document || !entry.closing || !entry.copy->hasFailed() || now < entry.retry) continue;
        replaceFailed(entry);
        entry.copy->begin(*entry.closing);
    }
}

void autosave::settleClosed()
{
    for (auto entry = entries.begin(); entry != entries.end();) {
        const bool isSettled = !entry->document && !entry->copy->isBusy() && entry->copy->isStored();
        if (isSettled) {
            dropFormer(*entry);
            moveToClosed(*entry);
        }
        entry = isSettled ? entries.erase(entry) : entry + 1;
    }
}

void autosave::letGo(const tracked& entry, bool lostImages)
{
    if (lostImages)
        moveToClosed(entry);
    else
        discard(entry);
}

void autosave::moveToClosed(const tracked& entry)
{
    writer.give([from = entry.copy->path(), to = closed] {
        std::error_code error;
        if (!fs::exists(from / manifestName, error) && !error) { // nothing came of it
            fs::remove_all(from, error);
            return;
        }
        fs::rename(from, to / from.filename());
        prune_closed(to);
    });
}

void autosave::discard(const tracked& entry)
{
    writer.give([folder = entry.copy->path(), former = entry.former] {
        std::error_code error; // what cannot be removed is offered again, which loses nothing
        fs::remove_all(folder, error);
        if (!former.empty()) fs::remove_all(former, error);
    });
}

fs::path autosave::takeCopy(const fs::path& folder)
{
    const fs::path taken = session.path() / folder.filename();
    std::error_code error;
    fs::rename(folder, taken, error);
    return error ? fs::path() : taken;
}

void autosave::adopt(CStorageDoc& document, const fs::path& folder, std::map<std::uint64_t, std::string> files,
                     bool isAsKept)
{
    const std::string names = session.name() + "-" + std::to_string(++copies) + "-";
    tracked& entry = entries.emplace_back();
    entry.document = &document;
    const auto state = isAsKept ? std::optional(document.contentState()) : std::nullopt;
    entry.copy = std::make_unique<document_copy>(folder, names, writer, state, std::move(files));
}

std::error_code autosave::fileGoes(const fs::path& file)
{
    // What is just being closed may refer to it as well.
    for (tracked& entry : entries)
        if (!entry.document) feedAll(entry);
    writer.wait();
    settleClosed();
    writer.wait();
    // What could not be written yet has all images in memory, and will not find them in the file.
    for (tracked& entry : entries)
        if (entry.closing) entry.closing->isInSource.assign(entry.closing->isInSource.size(), false);
    return keep_source(root, file, session.path());
}

void autosave::feedAll()
{
    for (tracked& entry : entries) feedAll(entry);
}

void autosave::finish()
{
    feedAll();
    writer.wait();
    for (tracked& entry : entries) dropFormer(entry);
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

} // namespace vldv::recovery
