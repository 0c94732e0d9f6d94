#include "entry/templates.h"

#include "document/StorageDocTemplate.h"
#include "platform/app/WinApp.h"
#include "resources/frame_templates.h"
#include "surface/views/QVSurfView.h"
#include "view/ChildFrame.h"
#include "view/panes/ParametersView.h"
#include "view/panes/TextView.h"
#include "vldv.h"

namespace {

constexpr CRuntimeClass storageDoc = {"CStorageDoc", nullptr, create_object<CStorageDoc>};
constexpr CRuntimeClass plainDoc = {"CDocument", nullptr, create_object<CDocument>};
constexpr CRuntimeClass childFrame = {"CChildFrame", nullptr, create_object<CChildFrame>};
constexpr CRuntimeClass quickFrame = {"CQVChildFrame", &childFrame, create_object<CQVChildFrame>};
constexpr CRuntimeClass surfaceView = {"CSurfMathView", nullptr, create_object<CSurfMathView>};
constexpr CRuntimeClass quickView = {"CQVSurfView", &surfaceView, create_object<CQVSurfView>};
constexpr CRuntimeClass parametersView = {"CParametersView", nullptr, create_object<CParametersView>};
constexpr CRuntimeClass textView = {"CTextView", nullptr, create_object<CTextView>};

/// All templates, in the order of their making. One object, so that start and stop have one order; views that have no
/// class yet are found by name once there is one.
struct all_templates {
    CStorageDocTemplate surface{surfaceFrame, "CStorageDoc", "CChildFrame", "CSurfMathView"};
    CMultiDocTemplate section{sectionFrame, "CStorageDoc", "CChildFrame", "CSectionView"};
    CMultiDocTemplate line{lineFrame, "CStorageDoc", "CChildFrame", "CLineView"};
    CMultiDocTemplate scene{sceneFrame, "CStorageDoc", "CChildFrame", "C3DView"};
    CMultiDocTemplate histogram{histogramFrame, "CStorageDoc", "CChildFrame", "CHistogramView"};
    CMultiDocTemplate parameters{parametersFrame, "CDocument", "CChildFrame", "CParametersView"};
    CMultiDocTemplate fourier{fourierFrame, "CStorageDoc", "CChildFrame", "CFourierView"};
    CMultiDocTemplate capture{captureFrame, "CVideoPreviewDoc", "CChildFrame", "CVideoPreviewWnd"};
    CMultiDocTemplate features{featuresFrame, "CStorageDoc", "CChildFrame", "CFeaturesHistogramView"};
    CMultiDocTemplate featuresTable{featuresTableFrame, "CStorageDoc", "CChildFrame", "CFeaturesTableView"};
    CMultiDocTemplate text{textFrame, "CDocument", "CChildFrame", "CTextView"};
    CMultiDocTemplate volume{volumeFrame, "CStorageDoc", "CChildFrame", "C3DCloudView"};
    CMultiDocTemplate parametric{parametricFrame, "CStorageDoc", "CChildFrame", "CParametricCurveView"};
    CMultiDocTemplate items{itemsFrame, "CStorageDoc", "CChildFrame", "CItemsHistogramView"};
    CMultiDocTemplate itemsTable{itemsTableFrame, "CStorageDoc", "CChildFrame", "CItemsTableView"};
    CMultiDocTemplate collage{collageFrame, "CCollageDoc", "CChildFrame", "CCollageView"};
};

all_templates& templates()
{
    static all_templates made;
    return made;
}

} // namespace

CStorageDocTemplate& vldvSurfaceTemplate = templates().surface;
CMultiDocTemplate& vldv3DTemplate = templates().scene;
CMultiDocTemplate& vldv3DCloudTemplate = templates().volume;
CMultiDocTemplate& vldvVideoCaptureTemplate = templates().capture;

namespace vldv::entry {

void register_classes()
{
    for (const CRuntimeClass* each :
         {&storageDoc, &plainDoc, &childFrame, &quickFrame, &surfaceView, &quickView, &parametersView, &textView})
        register_runtime_class(*each);
}

void add_templates(CWinApp& app)
{
    all_templates& all = templates();
    for (CDocTemplate* each : std::initializer_list<CDocTemplate*>{
             &all.surface, &all.section, &all.line, &all.scene, &all.histogram, &all.parameters, &all.fourier,
             &all.capture, &all.features, &all.featuresTable, &all.text, &all.volume, &all.parametric, &all.items,
             &all.itemsTable, &all.collage})
        app.AddDocTemplate(each);
}

} // namespace vldv::entry
