#include "recovery_fixture.h"

#include <chrono>
#include <set>
#include <thread>

namespace {

class AutosaveTest : public RecoveryTest {
protected:
    AutosaveTest() { saveThree(document); }
    void step() { copies->step({&document}); }
    void stepAndFinish()
    {
        step();
        copies->finish();
    }
    /// Where the document has a copy that cannot be written any more: it lies "elsewhere".
    std::filesystem::path blockedCopy()
    {
        fill_image(document, 1, 7);
        stepAndFinish();
        const std::filesystem::path copy = onlyCopy();
        std::filesystem::rename(copy, folder / "elsewhere");
        write_file(copy, "in the way");
        return copy;
    }
    std::filesystem::path onlyCopy() const
    {
        std::filesystem::path found;
        for (const auto& session : std::filesystem::directory_iterator(state() / "sessions"))
            for (const auto& entry : std::filesystem::directory_iterator(session))
                if (entry.is_directory()) found = entry.path();
        return found;
    }
    std::uintmax_t sampleBytes() const
    {
        std::uintmax_t sum = 0;
        for (const auto& entry : std::filesystem::directory_iterator(onlyCopy()))
            if (entry.path().filename() != "manifest") sum += entry.file_size();
        return sum;
    }

    /// Of an image in the copy, as soon as there is one.
    std::optional<short> keptValue(unsigned image) const
    {
        std::optional<recovery::kept_document> kept;
        for (int tries = 0; tries < 500 && !kept; ++tries) {
            kept = recovery::read_manifest(onlyCopy());
            if (!kept) std::this_thread::sleep_for(std::chrono::milliseconds(10));
        }
        CStorageDoc restored;
        if (kept) recovery::restore(restored, *kept, onlyCopy());
        return image < restored.getImagesNumber() ? value_of(restored, image) : std::nullopt;
    }

    CStorageDoc document;
    static constexpr recovery::autosave_pauses noPauses{.retry = {}, .look = {}};
    std::unique_ptr<recovery::autosave> copies = std::make_unique<recovery::autosave>(state(), noPauses);
};

TEST_F(AutosaveTest, WritesChangedImagesOnlyAndNothingForWhatIsInItsFile)
{
    step();
    EXPECT_TRUE(onlyCopy().empty());
    fill_image(document, 1, 7);
    stepAndFinish();
    EXPECT_EQ(sampleBytes(), 2000u) << "one of three images";
    document.setString("note", "new", 0);
    stepAndFinish();
    EXPECT_EQ(sampleBytes(), 2000u) << "texts stand in the manifest";
    document.undo(1);
    document.clearStrings(0);
    fill_image(document, 2, 8);
    stepAndFinish();
    EXPECT_EQ(sampleBytes(), 2000u) << "image 1 is as in the file again, and its copy is gone";
    ASSERT_TRUE(document.Save());
    stepAndFinish();
    EXPECT_TRUE(onlyCopy().empty()) << "saved";
}

TEST_F(AutosaveTest, ALargeImageIsHandedOnInPiecesAlsoWhileWorkGoesOn)
{
    constexpr unsigned samples = 12u << 20; // 24 MiB: a step and a half
    const SPMDataStream large = even_image("large", samples, 1);
    document.AddNewImages(&large, 1);
    ASSERT_TRUE(document.Save());
    fill_image(document, 3, 2);
    step();
    EXPECT_FALSE(copies->isUpToDate());
    fill_image(document, 3, 3); // what is half handed on is a step of the history by now
    step();
    EXPECT_FALSE(copies->isUpToDate()) << "the new state has only begun";
    EXPECT_EQ(keptValue(3), 2) << "the first state was completed all the same";
    copies->finish();
    EXPECT_EQ(keptValue(3), 3);
}

TEST_F(AutosaveTest, WhatClosesUnsavedComesBackWhole)
{
    fill_image(document, 1, 7);
    document.setString("note", "</var>\n", 1);
    document.RemoveImage(0);
    SPMDataStream::dimension tall;
    tall.length = 500;
    document.getImage(0).set_dimension(0, tall);
    document.revalidateImage(0);
    const std::string declaration = document.getImage(0).description().c_str();
    copies->documentCloses(document);
    EXPECT_EQ(document.getImagesNumber(), 0u) << "images are taken over, not copied";
    copies.reset();
    CStorageDoc again;
    const auto result = restoreLatest(again);
    EXPECT_TRUE(result.missing.empty());
    ASSERT_EQ(again.getImagesNumber(), 2u);
    EXPECT_STREQ(again.getImage(0).description().c_str(), declaration.c_str());
    EXPECT_EQ(again.getSubImagesNumber(0), 2u);
    EXPECT_EQ(value_of(again, 0), 7);
    EXPECT_EQ(value_of(again, 1), 1) << "from the file";
    EXPECT_STREQ(again.getString("note", 0), "</var>\n");
    EXPECT_STREQ(again.getString("operator", unsigned(-1)), "Ada");
    EXPECT_EQ(again.GetPathName(), path);
    EXPECT_EQ(again.GetTitle(), L"three");
    EXPECT_TRUE(again.isChanged());
    EXPECT_EQ(again.ownFiles().of(path), document::own_files::relation::own) << "saved without a question";
}

TEST_F(AutosaveTest, WhatLiesOverImagesComesBackToo)
{
    CStorageDoc made; // of a file that it was never saved to
    const SPMDataStream images[] = {even_image("a", 4, 1), even_image("b", 4, 2)};
    made.AddNewImages(images, 2);
    made.setOverlay(1, numbered_bitmap(258));
    draw_number(made, 1, 5);
    document.deriveTitle(made);
    copies->documentCloses(made);
    copies->finish();
    CStorageDoc again;
    EXPECT_TRUE(restoreLatest(again).missing.empty());
    ASSERT_EQ(again.getImagesNumber(), 2u);
    EXPECT_EQ(over(again, 0), "");
    EXPECT_EQ(over(again, 1), "258 lines 5/1");
    EXPECT_EQ(again.decorations(1).all().at("lines").members[0].coordinates.back(), 1.0 / 3.0);
    CStorageDoc copy;
    again.deriveTitle(copy);
    EXPECT_EQ(copy.GetTitle(), L"Copy 2 of three") << "what it was made of";
}

TEST_F(AutosaveTest, WhatLiesOverImagesIsWrittenWhenItChanges)
{
    fill_image(document, 1, 7);
    document.setOverlay(0, numbered_bitmap(3));
    draw_number(document, 0, 4);
    stepAndFinish();
    const auto names = [&] {
        const recovery::kept_image kept = recovery::read_manifest(onlyCopy())->images[0];
        return std::pair(kept.overlayFile, kept.drawingsFile);
    };
    const auto [overlay, drawings] = names();
    document.setString("note", "new", 0);
    stepAndFinish();
    EXPECT_EQ(names(), std::pair(overlay, drawings)) << "as they were";
    document.toggleDecoration(0, 0, 0);
    stepAndFinish();
    EXPECT_EQ(names().first, overlay);
    EXPECT_NE(names().second, drawings) << "no longer selected";
    EXPECT_FALSE(std::filesystem::exists(onlyCopy() / drawings));
    document.setOverlay(0, nullptr);
    document.clear_decorations(0);
    stepAndFinish();
    EXPECT_EQ(names(), std::pair(std::string(), std::string()));
    EXPECT_EQ(sampleBytes(), 2000u) << "of image 1 only";
}

TEST_F(AutosaveTest, ACopyThatIsOpenAgainKeepsWhatLiesOverImages)
{
    fill_image(document, 1, 7);
    document.setOverlay(0, numbered_bitmap(3));
    draw_number(document, 0, 4);
    copies->documentCloses(document);
    copies->finish();
    const std::filesystem::path folderOfCopy = recovery::closed_documents(state() / "closed").list().front().folder;
    const std::filesystem::path taken = copies->takeCopy(folderOfCopy);
    CStorageDoc again;
    auto done = recovery::restore(again, *recovery::read_manifest(taken), taken);
    copies->adopt(again, taken, std::move(done.files), true);
    again.setString("note", "new", 0);
    copies->step({&again});
    copies->finish();
    CStorageDoc third;
    EXPECT_TRUE(recovery::restore(third, *recovery::read_manifest(taken), taken).missing.empty());
    EXPECT_EQ(over(third, 0), "3 lines 4/1");
    EXPECT_STREQ(third.getString("note", 0), "new");
}

TEST_F(AutosaveTest, ADamagedBitmapOrDrawingIsNamedAndTheRestComesBack)
{
    document.setOverlay(0, numbered_bitmap(3));
    draw_number(document, 0, 4);
    fill_image(document, 1, 7);
    copies->documentCloses(document);
    copies->finish();
    const std::filesystem::path copy = recovery::closed_documents(state() / "closed").list().front().folder;
    const recovery::kept_image kept = recovery::read_manifest(copy)->images[0];
    std::filesystem::resize_file(copy / kept.overlayFile, 41);
    std::filesystem::resize_file(copy / kept.drawingsFile, 20);
    CStorageDoc again;
    const auto result = restoreLatest(again);
    EXPECT_EQ(result.missing.size(), 2u);
    ASSERT_EQ(again.getImagesNumber(), 3u);
    EXPECT_EQ(value_of(again, 1), 7);
    EXPECT_EQ(over(again, 0), "");
    EXPECT_EQ(again.ownFiles().of(path), document::own_files::relation::foreign) << "a save asks";
}

TEST_F(AutosaveTest, WhatClosesAsItIsInItsFileIsNotKept)
{
    fill_image(document, 0, 9);
    step();
    document.undo(0);
    copies->documentCloses(document);
    copies.reset();
    EXPECT_TRUE(recovery::closed_documents(state() / "closed").list().empty());
    EXPECT_FALSE(std::filesystem::exists(state() / "sessions") && !std::filesystem::is_empty(state() / "sessions"));
}

TEST_F(AutosaveTest, ARevertThatFailsLosesNothingEither)
{
    fill_image(document, 1, 7);
    stepAndFinish();
    std::filesystem::copy_file(folder / "three.spm", folder / "kept.spm");
    write_file(folder / "three.spm", "damaged");
    EXPECT_THROW(document.Revert(), CException);
    ASSERT_EQ(document.getImagesNumber(), 0u);
    step();
    copies.reset();
    std::filesystem::rename(folder / "kept.spm", folder / "three.spm");
    CStorageDoc again;
    EXPECT_TRUE(restoreLatest(again).missing.empty());
    ASSERT_EQ(again.getImagesNumber(), 3u);
    EXPECT_EQ(value_of(again, 1), 7);
}

TEST_F(AutosaveTest, ARevertThatIsGivenUpLosesNothing)
{
    for (const bool leaves : {false, true}) {
        fill_image(document, 1, 7);
        stepAndFinish();
        document.onReadProgress = [&](double) {
            EXPECT_GT(document.getImagesNumber(), 0u) << "half read";
            leaves ? copies->leave({&document}) : step();
            return false;
        };
        EXPECT_THROW(document.Revert(), CException);
        document.onReadProgress = nullptr;
        step();
        copies.reset();
        EXPECT_EQ(leftCopies().good.size(), leaves ? 1u : 0u) << "offered by the next start";
        CStorageDoc again;
        EXPECT_TRUE(restoreLatest(again).missing.empty());
        ASSERT_EQ(again.getImagesNumber(), 3u);
        EXPECT_EQ(value_of(again, 1), 7);
        std::filesystem::remove_all(state());
        copies = std::make_unique<recovery::autosave>(state(), noPauses);
        ASSERT_TRUE(document.OnOpenDocument(path.c_str()));
    }
}

TEST_F(AutosaveTest, ImagesWhoseFileHasGoneAreNamedAndTheOthersComeBack)
{
    fill_image(document, 1, 7);
    copies->documentCloses(document);
    copies.reset();
    std::filesystem::remove(folder / "three.spm");
    CStorageDoc again;
    const auto result = restoreLatest(again);
    ASSERT_EQ(result.missing.size(), 2u);
    EXPECT_NE(result.missing[0].find("three.spm"), std::string::npos);
    ASSERT_EQ(again.getImagesNumber(), 1u);
    EXPECT_EQ(value_of(again, 0), 7);
}

TEST_F(AutosaveTest, ACopyThatCannotBeWrittenIsToldAndBegunAnew)
{
    const std::filesystem::path first = blockedCopy();
    fill_image(document, 1, 8);
    stepAndFinish();
    EXPECT_TRUE(copies->takeError().starts_with("\"three\": ")) << "whose work it is";
    fill_image(document, 1, 9);
    stepAndFinish();
    EXPECT_EQ(copies->takeError(), "");
    EXPECT_FALSE(std::filesystem::exists(first)) << "only when there is a better one";
    EXPECT_EQ(keptValue(1), 9);
}

TEST_F(AutosaveTest, WhatCouldNotBeWrittenIsTriedAgainWithoutAnEdit)
{
    for (const bool closes : {false, true}) {
        const std::filesystem::path first = blockedCopy();
        write_file(folder / "elsewhere" / "half written", "debris");
        fill_image(document, 1, 8);
        if (closes)
            copies->documentCloses(document);
        else
            step();
        copies->finish();
        EXPECT_TRUE(copies->hasFailed());
        EXPECT_NE(copies->takeError(), "");
        std::filesystem::remove(first);
        std::filesystem::rename(folder / "elsewhere", first);
        if (closes) {
            EXPECT_FALSE(copies->fileGoes(folder / "three.spm"));
            std::filesystem::remove(folder / "three.spm");
        }
        stepAndFinish();
        EXPECT_FALSE(copies->hasFailed());
        if (!closes) {
            EXPECT_EQ(keptValue(1), 8);
            EXPECT_EQ(onlyCopy(), first) << "with what is good of it";
            EXPECT_EQ(sampleBytes(), 2000u) << "without what is not";
            continue;
        }
        CStorageDoc again;
        EXPECT_TRUE(restoreLatest(again).missing.empty());
        EXPECT_EQ(value_of(again, 1), 8) << "its images were still there";
    }
}

TEST_F(AutosaveTest, WhatCouldNotBeWrittenIsTriedALastTimeAtTheEnd)
{
    copies = std::make_unique<recovery::autosave>(state()); // it waits between two tries
    blockedCopy();
    fill_image(document, 1, 8);
    copies->documentCloses(document);
    copies->finish();
    EXPECT_TRUE(copies->hasFailed());
    copies.reset();
    CStorageDoc again;
    EXPECT_TRUE(restoreLatest(again).missing.empty());
    EXPECT_EQ(value_of(again, 1), 8);
}

TEST_F(AutosaveTest, ClosedDocumentsAreBoundedInNumberAndSize)
{
    constexpr std::size_t surplus = 3;
    for (std::size_t i = 0; i < recovery::closed_documents::maxDocuments + surplus; ++i) {
        CStorageDoc each;
        ASSERT_TRUE(each.OnOpenDocument(path.c_str()));
        each.SetTitle(std::to_wstring(i).c_str());
        fill_image(each, 0, static_cast<short>(i));
        copies->documentCloses(each);
    }
    copies->finish();
    recovery::closed_documents closed(state() / "closed");
    ASSERT_EQ(closed.list().size(), recovery::closed_documents::maxDocuments);
    std::set<std::wstring> titles;
    for (const auto& each : closed.list()) titles.insert(each.title);
    EXPECT_FALSE(titles.contains(L"2")) << "the oldest go";
    EXPECT_TRUE(titles.contains(L"3"));
    std::uintmax_t one = 0; // they are equal but for two digits of the title
    for (const auto& file : std::filesystem::directory_iterator(closed.list().front().folder)) one += file.file_size();
    const auto changed = std::filesystem::last_write_time(state() / "closed");
    recovery::prune_closed(state() / "closed", 20, 2 * one + one / 2);
    std::filesystem::last_write_time(state() / "closed", changed); // as within one tick of the clock
    EXPECT_EQ(closed.list().size(), 2u);
    recovery::prune_closed(state() / "closed", 20, 1);
    EXPECT_EQ(closed.list().size(), 1u) << "the latest stays";
}

TEST_F(AutosaveTest, LinksCountOnceAndOnlyWhereNothingElseHoldsTheFileAndUnreadableCopiesAreBoundedToo)
{
    const std::filesystem::path closed = state() / "closed", large = folder / "large";
    write_file(large, std::string(100'000, 'x'));
    for (const char* name : {"a", "b", "damaged", "other version"}) {
        std::filesystem::create_directories(closed / name / recovery::sourceFolder);
        std::filesystem::create_hard_link(large, closed / name / recovery::sourceFolder / "large");
        recovery::kept_document kept;
        kept.time = *name; // "b" is the later one
        const auto manifest = recovery::encode(kept);
        const bool isGood = *name < 'd';
        write_file(closed / name / recovery::manifestName,
                   isGood ? std::string(reinterpret_cast<const char*>(manifest.data()), manifest.size()) : "?");
    }
    const auto left = [&](std::size_t maxDocuments, std::uint64_t maxBytes) {
        recovery::prune_closed(closed, maxDocuments, maxBytes);
        return std::distance(std::filesystem::directory_iterator(closed), std::filesystem::directory_iterator());
    };
    EXPECT_EQ(left(20, 5'000), 4) << "the file costs nothing while it lies elsewhere too";
    EXPECT_EQ(left(1, 5'000), 2) << "one that can be read and one that cannot";
    EXPECT_TRUE(std::filesystem::exists(closed / "b"));
    std::filesystem::create_directories(closed / "a" / recovery::sourceFolder);
    std::filesystem::rename(large, closed / "a" / recovery::sourceFolder / "large");
    std::filesystem::copy_file(closed / "b" / recovery::manifestName, closed / "a" / recovery::manifestName);
    EXPECT_EQ(left(20, 150'000), 3) << "two links, one file";
    EXPECT_EQ(left(20, 50'000), 2);
}

TEST_F(AutosaveTest, AStateFolderThatWasRemovedIsMadeAgain)
{
    for (const bool hasCopy : {true, false}) {
        const auto session = std::filesystem::directory_iterator(state() / "sessions")->path();
        if (hasCopy) fill_image(document, 1, 7);
        stepAndFinish();
        std::filesystem::remove_all(state());
        fill_image(document, 1, 8);
        for (int tries = 0; tries < 2; ++tries) stepAndFinish();
        EXPECT_EQ(keptValue(1), 8);
        EXPECT_TRUE(std::filesystem::exists(session / "lock")) << "else the next start would take it for alive";
        EXPECT_TRUE(leftCopies().good.empty());
        while (document.canUndo(1)) document.undo(1);
    }
}

TEST_F(AutosaveTest, OnlyTheDeadAreCollectedFrom)
{
    fill_image(document, 0, 9);
    stepAndFinish();
    EXPECT_TRUE(leftCopies().good.empty());
    EXPECT_FALSE(onlyCopy().empty()) << "this program lives";
}

} // namespace
