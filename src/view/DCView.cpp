#include "view/DCView.h"

#include "base/text.h"
#include "document/update_hints.h"
#include "platform/app/FrameWnd.h"
#include "platform/app/WinApp.h"

using namespace vldv;

CRect CDCView::rtMargin(1250, 1000, 1250, 1000);
const CDCView* CDCView::placeInStatus = nullptr;

CDCView::CDCView()
{
    for (const char* name :
         {"ShowLegend", "background", "legend", "text", "text_background", "axis_thickness", "grid.show",
          "grid.line.style", "grid.line.width", "tics.x.number", "tics.x.length", "tics.y.number", "tics.y.length"})
        AddOptionHandler(name, &CDCView::oh_invalidate);
    for (const char* name : {"LeftMargin", "RightMargin", "TopMargin", "BottomMargin"})
        AddOptionHandler(name, &CDCView::oh_margin);
    for (const char* name : {"text_size", "text_weight", "text_italic", "text_face"})
        AddOptionHandler(name, &CDCView::oh_text_create_font);
    for (const char* name : {"toolbar", "toolbar.size"}) AddOptionHandler(name, &CDCView::oh_toolbar);
    options.AddFireVariableChangeHandler(this);
}

CDCView::~CDCView()
{
    forgetPlace();
    options.RemoveFireVariableChangeHandler(this);
}

void CDCView::oh_toolbar(const SPMVar&)
{
    if (CFrameWnd* const frame = GetParentFrame()) frame->OnResetToolbar();
}

void CDCView::OnInitialUpdate()
{
    LoadOptions(nullptr);
    oh_text_create_font(option("text_face"));
    CView::OnInitialUpdate();
}

void CDCView::OnUpdate(CView*, std::uint32_t hint, const hint_object&)
{
    switch (document::hint::unpacked(hint).code) {
    case document::hintNewData: {
        image.Clear();
        sourceRect = CRect(0, 0, static_cast<int>(getSourceWidth()), static_cast<int>(getSourceHeight()));
        int width = sourceRect.Width(), height = sourceRect.Height();
        GetBestSize(width, height);
        AdjustParentSize(width, height, true);
        CountDisplayRect();
        createImage(false);
        hasOpened = true;
        break;
    }
    case document::hintNewSize:
        createImage(true);
        break;
    default:
        break;
    }
}

/// The picture in memory as large as the display. With `keepDepth` only where the size is another.
void CDCView::createImage(bool keepDepth)
{
    if (keepDepth) {
        if (image.width() != displayRect.Width() || image.height() != displayRect.Height() || !image.Ok())
            image.Resize(displayRect.Width(), displayRect.Height());
        return;
    }
    const std::unique_ptr<CDC> reference = getPeer() ? getPeer()->clientDC() : nullptr;
    image.Init(reference.get());
    image.Create(displayRect.Width(), displayRect.Height(), UseAlphaChannel());
}

bool CDCView::OnEraseBkgnd(CDC& dc)
{
    CountDisplayRect();
    const CRect client = GetClientRect();
    const auto color = colorOption("background");
    // Only the frame around the display: the picture covers the inside in any case, and would flicker over a
    // background.
    const CRect bands[] = {{client.left, client.top, client.right, displayRect.top},
                           {client.left, displayRect.bottom, client.right, client.bottom},
                           {client.left, displayRect.top, displayRect.left, displayRect.bottom},
                           {displayRect.right, displayRect.top, client.right, displayRect.bottom}};
    for (const CRect& band : bands)
        if (!band.IsRectEmpty()) dc.FillSolidRect(band, color);
    return true;
}

void CDCView::OnDraw(CDC& dc)
{
    const int saved = dc.SaveDC();
    OnDrawData(dc);
    if (isOptionOn("ShowLegend")) OnDrawLegend(dc);
    dc.RestoreDC(saved);
}

void CDCView::drawLegendLine(CDC& dc, CPoint& point, LegendOffset offset, const wchar_t* format,
                             std::initializer_list<legend_argument> arguments)
{
    std::wstring text;
    auto next = arguments.begin();
    const auto take = [&]() -> const legend_argument* { return next == arguments.end() ? nullptr : next++; };
    // Each "C", "c" or "d" of the format stands for the next argument, as long as there is one; the argument knows its
    // own type. All other characters stand for themselves.
    for (const wchar_t* at = format; *at; ++at) {
        const legend_argument* argument = *at == L'C' || *at == L'c' || *at == L'd' ? take() : nullptr;
        if (!argument)
            text += *at;
        else if (const auto* wide = std::get_if<std::wstring>(argument))
            text += *wide;
        else if (const auto* narrow = std::get_if<std::string>(argument))
            text += base::widen(*narrow);
        else
            text += base::widen(base::formatted("%G", std::get<double>(*argument)));
    }
    const CSize extent = dc.GetTextExtent(text);
    dc.TextOut(point.x, point.y, text);
    switch (offset) {
    case legendUp:
        point.y -= extent.cy;
        break;
    case legendDown:
        point.y += extent.cy;
        break;
    case legendRight:
        point.x += extent.cx;
        break;
    case legendLeft:
        point.x -= extent.cx;
        break;
    }
}

void CDCView::SetMessageText(const std::wstring& text)
{
    placeInStatus = nullptr;
    if (CWinApp* const app = AfxGetApp()) app->host().setStatusText(text);
}

void CDCView::setPlaceText(const std::wstring& text)
{
    SetMessageText(text);
    placeInStatus = this;
}

void CDCView::OnActivateView(bool activates, CView* entered, CView* left)
{
    if (!activates) forgetPlace();
    CView::OnActivateView(activates, entered, left);
}

void CDCView::forgetPlace()
{
    if (placeInStatus == this) SetMessageText({});
}

void CDCView::oh_invalidate(const SPMVar&) { Invalidate(true); }

void CDCView::oh_margin(const SPMVar&)
{
    int width = displayRect.Width(), height = displayRect.Height();
    GetBestSize(width, height);
    AdjustParentSize(width, height, true);
}

void CDCView::oh_text_create_font(const SPMVar&)
{
    font = {.height = -intOption("text_size"),
            .weight = isOptionOn("text_weight") ? 700 : 400,
            .italic = isOptionOn("text_italic"),
            .fixedPitch = false,
            .face = option("text_face").as_string().c_str()};
    Invalidate(true);
}

void CDCView::OnPrepareDC(CDC& dc, bool toPaper)
{
    if (!toPaper) return;
    const CSize page = dc.deviceSize(), dpi = dc.dotsPerInch();
    // Margins of a page are kept in thousandths of an inch. The isotropic mapping fits the window into what they leave.
    const auto pixels = [](int thousandths, int dotsPerInch) { return dotsPerInch * thousandths / 1000; };
    const CRect client = GetClientRect();
    dc.SetMapMode(MM_ISOTROPIC);
    dc.SetWindowExt(client.Size());
    dc.SetViewportOrg({pixels(rtMargin.left, dpi.cx), pixels(rtMargin.top, dpi.cy)});
    dc.SetViewportExt({page.cx - pixels(rtMargin.left + rtMargin.right, dpi.cx),
                       page.cy - pixels(rtMargin.top + rtMargin.bottom, dpi.cy)});
}
