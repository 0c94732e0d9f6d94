#pragma once
#include <cstdint>

class CDocument;

/// What shows a document. Attached by `CDocument::AddView`, detached by `RemoveView` or by its destructor.
class CView {
public:
    CView() = default;
    CView(const CView&) = delete;
    CView& operator=(const CView&) = delete;
    virtual ~CView();

    CDocument* GetDocument() const noexcept { return document; }
    /// Something changed. \param sender  the view that changed it, or null; \param hint  what, see `CDocument`
    virtual void OnUpdate(CView* sender, std::uint32_t hint) = 0;

private:
    friend class CDocument;
    CDocument* document = nullptr;
};
