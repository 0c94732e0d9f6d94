#pragma once
#include "view/panes/PaneView.h"
#include "vldv_api.h"

#include <string>

/// The text window of a document, to which tables of results are appended.
class VLDV_API CTextView : public vldv::CPaneView {
public:
    /// On a line of its own, with line ends "\r\n"; a first line equal to the first line that is there is left out, so
    /// that the header of a table stands once.
    void appendText(const std::wstring& more);
    const std::wstring& getText() const noexcept { return text; }
    void Clear();
    void contentKept() override { isKept = true; }
    /// Closing the window loses text that stands nowhere else. The user is asked. \return it may close
    bool mayClose();

    vldv::window_kind kind() const noexcept override { return vldv::window_kind::text; }
    std::wstring allText() const override { return text; }
    std::wstring selectedText() const override;
    void OnUpdate(CView*, std::uint32_t, const vldv::hint_object&) override {}
    void OnInitialUpdate() override;

private:
    std::wstring text;
    bool isKept = true; ///< nothing was added since it was saved or copied
};

/// The text window of a document, opened when there is none. \param created  may be null \return null when it cannot be
VLDV_API CTextView* GetTextView(bool* created, CDocument* document);
