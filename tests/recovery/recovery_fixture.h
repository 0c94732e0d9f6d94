#pragma once
#include "document/StorageDoc.h"
#include "platform/app/WinApp.h"
#include "recovery/autosave.h"
#include "recovery/closed_documents.h"
#include "recovery/restore_document.h"
#include "support/HeadlessHost.h"
#include "support/streams.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>

/// An image of `count` 16-bit samples that are all `value`.
inline SPMDataStream even_image(const char* id, unsigned count, short value)
{
    SPMDataStream stream = test_support::made_stream(id, {{count, VLAxis(1.0 / 3.0, 1e-12, "m")}}, {},
                                                     [value](unsigned) { return value; });
    stream.set_description("Height, \"rough\")");
    return stream;
}

/// As an operation of the program does it.
inline void fill_image(CStorageDoc& document, unsigned image, short value)
{
    document.pushUndo(image, true);
    short* const samples = static_cast<short*>(document.getImageDataS(image, 0));
    std::fill_n(samples, document.getSubImageLength(image), value);
    document.SetModifiedFlag(true);
}

/// The value of all samples; nothing when they differ.
inline std::optional<short> value_of(const CStorageDoc& document, unsigned image)
{
    const auto* const samples = static_cast<const short*>(document.getImageDataS(image, 0));
    for (unsigned i = 1; i < document.getSubImageLength(image); ++i)
        if (samples[i] != samples[0]) return std::nullopt;
    return samples[0];
}

/// A bitmap of one pixel, with the number in its colours.
inline document::packed_bitmap numbered_bitmap(int number)
{
    BITMAPINFOHEADER header;
    header.biWidth = header.biHeight = 1;
    header.biBitCount = 24;
    const unsigned char pixel[4] = {static_cast<unsigned char>(number), static_cast<unsigned char>(number >> 8), 0, 0};
    return document::pack_bitmap(header, pixel, nullptr);
}

/// Draws a selected line over an image, with the number for its text.
inline void draw_number(CStorageDoc& document, unsigned image, int number)
{
    document::decorations::group group;
    document::decoration& line = group.members.emplace_back();
    line.type = DECORATION_POLYLINE;
    line.tupleLength = 2;
    line.coordinates = {0.0, 1.0, 2.0, 1.0 / 3.0};
    line.text = std::to_string(number);
    line.state = DECORATION_SELECTED;
    document::decorations made;
    made.put("lines", std::move(group));
    document.setDecorations(image, std::move(made));
}

/// The numbers over an image as text: bitmap, drawing and its state.
inline std::string over(const CStorageDoc& document, unsigned image)
{
    std::string told;
    if (const BITMAPINFOHEADER* const bitmap = document.getImageOverlay(image)) {
        const auto bytes = document::bytes_of(*bitmap).subspan(sizeof *bitmap);
        told = std::to_string(std::to_integer<int>(bytes[0]) + 256 * std::to_integer<int>(bytes[1]));
    }
    for (const auto& [key, group] : document.decorations(image).all())
        for (const document::decoration& each : group.members)
            told += " " + key + " " + each.text + "/" + std::to_string(each.state);
    return told;
}

class RecoveryTest : public testing::Test {
protected:
    std::filesystem::path state() const { return folder / "state"; }
    /// What programs have left that died, moved to the closed documents.
    recovery::left_copies leftCopies() const
    {
        return recovery::left_sessions(state() / "sessions").moveTo(state() / "closed");
    }
    /// Restores the latest copy of a closed document into `document`.
    recovery::restored_document restoreLatest(CStorageDoc& restored)
    {
        recovery::closed_documents closed(state() / "closed");
        if (closed.list().empty()) {
            ADD_FAILURE() << "nothing was kept";
            return {};
        }
        const auto& copy = closed.list().front().folder;
        return recovery::restore(restored, *recovery::read_manifest(copy), copy);
    }
    /// A document of three images that stands in a file.
    void saveThree(CStorageDoc& made)
    {
        for (const char* id : {"a", "b", "c"}) {
            const SPMDataStream image = even_image(id, 1000, 1);
            made.AddNewImages(&image, 1);
        }
        made.setString("operator", "Ada", unsigned(-1));
        ASSERT_TRUE(made.DoSave(path.c_str(), true));
    }

    CHeadlessHost host;
    CWinApp app{host};
    temporary_folder folder;
    std::wstring path = (folder / "three.spm").wstring();
};
