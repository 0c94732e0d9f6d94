#include "platform/WinApp.h"

#include <algorithm>
#include <cassert>

namespace {

CWinApp* current = nullptr;

} // namespace

CWinApp* AfxGetApp() noexcept { return current; }

CWinApp::CWinApp(IHost& host_) : machine(host_)
{
    assert(!current && "a program has one application");
    current = this;
}

CWinApp::~CWinApp() { current = nullptr; }

double CWinApp::dpiMultiplier()
{
    constexpr double usualDpi = 96.0;
    if (!multiplier) {
        const int dpi = machine.systemDpi();
        multiplier = dpi > 0 ? dpi / usualDpi : 1.0;
    }
    return *multiplier;
}

void CWinApp::AddToRecentFileList(const std::wstring& path)
{
    std::erase(recent, path);
    recent.insert(recent.begin(), path);
    if (recent.size() > maxRecentFiles) recent.pop_back();
}

CWaitCursor::CWaitCursor()
{
    if (CWinApp* app = AfxGetApp()) app->host().waitCursor(true);
}

CWaitCursor::~CWaitCursor()
{
    if (CWinApp* app = AfxGetApp()) app->host().waitCursor(false);
}
