#include "view/Scale.h"

#include "platform/app/WinApp.h"
#include "view/scale/palette_folder.h"
#include "view/scale/palette_profile.h"
#include "view/scale/render.h"
#include "view/scale/strip.h"

#include <algorithm>

using namespace vldv;

std::deque<color_table> CScale::m_ColorTable;
std::vector<std::string> CScale::file_names;
std::vector<CScale*> CScale::m_PalList;

CScale::CScale()
{
    // All scales share the palettes, which the first one loads and the last one stores. The first in the list is the
    // static scale, which the others follow where they are told to.
    if (m_PalList.empty()) InitColorTable();
    m_PalList.push_back(this);
}

CScale::~CScale()
{
    std::erase(m_PalList, this);
    if (m_PalList.empty()) DestroyColorTable();
}

void CScale::InitColorTable()
{
    CWinApp* app = AfxGetApp();
    if (app) view::read_scale_values(app->profile(), *this);
    m_ColorTable.clear();
    for (int id = 0; id < view::builtInPalettes; ++id) m_ColorTable.push_back(view::built_in_palette(id));
    if (app) m_ColorTable[view::customPalette] = view::read_custom_palette(app->profile());
    reloadFilePalettes();
}

void CScale::reloadFilePalettes()
{
    if (m_ColorTable.empty()) return; // the first scale will read them
    m_ColorTable.resize(view::builtInPalettes);
    file_names.clear();
    for (view::file_palette& palette : view::read_palette_folder(view::palette_folder())) {
        m_ColorTable.push_back(std::move(palette.table));
        file_names.push_back(std::move(palette.name));
    }
    for (CScale* scale : m_PalList) {
        scale->paletteId = std::min(scale->paletteId, GetPalettesNumber() - 1);
        scale->Invalidate(false);
    }
}

void CScale::DestroyColorTable()
{
    SaveCustomPalette();
    m_ColorTable.clear();
    file_names.clear();
}

const color_table& CScale::table() const noexcept { return m_ColorTable[static_cast<std::size_t>(paletteId)]; }

void CScale::DrawImage(void* bits, const short* src, int srcStep, IppiSize size, const VLAxis& zAxis, bool absolute,
                       bool highlight, RECT* roi, bool rgb32, int* lowOut, int* highOut)
{
    DrawImage({.bits = bits,
               .source = src,
               .sourceStep = srcStep,
               .size = size,
               .zAxis = &zAxis,
               .absolute = absolute,
               .highlight = highlight,
               .roi = roi,
               .rgb32 = rgb32,
               .lowOut = lowOut,
               .highOut = highOut});
}

void CScale::DrawImage(const view::render_request& request)
{
    if (request.size.width >= 1 && request.size.height >= 1) view::render_image(*this, table(), request);
}

unsigned long CScale::GetColor(int i, int n) const noexcept { return view::color_at(table(), inverse, i, n); }

unsigned long CScale::GetColor(int i, int n, double gamma) const noexcept
{
    return view::color_at(table(), inverse, i, n, gamma);
}

void CScale::SetPaletteId(int id)
{
    // The custom palette is the only one whose colours may be others under the same number.
    if (id == paletteId && paletteId != view::customPalette) return;
    previousPaletteId = paletteId;
    paletteId = std::clamp(id, 0, GetPalettesNumber() - 1);
    if (!getPeer()) return;
    UpdateActiveView();
    Invalidate(false);
}

const color_table* CScale::getPalette(int id) noexcept
{
    return id >= 0 && id < GetPalettesNumber() ? &m_ColorTable[static_cast<std::size_t>(id)] : nullptr;
}

int CScale::GetPalettesNumber() noexcept { return static_cast<int>(m_ColorTable.size()); }

std::string CScale::getPaletteName(int id)
{
    const int index = id - view::builtInPalettes;
    return index >= 0 && index < static_cast<int>(file_names.size()) ? file_names[static_cast<std::size_t>(index)]
                                                                     : std::string();
}

void CScale::SetCustomPalette(const unsigned long* colors, int count)
{
    if (count < 1) return;
    color_table& custom = m_ColorTable[view::customPalette];
    custom.assign(static_cast<std::size_t>(count), 0);
    std::transform(colors, colors + count, custom.begin(),
                   [](unsigned long color) { return static_cast<colorEntry>(color); });
    UpdateAll();
}

bool CScale::SaveCustomPalette() const
{
    CWinApp* app = AfxGetApp();
    return app && view::write_custom_palette(app->profile(), m_ColorTable[view::customPalette]) &&
           view::write_scale_values(app->profile(), *this);
}

void CScale::SetDirection(tdTileDirection newDirection)
{
    direction = newDirection;
    updateStripRect();
}

void CScale::SetDimensions(int length, int width)
{
    scaleLength = length;
    scaleWidth = width;
    view::reset_delimiters(*this);
    updateStripRect();
}

CSize CScale::GetSize() const noexcept
{
    return direction == tdVertical ? CSize{scaleWidth, scaleLength} : CSize{scaleLength, scaleWidth};
}

void CScale::updateStripRect()
{
    const CSize size = GetSize();
    stripRect = {0, 0, size.cx, size.cy};
    if (getPeer()) SetWindowSize(getPeer()->outerSize(size));
}

CScale* CScale::GetStaticScale() noexcept { return m_PalList.empty() ? nullptr : m_PalList.front(); }

void CScale::MakeStatic()
{
    const auto found = std::ranges::find(m_PalList, this);
    std::rotate(m_PalList.begin(), found, found + 1);
}

void CScale::SyncDelimiters()
{
    const CScale* leader = GetStaticScale();
    if (!syncDelimiters || !leader) return;
    fixedStart = leader->fixedStart;
    fixedSize = leader->fixedSize;
    if (leader != this) fixedUnits = leader->fixedUnits;
    relativeMeanOffset = leader->relativeMeanOffset;
    autoScaling = leader->autoScaling;
    Invalidate(false);
}

void CScale::SyncWithStatic()
{
    SyncDelimiters();
    if (!syncPalette || !GetStaticScale()) return;
    paletteId = GetStaticScale()->paletteId;
    Invalidate(false);
}

void CScale::UpdateAll()
{
    for (CScale* scale : m_PalList)
        if (scale != this && scale->syncPalette) scale->SyncWithStatic();
    Invalidate(false);
}
