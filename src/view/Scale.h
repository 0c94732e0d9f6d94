#pragma once
#include "base/VLAxis.h"
#include "platform/geometry.h"
#include "view/ColorTable.h"
#include "view/ScaleSync.h"
#include "view/scale_state.h"

#include <string>
#include <vector>

/// A colour scale: which values a picture shows and in which colours. All scales of the process share the colour
/// tables, which exist from the first scale to the last; the first in the list is the static scale that others follow.
/// Interface thread only.
class CScale : public view::scale_state, public IScaleSync {
public:
    /// The first one computes the tables and reads palette, mode and window from the profile.
    CScale();
    CScale(const CScale&) = delete;
    CScale& operator=(const CScale&) = delete;
    /// The last one saves the custom palette and its own values.
    virtual ~CScale();

    /// Turns samples into pixels, the rows in the order of the source.
    /// \param bits      blue, green, red per pixel, see `rgb32`
    /// \param src       width * height samples, `srcStep` bytes from row to row; an empty image draws nothing
    /// \param zAxis     physical value of a sample
    /// \param absolute  fixed mode: the window starts at `fixedStart`, else `relativeMeanOffset` above the lowest
    /// sample
    /// \param highlight shows the difference between neighbours in a row, for this drawing in mode 1
    /// \param roi       where the global range is taken from, or null; put in order in place
    /// \param rgb32     4 bytes a pixel, the fourth left as it is, rows without padding; else 3, rows padded to 4 bytes
    /// \param lowOut,highOut  receive the raw limits that were used; may be null
    /// A fixed window that lies off the data or is more than 256 times larger or smaller is replaced by their range.
    /// \throws std::runtime_error when a temporary cannot be had
    void DrawImage(void* bits, const short* src, int srcStep, IppiSize size, const VLAxis& zAxis, bool absolute,
                   bool highlight, RECT* roi, bool rgb32, int* lowOut, int* highOut);

    /// Colour of position i of n steps; the table's last entry at i = n.
    unsigned long GetColor(int i, int n) const noexcept;
    unsigned long GetColor(int i, int n, double gamma) const noexcept;

    int GetPaletteId() const noexcept { return paletteId; }
    /// Clamped to the palettes there are. Selecting the custom palette again counts as a change: its colours may have
    /// changed.
    void SetPaletteId(int id);
    /// Built-in and file palettes.
    static int GetPalettesNumber() noexcept;
    /// Name of a file palette; empty for the built-in ones and unknown ids.
    static std::string getPaletteName(int id);
    /// Replaces the custom palette of all scales. At least one colour.
    void SetCustomPalette(const unsigned long* colors, int count);
    /// \return false without application or when the profile refuses
    bool SaveCustomPalette() const;

    int GetAutoScaling() const noexcept { return autoScaling; }
    void SetAutoScaling(int mode) noexcept { autoScaling = mode; }
    double getFixedSize() const noexcept { return fixedSize; }
    void setFixedSize(double size) noexcept { fixedSize = size; }
    double getFixedStart() const noexcept { return fixedStart; }
    void setFixedStart(double start) noexcept { fixedStart = start; }
    const char* getFixedUnits() const noexcept { return fixedUnits.c_str(); }
    void setFixedUnits(const char* units) { fixedUnits = units ? units : ""; }
    double getRelativeMeanOffset() const noexcept { return relativeMeanOffset; }
    void setRelativeMeanOffset(double offset) noexcept { relativeMeanOffset = offset; }
    bool getInverse() const noexcept { return inverse; }
    void setInverse(bool on) noexcept { inverse = on; }
    void setDisableScaleCheck(bool on) noexcept { disableScaleCheck = on; }

    tdTileDirection GetDirection() const noexcept { return direction; }
    virtual void SetDirection(tdTileDirection newDirection);
    /// Sets the strip's sides and puts the delimiters at its quarters.
    void SetDimensions(int length, int width);
    CSize GetSize() const noexcept;
    /// A delimiter is under the pointer; is being moved.
    bool IsActive() const noexcept { return hotDelimiter != 0; }
    bool IsChanging() const noexcept { return hotDelimiter != 0 && dragging != 0; }

    /// The first in the list, or null when there is no scale.
    static CScale* GetStaticScale() noexcept;
    void MakeStatic();
    /// Takes window and mode of the static scale, when `syncDelimiters` allows.
    void SyncDelimiters();
    /// The same and its palette, when `syncPalette` allows.
    void SyncWithStatic();
    /// Makes all others that follow take what the static scale has.
    void UpdateAll();
    void SyncScale() override {}

private:
    const color_table& table() const noexcept;
    void updateStripRect() noexcept;
    void InitColorTable();
    void DestroyColorTable();

    static std::vector<color_table> m_ColorTable;
    static std::vector<std::string> file_names;
    static std::vector<CScale*> m_PalList;
};
