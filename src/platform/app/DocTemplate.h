#pragma once
#include "platform/app/CmdTarget.h"
#include "platform/app/Document.h"
#include "platform/app/RuntimeClass.h"
#include "vldv_api.h"

#include <memory>
#include <string>
#include <vector>

class CFrameWnd;

namespace vldv {

/// Fields of a document string, a line each.
enum document_string { windowTitle, docName, fileNewName, filterName, filterExt, regFileTypeId, regFileTypeName };

/// How well a template suits a file.
enum class match_confidence {
    noAttempt = 0,
    maybeForeign = 1,
    maybeNative = 2,
    yesForeign = 3,
    yesNative = 4,
    alreadyOpen = 5
};

} // namespace vldv

/// Ties a document class to a frame and a view class, under the number of their strings and menu, and owns the open
/// documents. The view class may be one that is not there yet: it is found by name when a frame is made.
class VLDV_API CDocTemplate : public CCmdTarget, public vldv::IDocumentOwner {
public:
    CDocTemplate(unsigned id_, std::string documentClass_, std::string frameClass_, std::string viewClass_);
    ~CDocTemplate() override;

    unsigned resourceId() const noexcept { return id; }
    /// One line of the document string, from the string table.
    std::string GetDocString(vldv::document_string field) const;
    const std::vector<std::unique_ptr<CDocument>>& documents() const noexcept { return opened; }
    const std::string& viewClass() const noexcept { return viewName; }

    /// A document without content, owned by this template. Null when its class is not there.
    virtual CDocument* CreateNewDocument();
    /// Drops a document that has no views.
    void deleteDocument(CDocument* document);
    /// A frame with a view of the template's classes, attached to `document`; null when a class is not there.
    virtual CFrameWnd* CreateNewFrame(CDocument* document, CFrameWnd* other);
    /// Gives a new frame its first update and shows it.
    virtual void InitialUpdateFrame(CFrameWnd* frame, CDocument* document, bool makeVisible);
    /// A null path makes an empty document. \return null when nothing was opened; the user was told
    virtual CDocument* OpenDocumentFile(const wchar_t* path, int addToMRU, int makeVisible) = 0;
    virtual vldv::match_confidence MatchDocType(const wchar_t* path, CDocument*& match);

    void documentClosed(CDocument& document) override;

protected:
    /// The frame of a view class by name, under another number than the template's own.
    /// \param frameClass_  empty: the template's own
    CFrameWnd* createFrame(CDocument* document, const std::string& view, unsigned menuId,
                           const std::string& frameClass_ = {});
    unsigned untitledCount = 0;

private:
    unsigned id;
    std::string documentName, frameName, viewName;
    std::vector<std::unique_ptr<CDocument>> opened;
};

/// A template whose frames show documents that others opened; it opens no files itself.
class VLDV_API CMultiDocTemplate : public CDocTemplate {
public:
    using CDocTemplate::CDocTemplate;
    CDocument* OpenDocumentFile(const wchar_t*, int, int) override { return nullptr; }
};
