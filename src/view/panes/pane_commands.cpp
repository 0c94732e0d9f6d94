#include "view/panes/pane_commands.h"

#include "base/text.h"
#include "output/csv_text.h"
#include "platform/app/Clipboard.h"
#include "platform/app/WinApp.h"
#include "platform/files/Exceptions.h"
#include "platform/files/paths.h"
#include "platform/files/text_file.h"
#include "resources/commands.h"
#include "resources/string_ids.h"
#include "resources/strings.h"
#include "view/DCView.h"
#include "view/panes/text_pages.h"

#include <memory>

namespace vldv::view {

namespace {

constexpr const char *extension = "txt", *tableExtension = ".csv";
constexpr const char* tableFilter = "Comma Separated Values (*.csv)|*.csv|";

void copy(IPaneContent& content)
{
    const open_clipboard clipboard;
    if (!clipboard) return;
    const std::wstring selected = content.selectedText();
    clipboard->empty();
    clipboard->setText(selected.empty() ? content.allText() : selected);
    if (selected.empty() || selected == content.allText()) content.contentKept();
}

std::wstring suggested_path(const IPaneContent& content)
{
    std::wstring name = content.paneTitle();
    for (wchar_t& c : name)
        if (c == L'/') c = L'_';
    const std::wstring folder = content.paneFolder();
    return (folder.empty() ? name : folder + L'/' + name) + L'.' + base::widen(extension);
}

void save(IPaneContent& content, IHost& host)
{
    const auto path = host.askSavePath({.suggestedPath = suggested_path(content),
                                        .filter = std::string(string_resource(texts::textFilter)) + tableFilter,
                                        .extension = extension});
    if (!path) return;
    try {
        const std::filesystem::path file = platform::to_path(*path);
        const std::string text = base::narrow(content.allText());
        const bool isTable = base::equal_ignoring_case(file.extension().string(), tableExtension);
        platform::write_text_file(file, isTable ? output::comma_separated(text) : text);
        content.contentKept();
    } catch (const CException& failure) {
        host.messageBox(failure.what(), message_icon::error);
    }
}

/// The text is taken now: the pane may change, or go, while the sheets are looked at.
print_job job_of(const IPaneContent& content, bool asks)
{
    const auto pages = std::make_shared<text_pages>(content.allText(), content.paneTitle(), CDCView::rtMargin);
    return {content.paneTitle(), [pages](CDC& dc, int page) { return pages->draw(dc, page); }, asks};
}

} // namespace

bool pane_command(IPaneContent& content, unsigned id, CCmdUI* ui)
{
    CWinApp* const app = AfxGetApp();
    const bool isKnown = id == commands::save || id == commands::saveAs || id == commands::print ||
                         id == commands::printDirect || id == commands::printPreview || id == commands::copy ||
                         id == commands::selectAll;
    if (!app || !isKnown) return false;
    if (ui) return true;
    if (id == commands::copy) copy(content);
    if (id == commands::selectAll) content.selectAll();
    if (id == commands::save || id == commands::saveAs) save(content, app->host());
    if (id == commands::print || id == commands::printDirect) app->host().print(job_of(content, id == commands::print));
    if (id == commands::printPreview) app->host().previewPrint(job_of(content, false));
    return true;
}

} // namespace vldv::view
