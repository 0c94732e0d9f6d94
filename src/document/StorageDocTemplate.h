#pragma once
#include "document/StorageDoc.h"
#include "platform/app/DocTemplate.h"
#include "platform/draw/geometry.h"
#include "vldv_api.h"

#include <optional>
#include <span>

/// The template of storage documents: reads files, merges several into one, and chooses a view for each image by its
/// shape. Views that it has no class of stay closed, and the output pane says so.
class VLDV_API CStorageDocTemplate : public CMultiDocTemplate {
public:
    using CMultiDocTemplate::CMultiDocTemplate;

    CDocument* OpenDocumentFile(const wchar_t* path, int addToMRU, int makeVisible) override;
    /// Without merging and without the recent list; without frames unless it is visible.
    CDocument* OpenDocumentFileNoMRU(const wchar_t* path, int makeVisible);
    /// In quick-view frames.
    CDocument* QuickViewOpenDocumentFile(const wchar_t* path, int makeVisible);
    vldv::match_confidence MatchDocType(const wchar_t* path, CDocument*& match) override;

    /// A frame on each image from the opening image on, except those that only parametrise another.
    /// \return false, with the document deleted, when there is none
    bool CreateFr(const wchar_t* path, int makeVisible, CDocument* document);
    /// The frame of the opening image, by its number of dimensions. Null for shapes that nothing shows.
    CFrameWnd* CreateNewFrame(CDocument* document, CFrameWnd* other) override;
    /// Brings the frames of all images to the front and opens those that are missing; images that only parametrise
    /// another only with `all`.
    void ShowAllViews(CStorageDoc* document, bool all);
    void ShowView(CStorageDoc* document, int image);

    /// True when there is a view for images of that many dimensions.
    static bool showsDimensions(unsigned count);

    unsigned getOpeningImage() const noexcept { return openingImage; }
    void setOpeningImage(unsigned image) noexcept { openingImage = image; }
    void ResetWndPos() noexcept { top = left = rowHeight = 0; }
    /// Tiles a frame behind those placed since `ResetWndPos`.
    void PositionNextFrame(CFrameWnd* frame);
    /// Bracket the opening of several files that may be merged.
    void setFirstMerged();
    void setLastMerged();

private:
    struct shape_view {
        std::string view;
        unsigned menuId = 0;
    };
    CStorageDoc* readDocument(const wchar_t* path);
    CDocument* newDocument(int makeVisible);
    CDocument* openDocumentOf(const std::wstring& full) const;
    void adoptPath(CStorageDoc& document, const wchar_t* path, int addToMRU);
    std::vector<CStorageDoc*> mergeInto(CStorageDoc& first, std::span<CStorageDoc* const> others);
    void nameMerged(CStorageDoc& merged);
    bool isMergingOn() const;
    std::optional<std::wstring> fileToOpen(const wchar_t* path);
    std::wstring extension() const;
    shape_view viewFor(const CStorageDoc& document) const;
    static shape_view viewFor(unsigned dimensions);
    CFrameWnd* shownFrame(CStorageDoc& document, unsigned image);

    int top = 0, left = 0, rowHeight = 0; ///< cascade of quick-view frames
    unsigned openingImage = 0;
    bool firstMerged = false;
    bool opensSeveral = false; ///< between `setFirstMerged` and `setLastMerged`
    enum class wanted_file { latestResult, recording };
    std::optional<wanted_file> severalAnswer; ///< what was chosen for one of several holds for the others
    std::vector<CStorageDoc*> mergeList;
};
