#include "platform/app/WinApp.h"

#include "base/text.h"
#include "platform/app/DocTemplate.h"

#include <algorithm>
#include <cassert>
#include <utility>

using namespace vldv;

namespace {

CWinApp* current = nullptr;

} // namespace

CWinApp* AfxGetApp() noexcept { return current; }

CWinApp::CWinApp(IHost& host_) : machine(host_)
{
    assert(!current && "a program has one application");
    current = this;
}

CWinApp::~CWinApp()
{
    closeAllFrames();
    current = nullptr;
}

void CWinApp::closeAllFrames()
{
    while (!opened.empty()) opened.back()->DestroyFrame();
    freeClosed();
}

CDocTemplate* CWinApp::findTemplate(unsigned resourceId) const noexcept
{
    const auto found = std::ranges::find(templates, resourceId, &CDocTemplate::resourceId);
    return found == templates.end() ? nullptr : *found;
}

CDocument* CWinApp::OpenDocumentFile(const wchar_t* path)
{
    CDocTemplate* best = nullptr;
    auto confidence = match_confidence::noAttempt;
    for (CDocTemplate* each : templates) {
        CDocument* match = nullptr;
        // The template that is surest of the file opens it, the first of equals. A document that is open already is
        // only shown.
        const match_confidence found = each->MatchDocType(path, match);
        if (found == match_confidence::alreadyOpen) {
            showDocument(*match);
            return match;
        }
        if (found <= confidence) continue;
        best = each;
        confidence = found;
    }
    return best ? best->OpenDocumentFile(path, 1, 1) : nullptr;
}

void CWinApp::showDocument(const CDocument& document)
{
    if (document.views().empty()) return;
    if (CFrameWnd* const frame = document.views().front()->GetParentFrame()) frame->ActivateFrame();
}

void CWinApp::reportFailure(const std::wstring& path, const std::string& reason)
{
    if (failureLists > 0)
        failures.push_back({path, reason});
    else
        machine.messageBox(reason, message_icon::warning);
}

namespace vldv {

void tell_failures_together(CWinApp& app, const std::function<void()>& work)
{
    // Calls may be nested: only the outermost one tells.
    ++app.failureLists;
    try {
        work();
    } catch (...) {
        if (--app.failureLists == 0)
            for (const file_failure& each : std::exchange(app.failures, {})) app.machine.output(each.reason);
        throw;
    }
    if (--app.failureLists > 0) return;
    const std::vector<file_failure> told = std::exchange(app.failures, {});
    if (told.size() == 1)
        app.machine.messageBox(told.front().reason, message_icon::warning);
    else if (!told.empty())
        app.machine.showFailures(told);
}

} // namespace vldv

void IHost::showFailures(const std::vector<file_failure>& failures)
{
    std::string text = std::to_string(failures.size()) + " files could not be opened:";
    for (const file_failure& each : failures) {
        const std::string name = base::narrow(each.path);
        text += "\n" + (each.reason.find(name) == std::string::npos ? name + ": " : std::string()) + each.reason;
    }
    messageBox(text, message_icon::warning);
}

CFrameWnd* CWinApp::addFrame(std::unique_ptr<CFrameWnd> frame)
{
    opened.push_back(std::move(frame));
    return opened.back().get();
}

void CWinApp::setActiveFrame(CFrameWnd* frame)
{
    CFrameWnd* const before = std::exchange(active, frame);
    if (before == frame) return;
    CView* const left = before ? before->GetActiveView() : nullptr;
    CView* const entered = frame ? frame->GetActiveView() : nullptr;
    if (left) left->OnActivateView(false, entered, left);
    // What is told may have chosen another frame, or closed this one.
    if (entered && active == frame) entered->OnActivateView(true, entered, left);
}

void CWinApp::frameLeaves(CFrameWnd& frame)
{
    if (active == &frame) setActiveFrame(nullptr);
}

void CWinApp::disposeFrame(CFrameWnd& frame)
{
    const auto found = std::ranges::find(opened, &frame, &std::unique_ptr<CFrameWnd>::get);
    if (found == opened.end()) return;
    closedFrames.push_back(std::move(*found));
    opened.erase(found);
}

void CWinApp::disposeDocument(std::unique_ptr<CDocument> document) { closedDocuments.push_back(std::move(document)); }

void CWinApp::freeClosed()
{
    // Freeing one may close others.
    while (!closedFrames.empty() || !closedDocuments.empty()) {
        const auto frames = std::exchange(closedFrames, {});
        const auto documents = std::exchange(closedDocuments, {});
    }
}

bool CWinApp::routeCommand(unsigned id, CCmdUI* ui) { return (active && active->OnCmdMsg(id, ui)) || OnCmdMsg(id, ui); }

bool CWinApp::routeMenuItems(unsigned first, std::vector<menu_item>& items)
{
    return (active && active->AppendMenuItems(first, items)) || AppendMenuItems(first, items);
}

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
