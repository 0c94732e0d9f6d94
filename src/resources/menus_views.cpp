#include "resources/commands.h"
#include "resources/menu_parts.h"

namespace vldv {

namespace {

constexpr menu_row plainView[] = {
    popup(0, "&View"),
    item(1, commands::showLegend, "Sho&w Legend"),
    item(1, commands::actualPixels, "&Actual pixels"),
    item(1, commands::fullScreen, "Full Screen", "F11"),
};

constexpr menu_row surface[] = {
    popup(0, "&View"),
    item(1, commands::showLegend, "Sho&w Legend"),
    item(1, commands::fileInfo, "&File Information"),
    item(1, commands::compact, "C&ompact Legend"),
    item(1, commands::showZScale, "Z S&cale"),
    item(1, commands::highlight, "&Hilighted"),
    item(1, commands::invert, "&Inverted"),
    item(1, commands::rememberPalette, "Remember &Palette"),
    separator(1),
    item(1, commands::actualPixels, "&Actual pixels"),
    item(1, commands::normalize, "&Normalize"),
    item(1, commands::fullScreen, "Full Screen", "F11"),
    item(1, commands::zoomWindow, "Show &Zoom window"),
    separator(1),
    item(1, commands::refresh, "&Refresh", "F5"),
    item(1, commands::autoRefresh, "&Auto Refresh"),
    separator(1),
    item(1, commands::duplicate, "&Duplicate"),
    item(1, commands::displayParameters, "Display Parameters"),
    popup(0, "&Cursor"),
    item(1, commands::firstMode, "&Rectangle"),
    item(1, commands::ellipse, "&Ellipse"),
    item(1, commands::isoline, "&Isoline"),
    item(1, commands::section, "&Section"),
    item(1, commands::distance, "&Distance"),
    item(1, commands::angle, "&Angle"),
    item(1, commands::marks, "&Marks"),
    item(1, commands::curve, "Cur&ve"),
    item(1, commands::lineProfile, "&Line Profile"),
    item(1, commands::columnProfile, "&Column Profile"),
    item(1, commands::lengthyObject, "&Lengthy Objects"),
    item(1, commands::includeFeatures, "Include features"),
    item(1, commands::excludeFeatures, "Exclude features"),
    separator(1),
    popup(1, "Marks st&yle"),
    item(2, commands::firstMarkStyle, "&Arrows"),
    item(2, commands::lastMarkStyle, "V"),
    separator(2),
    item(2, commands::numbered, "&Numbered"),
    popup(1, "Clear"),
    item(2, commands::removeMarks, "&Marks"),
    item(2, commands::removeCurves, "Cur&ve"),
    item(2, commands::clearDecorations, "Decorations"),
    separator(1),
    item(1, commands::inverseSelection, "&Inverse Selection", "Ctrl+Shift+I"),
    popup(1, "Re&gion of interest"),
    item(2, commands::selectRoi, "&Select"),
    item(2, commands::clearRoi, "&Clear"),
    popup(1, "Decora&tions"),
    item(2, commands::saveDecorations, "&Save..."),
    item(2, commands::loadDecorations, "&Load..."),
    item(1, commands::curveToSection, "&Convert Curve to Section"),
    item(1, commands::measureDistance, "Measure &Distance && Height", "Ctrl+D"),
    popup(0, "&Mathematics"),
    item(1, commands::scene, "&Build 3D View"),
    item(1, commands::histogram, "&Histogram"),
    item(1, commands::fourier, "&Fourier"),
    item(1, commands::enumFeatures, "&Enum Features"),
    item(1, commands::findSteps, "Find &Steps"),
    separator(1),
    item(1, commands::resolution, "Resolution..."),
    item(1, commands::resample, "Resa&mple"),
    item(1, commands::calibrationCurve, "C&reate Calibration Curve"),
    separator(1),
    item(1, commands::macros, "Macros..."),
    dynamic(1, commands::firstMath, commands::lastMath),
};

constexpr menu_row cursorPopup[] = {
    popup(0, "&Cursor"),
    item(1, commands::firstMode, "&Rectangle"),
    item(1, commands::ellipse, "&Ellipse"),
    item(1, commands::isoline, "&Isoline"),
    item(1, commands::section, "&Section"),
    item(1, commands::distance, "&Distance"),
    item(1, commands::angle, "&Angle"),
    item(1, commands::marks, "&Marks"),
    item(1, commands::curve, "Cur&ve"),
    item(1, commands::lineProfile, "&Line Profile"),
    item(1, commands::columnProfile, "&Column Profile"),
    item(1, commands::lengthyObject, "&Lengthy Objects"),
    popup(0, "Cl&ear"),
    item(1, commands::removeMarks, "&Marks"),
    item(1, commands::removeCurves, "Cur&ve"),
    item(1, commands::clearDecorations, "Decorations"),
    popup(0, "Re&gion of interest"),
    item(1, commands::selectRoi, "&Select"),
    item(1, commands::clearRoi, "&Clear"),
};

constexpr menu_row section[] = {
    popup(0, "&View"),
    item(1, commands::showLegend, "Sho&w Legend"),
    item(1, commands::actualPixels, "&Actual pixels"),
    item(1, commands::fullScreen, "Full Screen", "F11"),
    separator(1),
    item(1, commands::refresh, "&Refresh", "F5"),
    item(1, commands::duplicate, "&Duplicate"),
    item(1, commands::displayParameters, "Display Parameters"),
    popup(0, "&Mathematics"),
    item(1, commands::differentiate, "&Differentiate"),
    popup(1, "&Autocorrelation"),
    item(2, commands::autocorrelationFinite, "&Finite"),
    item(2, commands::autocorrelationCyclic, "&Cyclic"),
    popup(1, "St&ructure function"),
    item(2, commands::structureFinite, "&Finite"),
    item(2, commands::structureCyclic, "&Cyclic"),
    item(1, commands::histogram, "&Histogram"),
    item(1, commands::resolution, "Resolution..."),
    item(1, commands::typeMarks, "Mar&ks..."),
    item(1, commands::selectX, "&Select X curve..."),
    separator(1),
    item(1, commands::forceAnalysis, "&Force curve analysis"),
    item(1, commands::forceAnalysisOfAll, "Anal&yse all curves"),
    item(1, commands::separationCurve, "Build se&paration curve"),
    item(1, commands::separationFit, "Separation curve and &WLC fit"),
    item(1, commands::normalizedForce, "Build &normalized force curve"),
    separator(1),
    item(1, commands::copyData, "Copy &data as text"),
    separator(1),
    item(1, commands::macros, "Macros..."),
    dynamic(1, commands::firstMath, commands::lastMath),
};

constexpr menu_row parametricCurve[] = {
    popup(0, "&View"),
    item(1, commands::showLegend, "Sho&w Legend"),
    item(1, commands::actualPixels, "&Actual pixels"),
    item(1, commands::fullScreen, "Full Screen", "F11"),
    item(1, commands::refresh, "&Refresh", "F5"),
    separator(1),
    item(1, commands::duplicate, "&Duplicate"),
    item(1, commands::displayParameters, "Display Parameters"),
    popup(0, "&Mathematics"),
    item(1, commands::typeMarks, "Mar&ks..."),
    item(1, commands::selectX, "&Select X curve..."),
    item(1, commands::ownAxis, "Show over its own &axis"),
    separator(1),
    item(1, commands::forceAnalysis, "&Force curve analysis"),
    item(1, commands::forceAnalysisOfAll, "Anal&yse all curves"),
    separator(1),
    item(1, commands::copyData, "Copy &data as text"),
    separator(1),
    item(1, commands::macros, "Macros..."),
    dynamic(1, commands::firstMath, commands::lastMath),
};

constexpr menu_row line[] = {
    popup(0, "&View"),
    item(1, commands::showLegend, "Sho&w Legend"),
    item(1, commands::actualPixels, "&Actual pixels"),
    item(1, commands::fullScreen, "Full Screen", "F11"),
    item(1, commands::refresh, "&Refresh", "F5"),
    separator(1),
    item(1, commands::duplicate, "&Duplicate"),
    item(1, commands::displayParameters, "Display Parameters"),
};

constexpr menu_row scene[] = {
    popup(0, "&View"),
    item(1, commands::showLegend, "Sho&w Legend"),
    item(1, commands::stereo, "&Stereo", "S"),
    item(1, commands::actualPixels, "&Actual pixels"),
    item(1, commands::fullScreen, "Full Screen", "F11"),
    item(1, commands::refresh, "&Refresh", "F5"),
    separator(1),
    item(1, commands::duplicate, "&Duplicate"),
    item(1, commands::displayParameters, "Display Parameters"),
};

constexpr menu_row volume[] = {
    popup(0, "&View"),
    item(1, commands::showLegend, "Sho&w Legend"),
    item(1, commands::stereo, "&Stereo", "S"),
    item(1, commands::actualPixels, "&Actual pixels"),
    item(1, commands::fullScreen, "Full Screen", "F11"),
    separator(1),
    item(1, commands::duplicate, "&Duplicate"),
    item(1, commands::displayParameters, "Display Parameters"),
    popup(0, "Vo&lume"),
    item(1, commands::buildSlice, "&Build Slice"),
    item(1, commands::alignOnSlice, "&Align on Slice"),
    item(1, commands::forceAnalysis, "&Force curve analysis"),
    separator(1),
    item(1, commands::macros, "Macros..."),
    dynamic(1, commands::firstMath, commands::lastMath),
};

constexpr menu_row histogram[] = {
    popup(0, "&View"),
    item(1, commands::showLegend, "Sho&w Legend"),
    item(1, commands::actualPixels, "&Actual pixels"),
    item(1, commands::fullScreen, "Full Screen", "F11"),
    item(1, commands::refresh, "&Refresh", "F5"),
    separator(1),
    item(1, commands::duplicate, "&Duplicate"),
    item(1, commands::displayParameters, "Display Parameters"),
    popup(0, "Histo&gram"),
    item(1, commands::cutoff, "Cutoff"),
    item(1, commands::resolution, "Resolution..."),
};

constexpr menu_row fourier[] = {
    popup(0, "&View"),
    item(1, commands::showLegend, "Sho&w Legend"),
    item(1, commands::normalize, "&Normalize"),
    item(1, commands::actualPixels, "&Actual pixels"),
    item(1, commands::fullScreen, "Full Screen", "F11"),
    item(1, commands::refresh, "&Refresh", "F5"),
    separator(1),
    item(1, commands::duplicate, "&Duplicate"),
    item(1, commands::displayParameters, "Display Parameters"),
    popup(0, "Fo&urier"),
    item(1, commands::selectSpectrum, "&Select"),
    item(1, commands::markSpectrum, "&Marks"),
    separator(1),
    item(1, commands::zeroInner, "Zero &Inner"),
    item(1, commands::zeroOuter, "Zero &Outer"),
    item(1, commands::increase, "Increase", "Ctrl+Up"),
    item(1, commands::decrease, "Decrease", "Ctrl+Down"),
    popup(1, "&Contrast"),
    item(2, commands::moreContrast, "&More...", "Ctrl+M"),
    item(2, commands::lessContrast, "&Less...", "Ctrl+L"),
    item(2, commands::restoreContrast, "&Restore"),
    popup(1, "Cl&ear"),
    item(2, commands::removeSpectrumSelection, "&Selection"),
    item(2, commands::removeSpectrumMarks, "&Marks"),
    separator(1),
    item(1, commands::spectrumPeaks, "&Peaks"),
    item(1, commands::radialSpectrum, "&Radial spectrum"),
    item(1, commands::originProfile, "Profile &through the origin"),
};

constexpr menu_row features[] = {
    popup(0, "&View"),
    item(1, commands::showLegend, "Sho&w Legend"),
    item(1, commands::actualPixels, "&Actual pixels"),
    item(1, commands::fullScreen, "Full Screen", "F11"),
    item(1, commands::refresh, "&Refresh", "F5"),
    separator(1),
    item(1, commands::duplicate, "&Duplicate"),
    item(1, commands::displayParameters, "Display Parameters"),
    popup(0, "Fe&atures"),
    popup(1, "&Remove"),
    item(2, commands::filteredFeatures, "Filtered"),
    item(2, commands::selectedFeatures, "Selected"),
    item(1, commands::fillFeatures, "Fill inner areas"),
    item(1, commands::excludeFiltered, "E&xclude filtered from histogram"),
    item(1, commands::profileHeight, "Profile average &height"),
    separator(1),
    item(1, commands::featuresTable, "&Table"),
    item(1, commands::tableItems, "&Statistics of items"),
};

constexpr menu_row features_table[] = {
    popup(0, "Ta&ble"),
    item(1, commands::tableItems, "&Statistics of items"),
    separator(1),
    item(1, commands::removeRows, "&Remove rows", "Del"),
};

constexpr menu_row capture[] = {
    popup(0, "&Video"),
    item(1, commands::record, "&Record"),
    item(1, commands::stopRecord, "&Stop"),
    separator(1),
    item(1, commands::captureFrame, "&Capture frame"),
    item(1, commands::captureFrames, "Capture &multiple frames"),
    separator(1),
    item(1, commands::originalSize, "Restore original size"),
    item(1, commands::actualPixels, "&Actual pixels"),
    item(1, commands::fullScreen, "Full Screen", "F11"),
};

} // namespace

menu_rows plain_view_rows() { return plainView; }
menu_rows surface_rows() { return surface; }
menu_rows cursor_popup_rows() { return cursorPopup; }
menu_rows section_rows() { return section; }
menu_rows parametric_curve_rows() { return parametricCurve; }
menu_rows line_rows() { return line; }
menu_rows scene_rows() { return scene; }
menu_rows volume_rows() { return volume; }
menu_rows histogram_rows() { return histogram; }
menu_rows fourier_rows() { return fourier; }
menu_rows features_rows() { return features; }
menu_rows features_table_rows() { return features_table; }
menu_rows capture_rows() { return capture; }

} // namespace vldv
