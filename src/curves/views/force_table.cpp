#include "curves/views/force_table.h"

#include "base/text.h"
#include "platform/app/WinApp.h"
#include "view/panes/TextView.h"

namespace vldv::curves {

void append_force_rows(CDocument* document, const std::string& heading, unsigned curves,
                       const std::function<std::optional<std::string>(unsigned curve)>& row)
{
    CTextView* const window = GetTextView(nullptr, document);
    if (!window) return;
    std::string rows;
    {
        const CWaitCursor wait;
        IHost& host = AfxGetApp()->host();
        for (unsigned k = 0; k < curves && host.progress(double{1.0} * k / curves); ++k)
            if (const std::optional<std::string> made = row(k)) rows += (rows.empty() ? "" : "\r\n") + *made;
    }
    if (!rows.empty()) window->appendText(base::widen(heading + rows));
}

} // namespace vldv::curves
