#include "document/StorageDoc.h"
#include "surface/views/SurfMathView.h"
#include "surface/views/stored_palette.h"

using namespace vldv;

namespace {

int applying = 0; ///< scales are being given what an image keeps

/// Scales that are given what an image keeps tell all views of it. That is no stroke of the user's that an image could
/// remember: without this, opening one file would write its palette into another.
struct applying_scope {
    applying_scope() { ++applying; }
    applying_scope(const applying_scope&) = delete;
    applying_scope& operator=(const applying_scope&) = delete;
    ~applying_scope() { --applying; }
};

} // namespace

bool CSurfMathView::hasStoredPalette() const
{
    return stream() && *storageDoc()->getString(surface::storedPaletteKey, imageNumber) != '\0';
}

void CSurfMathView::storePalette()
{
    if (!stream()) return;
    constexpr int customPalette = 0;
    const color_table* const custom = CScale::getPalette(customPalette);
    surface::stored_palette palette = surface::palette_of(scale, custom ? *custom : color_table());
    palette.inverse = palette.inverse != invertedDisplay; // an option of the view, no property of the image
    const std::string text = surface::compose_palette(palette);
    knownPalette = text;
    if (text == storageDoc()->getString(surface::storedPaletteKey, imageNumber)) return;
    storageDoc()->setString(surface::storedPaletteKey, text.c_str(), imageNumber);
    storageDoc()->SetModifiedFlag(true);
}

void CSurfMathView::loadStoredPalette(CScale* followed)
{
    if (!hasStoredPalette()) return;
    knownPalette = storageDoc()->getString(surface::storedPaletteKey, imageNumber);
    const applying_scope scope;
    if (!surface::apply_palette(knownPalette, scale, followed)) return;
    if (invertedDisplay) scale.setInverse(!scale.getInverse());
}

bool CSurfMathView::mayStorePalette() const { return isOpened() && applying == 0 && hasStoredPalette(); }

/// What the image keeps follows the scale of the view. Where it is no longer what this view knows, as another view of
/// the image has stored one or the file was read again, the scale follows instead.
void CSurfMathView::renewStoredPalette()
{
    if (!mayStorePalette()) return;
    if (knownPalette == storageDoc()->getString(surface::storedPaletteKey, imageNumber))
        storePalette();
    else
        loadStoredPalette(nullptr);
}

/// Shows the picture, and the strip that explains it, with the colours turned round.
void CSurfMathView::invertDisplay(bool on)
{
    if (on == invertedDisplay) return;
    invertedDisplay = on;
    scale.setInverse(!scale.getInverse());
    scale.Invalidate(true);
}

void CSurfMathView::OnRememberPalette()
{
    if (hasStoredPalette()) {
        storageDoc()->setString(surface::storedPaletteKey, "", imageNumber);
        storageDoc()->SetModifiedFlag(true);
    } else {
        storePalette();
    }
    paletteDirty = !hasStoredPalette();
}

void CSurfMathView::OnUpdateRememberPalette(CCmdUI& ui) { ui.SetCheck(hasStoredPalette()); }
