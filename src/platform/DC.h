#pragma once
#include "platform/bitmap.h"

#include <cstddef>
#include <memory>

/// Pixels that a drawing surface can draw into: blue, green, red (and alpha), rows from the lowest upwards, each padded
/// to four bytes. It only names the memory.
struct CBitmap {
    BITMAPINFOHEADER header;
    std::byte* bits = nullptr;
};

/// A drawing surface: a window, a page or memory.
class CDC {
public:
    CDC() = default;
    CDC(const CDC&) = delete;
    CDC& operator=(const CDC&) = delete;
    virtual ~CDC() = default;

    /// A new surface in memory with the resolution and fonts of this one. It draws nothing before a bitmap is selected.
    virtual std::unique_ptr<CDC> CreateCompatibleDC() = 0;
    /// Draws into `bitmap`, which must outlive its selection, from now on; null: into nothing.
    /// \return what was selected before
    virtual CBitmap* SelectObject(CBitmap* bitmap) = 0;
};
