#pragma once
#include "document/FileReader.h"
#include "document/MinMaxInfo.h"
#include "document/UndoData.h"
#include "document/history/content_state.h"
#include "document/history/own_files.h"
#include "document/samples/packed_bitmap.h"
#include "document/shared_decorations.h"
#include "platform/app/Document.h"
#include "vldv_api.h"

#include <algorithm>
#include <functional>
#include <list>
#include <map>
#include <memory>
#include <optional>
#include <ostream>
#include <span>
#include <string>
#include <type_traits>
#include <vector>

namespace vldv::document {
struct spmx_content;
}

/// The document of the workstation: images with their texts and overlays. Images are addressed by position,
/// sub-images by number; `unsigned(-1)` addresses the document's own text table. Indices are not checked unless said.
/// Every accessor takes a variable that is not an array for an empty one.
class VLDV_API CStorageDoc : public CDocument, public VLFileReader {
public:
    using string_table = std::map<std::string, std::string>;
    using text_changes = std::map<std::string, std::optional<std::string>>; ///< by key; nothing: no such text
    /// What an image was before a change, under its number in `contentState`.
    struct kept_step : CUndoData {
        kept_step(const char* declaration, std::size_t bytes, const void* samples, std::uint64_t state_)
            : CUndoData(declaration, bytes, samples), state(state_)
        {
        }
        std::uint64_t state;
        text_changes texts = {};                       ///< that changed with the step, as they were before
        std::uint64_t textsBefore = 0, textsAfter = 0; ///< numbers in `contentState`
    };
    /// The newest step is the last. A list moves without memory, which keeps `options` whole where a table grows.
    using history = std::list<kept_step>;
    static_assert(std::is_nothrow_move_constructible_v<history>);

    /// What the document keeps beside each image.
    class options {
    public:
        options() = default;
        options(const options& other);
        options(options&& other) noexcept = default;
        options& operator=(const options& other);
        options& operator=(options&& other) noexcept = default;
        virtual ~options() = default;

        unsigned subimageLength = 0;            ///< elements
        std::vector<unsigned> dimensionLengths; ///< as of the last `revalidateImage`
        string_table strings;
        vldv::document::packed_bitmap overlay; ///< null when there is none
        history undoSteps, redoSteps;
        vldv::document::shared_decorations drawings;
        std::uint64_t state = 0, overlayState = 0, drawingState = 0; ///< see document::content_state
    };

    CStorageDoc();
    ~CStorageDoc() override;

    // Images
    unsigned getImagesNumber() const override { return static_cast<unsigned>(images.size()); }
    const SPMDataStream& getImage(unsigned image) const override { return images[image]; }
    SPMDataStream& getImage(unsigned image) override { return images[image]; }
    /// Whole sub-images in the array; 0 for an image without points.
    unsigned getSubImagesNumber(unsigned image) const override;
    unsigned getSubImageLength(unsigned image) const override { return imageOptions[image].subimageLength; }
    /// Bytes of the array.
    std::size_t GetDataSize(unsigned image) const noexcept { return images[image].data_size(); }
    /// First element of a sub-image; null for a variable that is not an array.
    void* getImageDataS(unsigned image, unsigned sub) const noexcept
    {
        const SPMDataStream& stream = images[image];
        if (!stream.is_array()) return nullptr;
        return static_cast<char*>(stream.value.block.data) +
               std::size_t{imageOptions[image].subimageLength} * stream.value.block.elementSize * sub;
    }
    /// Copies `count` elements to element `first` of a sub-image, growing the array when needed.
    void setImageDataS(unsigned image, const void* data, unsigned count, unsigned first, unsigned sub);
    /// 16-bit elements of images of one, two and three dimensions.
    short& getDataPoint1S(unsigned image, int x, unsigned sub) const noexcept { return point(image, x, sub); }
    short& getDataPoint2S(unsigned image, int x, int y, unsigned sub) const noexcept
    {
        return point(image, std::ptrdiff_t{y} * images[image].get_dimension(0).length + x, sub);
    }
    short& getDataPoint3S(unsigned image, int x, int y, int z, unsigned sub) const noexcept
    {
        const std::ptrdiff_t width = images[image].get_dimension(0).length;
        const std::ptrdiff_t height = images[image].get_dimension(1).length;
        return point(image, z * width * height + y * width + x, sub);
    }
    /// Replaces the bitmap of an image by a copy of that of another, of the same shape.
    void copyOverlay(const CStorageDoc& source, unsigned targetImage, unsigned sourceImage)
    {
        setOverlay(targetImage, source.sharedOverlay(sourceImage));
    }
    void setOverlay(unsigned image, vldv::document::packed_bitmap overlay) noexcept;
    /// The packed bitmap, or null. It never changes: another one takes its place.
    const vldv::document::packed_bitmap& sharedOverlay(unsigned image) const noexcept
    {
        return imageOptions[image].overlay;
    }
    /// The packed bitmap, or null.
    const BITMAPINFOHEADER* getImageOverlay(unsigned image) const noexcept { return imageOptions[image].overlay.get(); }
    /// In range, an array, and with data: may be drawn.
    bool isImageOk(unsigned image) const noexcept;

    /// Axis of a dimension, or of the values for dimension `unsigned(-1)`. An axis past the end gives axis 0.
    const VLAxis& getAxis(unsigned image, unsigned axis, unsigned dimension) const;
    /// Stores the axis and tells the views.
    void setAxis(unsigned image, unsigned axis, const VLAxis& source, unsigned dimension);
    /// Range of one sub-image of 16-bit elements; a sub-image past the end gives that of sub-image 0.
    void getMinMaxInfo(unsigned image, CMinMaxInfo& info, unsigned sub) const;
    /// Equal lengths, and in each dimension an axis of the one that equals an axis of the other after conversion of
    /// units. Value axes do not count. False for indices out of range.
    bool similar_images(unsigned a, unsigned b) const;

    /// Appends copies and revalidates them.
    void AddNewImages(const SPMDataStream* streams, unsigned count) override;
    /// Gives missing axes, rounds the array up to whole sub-images, names untyped 16-bit data `int16`, and drops the
    /// overlay when a length changed. \throws std::length_error when the lengths exceed 32 bits of elements
    void revalidateImage(unsigned image) override;
    /// Closes the views of the image, removes it, and renumbers the views of later images.
    void RemoveImage(unsigned image) override;
    /// Makes a height image of a bitmap: the sum of its colour channels, bottom row first. `index` names an image to
    /// replace; any other value appends one. The bitmap itself becomes the overlay of the last image.
    /// \return false, with nothing changed, for a header or a compression that cannot be used
    bool SetDIB(const BITMAPINFOHEADER* header, const void* bits, const RGBQUAD* palette, int index) override;

    // History, kept for each image by whole copies. Every operation that changes data pushes an undo step first.
    // Indices past the end do nothing. Where memory runs out the user is warned, that history is emptied and work goes
    // on.
    void pushUndo(unsigned image, bool clearRedo);
    /// Changes texts of the image as a part of the last undo step: that brings them back as well.
    void changeTexts(unsigned image, const text_changes& changes);
    /// Writes the last undo step back and keeps it, as a live preview does again and again.
    void restore(unsigned image);
    /// One step back; the image's parameter stream takes one as well. The last step clears the modified flag, although
    /// it belongs to the whole document. A step that changes only samples needs no memory of the image's size
    /// but for the way forward. \throws std::bad_alloc with both images as they were and the steps kept
    void undo(unsigned image);
    /// One step forward again; sets the modified flag.
    void redo(unsigned image);
    /// Forgets the last step. Where the image is as it was before that, it counts as unchanged since.
    void dropUndo(unsigned image);
    void dropRedo(unsigned image);
    bool canUndo(unsigned image) const noexcept;
    bool canRedo(unsigned image) const noexcept;

    // Drawings of an image, in named groups: see `document::decorations`. They are not saved. An index past the end
    // does nothing and gives null, 0 or false.
    /// Replaces a group, or removes it with a count of 0; the image's views redraw in either case.
    void set_decoration(const char* key, const VLPluginDecoration* list, unsigned count, DecImageType type,
                        unsigned image);
    /// To be released by `free_decorations`. Texts and the bytes of elements belong to the document.
    VLPluginDecoration* get_decorations(const char* key, unsigned* outCount, DecImageType* outType,
                                        unsigned image) const;
    void free_decorations(VLPluginDecoration* copy) const noexcept;
    /// Copies at most `max` keys in order and returns how many; the count when `out` is null.
    unsigned get_decorations_list(std::string* out, unsigned max, unsigned image) const;
    void clear_decorations(unsigned image);
    /// Replaces the drawings of an image by a copy of those of another.
    void copyDecorations(const CStorageDoc& source, unsigned targetImage, unsigned sourceImage);
    void setDecorations(unsigned image, vldv::document::decorations drawings);
    const vldv::document::decorations& decorations(unsigned image) const noexcept
    {
        return imageOptions[image].drawings.get();
    }
    /// As they are now, which stays so; may be null when there are none.
    std::shared_ptr<const vldv::document::decorations> sharedDecorations(unsigned image) const noexcept
    {
        return imageOptions[image].drawings.share();
    }
    /// State word of the first decoration of this name.
    unsigned GetObjectFlags(unsigned image, const char* name) const noexcept;
    /// \return whether a decoration of this name changed; views are not told
    bool ObjectAction(unsigned image, ObjectActionType action, const char* name);
    /// Changes the first bitmap of a group in place, as a brush does; the image's views redraw that part of it alone.
    /// \param part  of the image, samples \return there is such a bitmap
    bool paintDecoration(const char* key, unsigned image, const CRect& part,
                         const std::function<void(vldv::document::decoration::element&)>& edit);
    /// Selects one decoration, or no longer, and has the image's views redraw.
    /// \param group, member  the group's position in the order of the keys, and the place in it
    void toggleDecoration(unsigned image, std::size_t group, std::size_t member);

    // Texts
    void setString(const char* key, const char* value, unsigned image) override;
    /// The value, or an empty text; never null. Valid until the table changes.
    const char* getString(const char* key, unsigned image) const override;
    /// Copies at most `max` keys in order and returns how many; the count when `out` is null.
    unsigned getStringsNames(std::string* out, unsigned max, unsigned image) const;
    void clearStrings(unsigned image);
    /// Replaces a table by a copy. A target of `unsigned(-1)` copies the document's table, whatever the source.
    void copyStrings(const CStorageDoc* source, unsigned targetImage, unsigned sourceImage);
    const string_table& strings(unsigned image) const noexcept;

    // Document
    bool OnCmdMsg(unsigned id, CCmdUI* ui) override;
    bool OnNewDocument() override;
    bool OnOpenDocument(const wchar_t* path) override;
    bool OnSaveDocument(const wchar_t* path) override;
    /// Saves to `path`, whatever is there, or asks for one when it is null or empty. With `replace` the document takes
    /// the path over.
    virtual bool DoSave(const wchar_t* path, int replace);
    /// Saves where the document is held, as the user's command does: asks for a path when it has none, and what to do
    /// with a file that it neither read nor wrote.
    bool Save();
    void Serialize(CArchive& archive) override;
    void DeleteContents() override;
    void SetPathName(const wchar_t* path, int addToMRU) override;
    /// Reads the file again. Windows of images that are gone close, and all other views are told, also where reading
    /// fails, which empties the document. \return false when the file could not be opened, with nothing changed
    /// \throws CArchiveException when it cannot be read
    bool Revert();
    /// Moves a view to the head of the list.
    void setFirstView(const CView* view) { moveViewToFront(view); }
    /// Gives `target`, a document made from one image of this, its title and its texts.
    void Derive(unsigned sourceImage, CStorageDoc& target);
    /// Gives `target` the title of the next copy of this document.
    void deriveTitle(CStorageDoc& target);
    /// Writes main.xml and stores the raw entry names of the first `maxRaw` streams. \return how many were stored
    int generateXML(std::ostream& out, smart_string* rawNames, int maxRaw, const char* encoding) const;

    // What has changed
    /// Differs from what its file held when it was last read or written; a document without a file always does.
    bool isChanged() const noexcept override;
    vldv::document::content_state contentState() const;
    /// What the file holds that was last read or written; nothing for a document that never had one.
    const std::optional<vldv::document::content_state>& storedState() const noexcept { return storedContent; }
    const vldv::document::own_files& ownFiles() const noexcept { return knownFiles; }
    /// The samples of an image in a state, wherever they are now: in the image or in its history. Nothing when they are
    /// gone. Valid until the next change of the document.
    std::optional<std::span<const std::byte>> samplesIn(std::uint64_t state) const noexcept;
    /// The file that `storedState` tells of; null when that content is in no single file.
    const vldv::document::own_files::entry* storedFile() const noexcept { return storedIn ? &*storedIn : nullptr; }
    /// As if the document had been read from `file` with the content `state`, and was changed since.
    void setStored(const vldv::document::own_files::entry& file, vldv::document::content_state state);
    /// What is here was put together from several files: it counts as unchanged and has no file of its own yet.
    void becomeUnfiled();
    /// The images only show what another document holds, as a magnifier does: they are not the user's work, and nothing
    /// counts as changed, nor do texts, which say how it is shown. The next undo step or added image makes a document
    /// of its own of it.
    void setDisplayOnly(bool on);
    bool isDisplayOnly() const noexcept { return displayOnly; }
    /// A file is just being read: what is here is half there.
    bool isBeingRead() const noexcept { return reading; }
    /// Damaged images of the file that was read last were left out, and no save has followed. The document has no claim
    /// on that file: nothing may replace it without being asked.
    bool isOfDamagedFile() const noexcept { return !damagedFile.empty(); }
    /// Gives the images away, their numbers beside them; the document is empty afterwards.
    std::vector<std::pair<std::uint64_t, SPMDataStream>> releaseImages();

    const std::wstring& getFullPath() const noexcept { return fullPath; }
    const std::wstring& getFileName() const noexcept { return fileName; }
    std::uint64_t getFileSize() const noexcept { return std::uint64_t{fileSizeHigh} << 32 | fileSizeLow; }
    /// What titles are made of.
    struct title_parts {
        std::string base, display; ///< see the members of the document
        unsigned derived = 0;      ///< copies made of it
        bool operator==(const title_parts&) const = default;
    };
    title_parts titleParts() const { return {baseTitle, displayTitle, derivedCount}; }
    void setTitleParts(const title_parts& parts);

protected:
    bool doReadFile(std::istream& in) override;
    void setDisplayTitle(const std::string& text) override { displayTitle = text; }

private:
    short& point(unsigned image, std::ptrdiff_t element, unsigned sub) const noexcept
    {
        const SPMDataStream& stream = images[image];
        const std::size_t bytes = stream.value.block.elementSize;
        return *reinterpret_cast<short*>(static_cast<char*>(getImageDataS(image, sub)) +
                                         element * static_cast<std::ptrdiff_t>(bytes));
    }
    void OnFileSave();
    void OnFileSaveAs();
    void OnFileRevert();
    void OnFileDelete();
    void OnShowAllImages();
    void OnUpdateRevert(CCmdUI& ui);
    void OnUpdateSave(CCmdUI& ui);
    /// What is here came from another file than the one in which it is to be saved, and was never saved.
    bool isUnfiled() const;
    string_table& table(unsigned image) noexcept;
    /// A step that leads back to what the image is now. Where there is no memory, `stack` is given up and the user
    /// warned. \return the step alone, or nothing
    history snapshot(unsigned image, history& stack, unsigned lostText);
    struct image_shape {
        unsigned subimageLength;
        std::vector<unsigned> dimensionLengths;
    };
    /// What `revalidateImage` does to a stream. \return what the document keeps of it
    static image_shape revalidated(SPMDataStream& stream);
    void adoptShape(unsigned image, image_shape&& shape) noexcept;
    class restoration;
    class history_step;
    void move(unsigned image, history options::* from, history options::* to, unsigned lostText);
    /// The other image that `image`, with the names of `stream`, is measured against, or `unsigned(-1)`.
    unsigned parameterImage(unsigned image, const SPMDataStream& stream) const noexcept;
    void readOpened(std::istream& in, std::uint64_t size);
    /// Closes the windows of images from `first` to `last`.
    void closeViewsOf(unsigned first, unsigned last);
    /// What a container is written from.
    vldv::document::spmx_content content() const;
    std::wstring askSavePath(bool replace) const;
    /// The path that the dialog begins with; empty: none.
    std::wstring suggestedPath(bool replace) const;
    /// The path to write instead of `target`, where something is that is not this document's; empty: the user
    /// cancelled.
    std::wstring confirmedTarget(const std::wstring& target) const;
    bool saveTo(const std::wstring& target, bool replace);
    /// \param stamp  of the file whose content the document has, which may be another by now; nothing for none
    void wasStored(const std::wstring& path, const std::optional<vldv::platform::file_stamp>& stamp);
    /// The image has other samples now.
    void renumber(unsigned image) noexcept;
    void drawingsChanged(unsigned image) noexcept;
    void textsChanged();
    static std::uint64_t newState() noexcept;
    /// Marks the titles, or no longer, when that is news.
    void noteChange();

    std::vector<SPMDataStream> images;
    std::vector<options> imageOptions;
    string_table documentStrings;
    unsigned derivedCount = 0;
    std::string baseTitle; ///< inherited by derived documents
    std::wstring fullPath, fileName;
    std::uint32_t fileSizeLow = 0, fileSizeHigh = 0;
    std::string displayTitle; ///< overrides the file name as title when not empty
    bool incomplete = false;  ///< the last reading failed or was cancelled: there is nothing worth saving
    bool reading = false;
    std::uint64_t textState = 0; ///< see document::content_state
    std::optional<vldv::document::content_state> storedContent;
    std::optional<vldv::document::own_files::entry> storedIn;
    std::wstring damagedFile; ///< of which images were left out when it was read; empty: none
    vldv::document::own_files knownFiles;
    bool isMarked = false; ///< titles say that it has changed
    bool displayOnly = false;
};
