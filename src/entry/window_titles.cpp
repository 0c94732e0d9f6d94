#include "entry/window_titles.h"

#include "base/text.h"
#include "entry/save_documents.h"
#include "platform/app/Document.h"

#include <algorithm>

namespace vldv::entry {

namespace {

CDocument* document_of(const CFrameWnd& frame)
{
    return frame.GetActiveView() ? frame.GetActiveView()->GetDocument() : nullptr;
}

} // namespace

std::vector<std::string> window_titles(const std::vector<std::unique_ptr<CFrameWnd>>& frames)
{
    // The titles of two files of one name may differ all the same, by a star or a zoom: their documents are told apart.
    std::vector<CDocument*> documents;
    for (const std::unique_ptr<CFrameWnd>& frame : frames)
        if (CDocument* const shown = document_of(*frame); shown && std::ranges::count(documents, shown) == 0)
            documents.push_back(shown);
    const std::vector<std::string> labels = telling_labels(documents);
    std::vector<std::string> titles;
    for (const std::unique_ptr<CFrameWnd>& frame : frames) {
        titles.push_back(base::narrow(frame->GetWindowText()));
        const auto found = std::ranges::find(documents, document_of(*frame));
        if (found == documents.end()) continue;
        const std::string& label = labels[static_cast<std::size_t>(found - documents.begin())];
        titles.back() += label.substr(base::narrow((*found)->GetTitle()).size());
    }
    return telling_labels(std::move(titles), std::vector<CDocument*>(frames.size()));
}

} // namespace vldv::entry
