#pragma once
#include "platform/app/View.h"
#include "platform/files/Archive.h"
#include "vldv_api.h"

#include <cstdint>
#include <string>
#include <vector>

class CDocTemplate;
class CDocument;

namespace vldv {

/// Who holds documents; told when one has closed and may be destroyed (later, never inside its own operation).
class VLDV_API IDocumentOwner {
public:
    virtual void documentClosed(CDocument& document) = 0;

protected:
    ~IDocumentOwner() = default;
};

} // namespace vldv

/// Path, title, modified flag and views of one document. Interface thread only.
class VLDV_API CDocument : public CCmdTarget {
public:
    CDocument() = default;
    CDocument(const CDocument&) = delete;
    CDocument& operator=(const CDocument&) = delete;
    ~CDocument() override;

    virtual bool OnNewDocument();
    virtual bool OnOpenDocument(const wchar_t* path);
    /// Writes beside the target and renames once the new file is whole; the old file stays on any failure.
    /// \return false after the failure was shown to the user
    virtual bool OnSaveDocument(const wchar_t* path);
    /// Empties the document and tells its owner.
    virtual void OnCloseDocument();
    virtual void DeleteContents() {}
    /// \return whether the document may close
    virtual bool SaveModified() { return true; }
    virtual void Serialize(CArchive&) {}

    /// An absolute path, or empty.
    const std::wstring& GetPathName() const noexcept { return pathName; }
    virtual void SetPathName(const wchar_t* path, int addToMRU);
    const std::wstring& GetTitle() const noexcept { return title; }
    virtual void SetTitle(const wchar_t* text);
    bool IsModified() const noexcept { return modified; }
    virtual void SetModifiedFlag(bool isModified = true) { modified = isModified; }
    /// Whether the user would lose work by closing; the flag also says that a file is of a foreign format.
    virtual bool isChanged() const noexcept { return modified; }

    void AddView(CView* view);
    /// The last view to leave closes the document unless `autoDelete` is off.
    void RemoveView(CView* view);
    const std::vector<CView*>& views() const noexcept { return attached; }
    /// Tells all views but the sender. A view that leaves meanwhile is skipped, one that joins is not told.
    void UpdateAllViews(CView* sender, std::uint32_t hint = 0, const vldv::hint_object& object = {});

    void setOwner(vldv::IDocumentOwner* owner_) noexcept { owner = owner_; }
    void setTemplate(CDocTemplate* template_) noexcept { docTemplate = template_; }
    /// Null for a document outside of a workstation.
    CDocTemplate* GetDocTemplate() const noexcept { return docTemplate; }

    bool autoDelete = true; ///< close with the last view

protected:
    /// Shows why saving or loading failed. The default gives the exception's text to a message box.
    virtual void ReportSaveLoadException(const wchar_t* path, const CException& failure, bool saving);
    void moveViewToFront(const CView* view);
    /// Has the frames of all views show their titles anew.
    void updateFrameTitles() const;

    std::wstring pathName;
    std::wstring title;
    bool embedded = false;

private:
    bool modified = false;
    std::vector<CView*> attached;
    vldv::IDocumentOwner* owner = nullptr;
    CDocTemplate* docTemplate = nullptr;
};
