#pragma once
#include "vldv_api.h"

#include <string>

struct CCmdUI;

namespace vldv {

/// A pane of text or a table, as far as its commands look at it. Lines end in "\r\n" or "\n".
class VLDV_API IPaneContent {
public:
    /// All of it; cells of a table are joined by tabs, under the headings.
    virtual std::wstring allText() const = 0;
    /// What the user has selected; empty: nothing.
    virtual std::wstring selectedText() const = 0;
    virtual void selectAll() = 0;
    /// What it is called on paper and, behind the folder, in a file.
    virtual std::wstring paneTitle() const = 0;
    /// Folder that a file is suggested in; empty: the present one.
    virtual std::wstring paneFolder() const { return {}; }
    /// All of it stands in a file or on the clipboard now.
    virtual void contentKept() {}

protected:
    ~IPaneContent() = default;
};

} // namespace vldv

namespace vldv::view {

/// "Copy" (the selection, or all), "Select All", "Save" and "Save As" (the text, to a file that the user names) and the
/// three commands of printing. \return false when it is none of these
VLDV_INTERNAL_API bool pane_command(IPaneContent& content, unsigned id, CCmdUI* ui);

} // namespace vldv::view
