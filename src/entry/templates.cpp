#include "entry/templates.h"

#include "curves/views/LineView.h"
#include "curves/views/ParametricCurveView.h"
#include "document/StorageDocTemplate.h"
#include "platform/app/WinApp.h"
#include "resources/frame_templates.h"
#include "spectra/views/FeaturesHistogramView.h"
#include "spectra/views/FeaturesTableView.h"
#include "spectra/views/FourierView.h"
#include "spectra/views/HistogramView.h"
#include "spectra/views/ItemsHistogramView.h"
#include "spectra/views/ItemsTableView.h"
#include "surface/views/QVSurfView.h"
#include "view/ChildFrame.h"
#include "view/panes/ParametersView.h"
#include "view/panes/TextView.h"
#include "vldv.h"

#include <algorithm>
#include <deque>

using namespace vldv;

namespace {

// What can be made by its name; first those that others are derived from.
constexpr CRuntimeClass childFrame = {"CChildFrame", nullptr, create_object<CChildFrame>};
constexpr CRuntimeClass sectionView = {"CSectionView", nullptr, create_object<CSectionView>};
constexpr CRuntimeClass surfaceView = {"CSurfMathView", nullptr, create_object<CSurfMathView>};

constexpr CRuntimeClass classes[] = {
    {"CStorageDoc", nullptr, create_object<CStorageDoc>},
    {"CDocument", nullptr, create_object<CDocument>},
    {"CQVChildFrame", &childFrame, create_object<CQVChildFrame>},
    {"CQVSurfView", &surfaceView, create_object<CQVSurfView>},
    {"CFeaturesHistogramView", nullptr, create_object<CFeaturesHistogramView>},
    {"CFeaturesTableView", nullptr, create_object<CFeaturesTableView>},
    {"CFourierView", nullptr, create_object<CFourierView>},
    {"CHistogramView", nullptr, create_object<CHistogramView>},
    {"CItemsHistogramView", nullptr, create_object<CItemsHistogramView>},
    {"CItemsTableView", nullptr, create_object<CItemsTableView>},
    {"CLineView", &sectionView, create_object<CLineView>},
    {"CParametricCurveView", nullptr, create_object<CParametricCurveView>},
    {"CParametersView", nullptr, create_object<CParametersView>},
    {"CTextView", nullptr, create_object<CTextView>},
};

/// One kind of window. A view that has no class yet is found by its name once there is one.
struct template_row {
    frame_template number;
    const char *document, *view;
};

constexpr template_row behindTheSurface[] = {
    {sectionFrame, "CStorageDoc", "CSectionView"},
    {lineFrame, "CStorageDoc", "CLineView"},
    {sceneFrame, "CStorageDoc", "C3DView"},
    {histogramFrame, "CStorageDoc", "CHistogramView"},
    {parametersFrame, "CDocument", "CParametersView"},
    {fourierFrame, "CStorageDoc", "CFourierView"},
    {captureFrame, "CVideoPreviewDoc", "CVideoPreviewWnd"},
    {featuresFrame, "CStorageDoc", "CFeaturesHistogramView"},
    {featuresTableFrame, "CStorageDoc", "CFeaturesTableView"},
    {textFrame, "CDocument", "CTextView"},
    {volumeFrame, "CStorageDoc", "C3DCloudView"},
    {parametricFrame, "CStorageDoc", "CParametricCurveView"},
    {itemsFrame, "CStorageDoc", "CItemsHistogramView"},
    {itemsTableFrame, "CStorageDoc", "CItemsTableView"},
    {collageFrame, "CCollageDoc", "CCollageView"},
};

/// All templates, in the order of their making. One object, so that start and stop have one order.
struct all_templates {
    CStorageDocTemplate surface{surfaceFrame, "CStorageDoc", "CChildFrame", "CSurfMathView"};
    std::deque<CMultiDocTemplate> others; ///< a row each

    all_templates()
    {
        for (const template_row& row : behindTheSurface)
            others.emplace_back(row.number, row.document, "CChildFrame", row.view);
    }
    CMultiDocTemplate& of(frame_template number)
    {
        return *std::ranges::find(others, static_cast<unsigned>(number), &CMultiDocTemplate::resourceId);
    }
};

all_templates& templates()
{
    static all_templates made;
    return made;
}

} // namespace

CStorageDocTemplate& vldvSurfaceTemplate = templates().surface;
CMultiDocTemplate& vldv3DTemplate = templates().of(sceneFrame);
CMultiDocTemplate& vldv3DCloudTemplate = templates().of(volumeFrame);
CMultiDocTemplate& vldvVideoCaptureTemplate = templates().of(captureFrame);

namespace vldv::entry {

void register_classes()
{
    register_runtime_class(childFrame);
    register_runtime_class(surfaceView);
    register_runtime_class(sectionView);
    for (const CRuntimeClass& each : classes) register_runtime_class(each);
}

void add_templates(CWinApp& app)
{
    all_templates& all = templates();
    app.AddDocTemplate(&all.surface);
    for (CMultiDocTemplate& each : all.others) app.AddDocTemplate(&each);
}

} // namespace vldv::entry
