#pragma once
#include "document/Decorations.h"
#include "document/ImageBoundView.h"
#include "plugins/PluginRequest.h"
#include "view/DCView.h"
#include "vldv_api.h"

#include <vector>

class CChildFrame;
class CStorageDoc;

namespace vldv {
class IVolumeSource;
}

class SPMDataStream;
namespace vldv::document {
class extracted_texts;
}

/// Base of the views bound to one image of a document and one of its sub-images. Keeps the tree of views that were
/// opened from each other, reacts to the document's hints, and holds the commands common to views of data.
class VLDV_API CImageView : public CDCView,
                            public vldv::IImageBoundView,
                            public IPluginReportCallback,
                            public IPluginDecorationsCallback,
                            public IPluginTableCallback {
public:
    CImageView() = default;
    ~CImageView() override;

    /// The image has a bitmap that the view can show instead of the data.
    virtual bool supportsOverlay() { return false; }
    /// The stream that the data is measured against, or null.
    virtual const SPMDataStream* getParameterStream() { return nullptr; }
    virtual bool ObjectAction(ObjectActionType action, const char* name);
    /// Connects frame and view.
    virtual void InitImageView();
    /// Reads what the view shows; keeps `subImageNumber` in range here.
    virtual void LoadData();
    /// Physical range of the active sub-image in units that read well. Each pointer may be null; the text lives as long
    /// as units do, which is for ever.
    virtual void getBestScale(double* low, double* high, const char** units);
    /// Fills at most `count` records and returns how many; with null, how many there are.
    virtual int GetDataSelection(VLPluginDataSelection*, unsigned) { return 0; }
    virtual void UpdateSelections() {}
    /// Another sub-image became the active one: the view reads what it shows anew.
    virtual void showSubImage();
    /// Gives `target` the shape and data that selections name; leaves it without data when it cannot.
    virtual void getSelectionCopy(SPMDataStream&, const VLPluginDataSelection*, unsigned) {}

    // Export. Derived views add formats behind those of their base.
    /// Names of formats and their patterns, each followed by a bar.
    virtual std::wstring GetExportFilters();
    /// Fills at most `count` pointers to the parameters of a format, from 0. \return how many it has
    virtual int GetExportParameters(int format, SPMVar** vars, int count);
    /// Writes a file in the format `filter`, from 1 as file dialogs count, and tells the user of a failure. Does
    /// nothing for a format that the class does not have.
    virtual void Export(int filter, const wchar_t* path);

    CStorageDoc* storageDoc() const noexcept;
    /// Clamps; a new one is shown.
    void setActiveSubimage(unsigned sub);
    void setSubImageNumber(unsigned sub) noexcept { subImageNumber = sub; }
    unsigned getSubImageNumber() const noexcept { return subImageNumber; }
    /// Leaves an earlier one.
    void SetParentView(CImageView* parent_);
    CImageView* getParentView() const noexcept { return parentView; }
    void OnChildViewClosed(CView* view);
    const std::vector<CImageView*>& getChildViews() const noexcept { return childViews; }
    void BringToFront();
    /// A copy of what `source` shows: cropped to its selection where it has one.
    static void copy_image(SPMDataStream& target, CImageView& source);
    /// The document's first view of a volume, or null.
    vldv::IVolumeSource* Get3DCloudView() const;
    /// Takes the curves under the selected rectangles into a new document. \return null when nothing is selected
    CStorageDoc* extract_curves(vldv::IVolumeSource& cloud);
    /// Takes the curve at (x, y), of every sub-image, into `target`, or a new document for null: as further sub-images
    /// of its last stream with `merge`, else as a stream of its own. \return the document
    CStorageDoc* ExtractCurveFrom3DCloud(vldv::IVolumeSource& cloud, int x, int y, CStorageDoc* target, bool merge);
    /// A dialog that works on this view's image is open.
    virtual bool isOperationOpen() const { return false; }

    /// Runs the dialog of a built-in operation. The variables begin with what the profile keeps of them and come back
    /// as the user left them, which the profile keeps; cancelling changes nothing.
    /// \param name      of the layout, an interface file, and below "Plugins" of the profile's section
    /// \param handler   told of each change, and once before the first; may be null
    /// \param commands  told of the layout's buttons; may be null
    /// \param asks      false: what is kept counts, and no dialog is shown
    /// \param exclude   names that the profile does not keep, closed by a null pointer; null for none
    /// \return false when it was cancelled
    bool CallParametersDialog(SPMVar* vars, unsigned count, const char* name, SPMVarListHandler* handler,
                              CVarListDlgHandler* commands, bool asks, const char** exclude);

    // Seams and framework
    unsigned getImageNumber() const override { return imageNumber; }
    void setImageNumber(unsigned image_) override { imageNumber = image_; }
    void LoadOptions() override { CDCView::LoadOptions(nullptr); }
    using CDCView::LoadOptions;
    void closeFrame() override;
    void Report(const char* text) override;
    void Decorate(const VLPluginDecoration* list, unsigned count, int imageType, VLPluginDecorationTarget target,
                  int index) override;
    void PlotHistogram(IPluginTable* table) override;

    void GetOptionsList(SPMVar* vars, unsigned* count) override;
    void OnUpdate(CView* sender, std::uint32_t hint, const vldv::hint_object& object) override;
    void OnFrameClosed() override;
    bool OnKeyDown(unsigned key) override;
    void OnLButtonUp(unsigned flags, CPoint point) override;
    bool OnCmdMsg(unsigned id, CCmdUI* ui) override;

protected:
    void OnViewParameters();
    void OnViewDisplayparameters();
    void OnUpdateViewDisplayparameters(CCmdUI& ui);
    void OnEditUndo();
    void OnUpdateEditUndo(CCmdUI& ui);
    void OnEditRedo();
    void OnUpdateEditRedo(CCmdUI& ui);
    void OnFileExport();
    void OnUpdateFileExport(CCmdUI& ui);
    void OnViewClone();
    void OnClearDecorations();
    void OnUpdateClearDecorations(CCmdUI& ui);

    /// Raw samples as physical values in the unit in which the larger reads well; each pointer may be null.
    void readWell(int minimum, int maximum, double* low, double* high, const char** units) const;

    /// A frame on each image of a new document.
    void openFrames(CStorageDoc& document);

    unsigned imageNumber = 0;
    unsigned subImageNumber = 0;

private:
    vldv::document::extracted_texts textsOf(vldv::IVolumeSource& cloud) const;
    CStorageDoc* extractCurve(vldv::IVolumeSource& cloud, const vldv::document::extracted_texts& texts, int x, int y,
                              CStorageDoc* target, bool merge);
    std::vector<VLPluginDataSelection> selections();
    bool choosesVolumeCopy();

    std::vector<CImageView*> childViews; ///< opened from this view, in order
    CImageView* parentView = nullptr;
};
