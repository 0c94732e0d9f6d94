#pragma once
#include "platform/Host.h"

#include <optional>
#include <string>
#include <vector>

/// The application: what a program has one of. Created by the host program before any document, current until it ends.
class CWinApp {
public:
    explicit CWinApp(IHost& host_);
    CWinApp(const CWinApp&) = delete;
    CWinApp& operator=(const CWinApp&) = delete;
    virtual ~CWinApp();

    IHost& host() noexcept { return machine; }
    IProfile& profile() { return machine.profile(); }

    /// Puts a path at the head of the recent-file list, once.
    virtual void AddToRecentFileList(const std::wstring& path);
    const std::vector<std::wstring>& recentFiles() const noexcept { return recent; }

    /// System dots per inch / 96, asked once; 1 when the system cannot tell.
    double dpiMultiplier();

    static constexpr std::size_t maxRecentFiles = 16;

private:
    IHost& machine;
    std::vector<std::wstring> recent;
    std::optional<double> multiplier;
};

/// The current application, or null before it is created and after it is gone.
CWinApp* AfxGetApp() noexcept;

/// Shows the wait cursor for its lifetime; does nothing without an application.
class CWaitCursor {
public:
    CWaitCursor();
    CWaitCursor(const CWaitCursor&) = delete;
    CWaitCursor& operator=(const CWaitCursor&) = delete;
    ~CWaitCursor();
};
