#include "base/text.h"
#include "document/StorageDoc.h"
#include "document/update_hints.h"
#include "platform/app/DocTemplate.h"
#include "platform/app/FrameWnd.h"
#include "platform/app/WinApp.h"
#include "platform/files/paths.h"
#include "resources/commands.h"
#include "resources/frame_templates.h"
#include "resources/string_ids.h"
#include "resources/strings.h"
#include "view/ImageView.h"
#include "view/image/FeaturesSource.h"
#include "view/panes/ParDisplayDlg.h"

#include <algorithm>

using namespace vldv;

namespace {

constexpr const char* parametersListKey = "ParametersList";

/// The view that enumerates the features of an image; null for none.
IFeaturesSource* features_source(CDocument* document, unsigned image)
{
    if (!document) return nullptr;
    for (CView* const each : document->views()) {
        const auto* const view = dynamic_cast<const CImageView*>(each);
        if (!view || view->getImageNumber() != image) continue;
        if (auto* const source = dynamic_cast<IFeaturesSource*>(each)) return source;
    }
    return nullptr;
}

} // namespace

bool CImageView::OnCmdMsg(unsigned id, CCmdUI* ui)
{
    static constexpr command_row<CImageView> rows[] = {
        {commands::parameters, &CImageView::OnViewParameters},
        {commands::duplicate, &CImageView::OnViewClone},
        {commands::displayParameters, &CImageView::OnViewDisplayparameters, &CImageView::OnUpdateViewDisplayparameters},
        {commands::clearDecorations, &CImageView::OnClearDecorations, &CImageView::OnUpdateClearDecorations},
        {commands::exportView, &CImageView::OnFileExport, &CImageView::OnUpdateFileExport},
        {commands::undo, &CImageView::OnEditUndo, &CImageView::OnUpdateEditUndo},
        {commands::redo, &CImageView::OnEditRedo, &CImageView::OnUpdateEditRedo},
    };
    return dispatch_command<CImageView>(*this, rows, id, ui) || CDCView::OnCmdMsg(id, ui);
}

void CImageView::OnEditUndo()
{
    IFeaturesSource* const painted = features_source(GetDocument(), imageNumber);
    if (painted && painted->canUndoPainting()) return painted->undoPainting();
    storageDoc()->undo(imageNumber);
}

void CImageView::OnEditRedo()
{
    IFeaturesSource* const painted = features_source(GetDocument(), imageNumber);
    if (painted && painted->canRedoPainting()) return painted->redoPainting();
    storageDoc()->redo(imageNumber);
}

void CImageView::OnUpdateEditUndo(CCmdUI& ui)
{
    const IFeaturesSource* const painted = features_source(GetDocument(), imageNumber);
    ui.Enable(storageDoc() && !isOperationOpen() &&
              ((painted && painted->canUndoPainting()) || storageDoc()->canUndo(imageNumber)));
}

void CImageView::OnUpdateEditRedo(CCmdUI& ui)
{
    const IFeaturesSource* const painted = features_source(GetDocument(), imageNumber);
    ui.Enable(storageDoc() && !isOperationOpen() &&
              ((painted && painted->canRedoPainting()) || storageDoc()->canRedo(imageNumber)));
}

void CImageView::OnClearDecorations()
{
    storageDoc()->clear_decorations(imageNumber);
    storageDoc()->UpdateAllViews(nullptr, document::drawing_hint(imageNumber));
}

void CImageView::OnUpdateClearDecorations(CCmdUI& ui)
{
    ui.Enable(storageDoc() && storageDoc()->get_decorations_list(nullptr, 0, imageNumber) > 0);
}

void CImageView::OnViewDisplayparameters()
{
    CWinApp* const app = AfxGetApp();
    if (!app || !storageDoc() || imageNumber >= storageDoc()->getImagesNumber()) return;
    const std::string kept = app->profile().readString(GetViewSection(), parametersListKey).value_or("");
    CParDisplayDlg dialog(*storageDoc(), imageNumber, kept);
    if (!app->host().runListChooser(dialog)) return;
    app->profile().writeString(GetViewSection(), parametersListKey, dialog.listText());
    Invalidate(true);
}

void CImageView::OnUpdateViewDisplayparameters(CCmdUI& ui)
{
    // Only where a legend shows what is chosen.
    ui.Enable(storageDoc() && imageNumber < storageDoc()->getImagesNumber() &&
              options.get_var_i("ShowParameters") != unsigned(-1));
}

void CImageView::OnViewParameters()
{
    CWinApp* const app = AfxGetApp();
    CDocTemplate* const maker = app ? app->findTemplate(parametersFrame) : nullptr;
    if (!maker) return;
    if (CFrameWnd* const frame = maker->CreateNewFrame(GetDocument(), GetParentFrame()))
        maker->InitialUpdateFrame(frame, GetDocument(), true);
}
