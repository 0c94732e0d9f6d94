#pragma once
#include "view/scale/PaletteBar.h"

#include <QWidgetAction>

class QToolBar;

namespace vldv::host {

/// The palette bar as an entry of a toolbar, which may leave and join it again.
class CQtPaletteBar : public QWidgetAction {
public:
    explicit CQtPaletteBar(QToolBar& bar_);
    ~CQtPaletteBar() override;

    CPaletteBar& logic() noexcept { return content; }

private:
    void fit();

    QToolBar& bar;
    CPaletteBar content;
};

} // namespace vldv::host
