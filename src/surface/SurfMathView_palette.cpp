#include "document/StorageDoc.h"
#include "surface/SurfMathView.h"
#include "surface/stored_palette.h"

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
    if (text == storageDoc()->getString(surface::storedPaletteKey, imageNumber)) return;
    storageDoc()->setString(surface::storedPaletteKey, text.c_str(), imageNumber);
    storageDoc()->SetModifiedFlag(true);
}

void CSurfMathView::loadStoredPalette()
{
    if (!hasStoredPalette()) return;
    const bool isApplied = surface::apply_palette(storageDoc()->getString(surface::storedPaletteKey, imageNumber),
                                                  scale, CScale::GetStaticScale());
    if (isApplied && invertedDisplay) scale.setInverse(!scale.getInverse());
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
