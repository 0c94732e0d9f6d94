#include "document/StorageDoc.h"
#include "surface/SurfMathView.h"

namespace {

constexpr const char* paletteKey = "palette"; // of an image's texts

} // namespace

bool CSurfMathView::hasStoredPalette() const
{
    return stream() && *storageDoc()->getString(paletteKey, imageNumber) != '\0';
}

void CSurfMathView::storePalette() {}

void CSurfMathView::loadStoredPalette() {}

void CSurfMathView::updateStatistics() {}

void CSurfMathView::OnRememberPalette()
{
    if (hasStoredPalette())
        storageDoc()->setString(paletteKey, "", imageNumber);
    else
        storePalette();
    paletteDirty = !hasStoredPalette();
}

void CSurfMathView::OnUpdateRememberPalette(CCmdUI& ui) { ui.SetCheck(hasStoredPalette()); }
