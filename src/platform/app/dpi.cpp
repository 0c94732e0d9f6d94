#include "platform/app/dpi.h"

#include "base/streams/rounding.h"
#include "platform/app/WinApp.h"

using namespace vldv;

double GetSystemDPIMultiplyer()
{
    CWinApp* const app = AfxGetApp();
    return app ? app->dpiMultiplier() : 1.0;
}

int CorrectDPISize(int size) { return static_cast<int>(base::round_half_up(GetSystemDPIMultiplyer() * size)); }
