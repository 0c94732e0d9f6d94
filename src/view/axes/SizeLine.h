#pragma once
#include "platform/app/Window.h"
#include "vldv_api.h"

/// Shows width and height of the view under it while the user drags the frame: a double arrow along each with the
/// number of pixels beside it.
class VLDV_API CSizeLine : public CWnd {
public:
    void OnPaint(CDC& dc) override;
};
