#include "host/window/QtPaletteBar.h"

#include "host/peer/QtPeer.h"

#include <QToolBar>

namespace vldv::host {

CQtPaletteBar::CQtPaletteBar(QToolBar& bar_) : QWidgetAction(nullptr), bar(bar_)
{
    setText(QStringLiteral("Palette"));
    auto* const strip = new QWidget;
    strip->setAttribute(Qt::WA_OpaquePaintEvent);
    CScale& scale = content.scale();
    scale.setPeer(std::make_unique<CQtPeer>(scale, strip));
    content.OnChangeParentWnd(true);
    setDefaultWidget(strip);
    connect(&bar, &QToolBar::orientationChanged, this, [this] { fit(); });
    fit();
}

CQtPaletteBar::~CQtPaletteBar() { content.scale().DestroyWindow(); }

void CQtPaletteBar::fit()
{
    const bool isHorizontal = bar.orientation() == Qt::Horizontal;
    content.OnOrientationChanged(isHorizontal);
    const CSize size = content.OnCalculateSize({CPaletteBar::width, CPaletteBar::width}, isHorizontal);
    defaultWidget()->setFixedSize(size.cx, size.cy);
}

} // namespace vldv::host
