#include "entry/source_choice.h"

#include "base/text.h"
#include "platform/app/DocTemplate.h"
#include "platform/app/WinApp.h"
#include "platform/files/paths.h"
#include "resources/frame_templates.h"
#include "view/panes/TextView.h"

namespace vldv::entry {

namespace {

question source_question(const recovery::kept_document& kept)
{
    const std::string file = kept.source ? base::narrow(kept.source->path) : "its file";
    return {"Images of \"" + base::narrow(kept.title) + "\" that were not changed stand in " + file +
                ", which is not there any more, or not as it was.\n\nWhere is it now?",
            {"&Find the file...", "Open &without them", "Cancel"}};
}

/// What the user points at; nothing, said why, when the images are not in it.
std::optional<recovery::found_source> pointed_at(CWinApp& app, const recovery::kept_document& kept)
{
    open_prompt prompt;
    prompt.folder = platform::to_wide(platform::to_path(kept.path).parent_path());
    prompt.filter = "All Files (*.*)|*.*||";
    const std::vector<std::wstring> paths = app.host().askOpenPaths(prompt);
    if (paths.empty()) return std::nullopt;
    auto found = recovery::source_in(platform::to_path(paths.front()), kept);
    if (found && found->isWhole) return found;
    app.host().messageBox(base::narrow(paths.front()) + " does not hold the images as they were.",
                          message_icon::warning);
    return std::nullopt;
}

/// A file that was only moved is the document's own at its new place.
void move_along(recovery::kept_document& kept, const recovery::found_source& found)
{
    if (!found.isAsItWas) return;
    const std::wstring before = std::exchange(kept.source->path, platform::to_wide(found.file));
    kept.source->stamp = found.stamp;
    if (kept.path.starts_with(before)) kept.path.replace(0, before.size(), kept.source->path);
}

std::wstring lines_of(const recovery::text_table& texts)
{
    std::wstring lines;
    for (const auto& [key, text] : texts) lines += base::widen(key + ": " + text) + L"\n";
    return lines;
}

} // namespace

source_choice choose_source(recovery::kept_document& kept, const std::filesystem::path& folder)
{
    enum answer : std::size_t { find, without };
    CWinApp* const app = AfxGetApp();
    if (!app || !needs_source(kept)) return {};
    if (const auto found = find_source(kept, folder); found && found->isWhole) return {};
    const std::optional<std::size_t> chosen = app->host().ask(source_question(kept));
    if (chosen == without) return {};
    source_choice choice;
    if (chosen == find) choice.chosen = pointed_at(*app, kept);
    choice.isWanted = choice.chosen.has_value();
    if (choice.chosen) move_along(kept, *choice.chosen);
    return choice;
}

void show_texts(const recovery::kept_document& kept)
{
    CWinApp* const app = AfxGetApp();
    CDocTemplate* const maker = app ? app->findTemplate(textFrame) : nullptr;
    CDocument* const document = maker ? maker->CreateNewDocument() : nullptr;
    if (!document) return;
    document->SetTitle(kept.title.c_str());
    CTextView* const view = GetTextView(nullptr, document);
    if (!view) return;
    view->appendText(lines_of(kept.texts));
    for (const recovery::kept_image& image : kept.images)
        if (!image.texts.empty()) view->appendText(base::widen(image.id) + L"\n" + lines_of(image.texts));
}

} // namespace vldv::entry
