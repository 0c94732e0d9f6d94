#include "resources/command_prompts.h"
#include "resources/commands.h"

#include <algorithm>
#include <iterator>

namespace vldv {

namespace {

struct prompt_row {
    unsigned id;
    const char* text;
};

// Ascending by number. Sentences in the imperative, as those of the string table.
constexpr prompt_row prompts[] = {
    {commands::firstMarkStyle, "Draw marks as arrows"},
    {commands::lastMarkStyle, "Draw marks as the letter V"},
    {commands::selectSpectrum, "Select a part of the spectrum"},
    {commands::markSpectrum, "Put marks on the spectrum"},

    {commands::autoscaling, "Let the colours run over the range of the image, or of its region of interest"},
    {commands::autoRefresh, "Follow changes of the colour scale at once"},
    {commands::scene, "Show the surface in three dimensions"},
    {commands::refresh, "Draw the view anew"},
    {commands::normalize, "Give the window its usual size"},
    {commands::showLegend, "Show or hide axes, scale and texts around the picture"},
    {commands::copyText, "Copy the figures of the view as text"},
    {commands::addText, "Append the figures of the view to the text on the clipboard"},
    {commands::fileInfo, "Show or hide the name of the file and the parameters below the picture"},
    {commands::revert, "Read the document again from its file; Reopen Closed brings back what was changed since"},
    {commands::deleteFile, "Close the document and move its file to the trash"},
    {commands::removeMarks, "Remove all marks"},
    {commands::numbered, "Number the marks"},
    {commands::removeCurves, "Remove the curves"},
    {commands::histogram, "Show how often each height occurs"},
    {commands::macros, "Record, edit and run macros"},
    {commands::parameters, "Show all parameters of the document in a table"},
    {commands::fourier, "Show the spectrum of the image"},
    {commands::zeroInner, "Set the selected part of the spectrum to zero"},
    {commands::zeroOuter, "Set all of the spectrum but the selected part to zero"},
    {commands::moreContrast, "Show weaker waves brighter"},
    {commands::lessContrast, "Show weaker waves darker"},
    {commands::restoreContrast, "Show the spectrum in its usual contrast"},
    {commands::removeSpectrumSelection, "Remove the selection"},
    {commands::removeSpectrumMarks, "Remove the marks"},
    {commands::exportView, "Save what the view shows as a picture or as data of another program"},
    {commands::showAll, "Open a window for each image of the document"},
    {commands::enumFeatures, "Find grains or pores and show their statistics"},
    {commands::profileHeight, "Show the mean height along each feature"},
    {commands::captureFrame, "Save the picture of the camera"},
    {commands::originalSize, "Show the video in the size of its source"},
    {commands::captureFrames, "Save pictures of the camera one after another"},
    {commands::resolution, "Show the resolution along each axis, or change it"},
    {commands::compact, "Show the legend as a bar and a height inside the picture"},
    {commands::showZScale, "Show or hide the colour scale beside the picture"},
    {commands::curveToSection, "Turn the drawn curve into a section"},
    {commands::saveDecorations, "Save what is drawn over the image to a file"},
    {commands::loadDecorations, "Load what is drawn over the image from a file"},
    {commands::calibrationCurve, "Make a calibration curve of the surface"},
    {commands::resample, "Give the image another number of samples"},
    {commands::increase, "Strengthen the waves that are selected"},
    {commands::decrease, "Weaken the waves that are selected"},
    {commands::measureDistance, "Append the measured distance and height to the table of measurements"},
    {commands::selectRoi, "Take the range of colours and the statistics from the selection"},
    {commands::clearRoi, "Take the range of colours and the statistics from the whole image"},
    {commands::excludeFiltered, "Leave filtered features out of the histogram"},
    {commands::rememberPalette, "Keep palette and scale with the image"},
    {commands::differentiate, "Show the derivative of the curve"},
    {commands::forceAnalysis, "Find contact, adhesion and stiffness of force curves"},
    {commands::preferences, "Change the options of windows of this kind"},
    {commands::buildSlice, "Show a slice of the volume as a surface"},
    {commands::alignOnSlice, "Turn the volume to its slice"},
    {commands::actualPixels, "Show one sample as one pixel"},
    {commands::fillFeatures, "Fill the holes inside features"},
    {commands::fullScreen, "Fill the screen with the view; Esc leaves it"},
    {commands::inverseSelection, "Select what is not selected"},
    {commands::zoomWindow, "Show the part around the pointer in a window of its own"},
    {commands::fixedScale, "Let the colours run over a fixed window of values"},
    {commands::perLine, "Let the colours run over the range of each row by itself"},
    {commands::perLinePlanefit, "Let the colours run over the range of each row, less its best straight line"},
    {commands::displayParameters, "Choose the parameters that stand below the picture"},
    {commands::record, "Record the video to a file"},
    {commands::stopRecord, "End the recording"},
    {commands::clearDecorations, "Remove what is drawn over the image"},
    {commands::copyData, "Copy the samples of the curve as text"},
    {commands::forceAnalysisOfAll, "Find contact, adhesion and stiffness of all force curves of the image"},
    {commands::selectedFeatures, "Set selected features to the minimum height"},
    {commands::typeMarks, "Put the marks at places that are typed"},
    {commands::ownAxis, "Show the curve over its own axis in another window"},
    {commands::radialSpectrum, "Show the mean of the spectrum at each frequency as a curve"},
    {commands::originProfile, "Show the spectrum along a line through the zero frequency and the last mark as a curve"},
    {commands::spectrumPeaks, "Mark the strongest waves and tell their periods, directions and the lattice"},
    {commands::featuresTable, "Show the features with their metrics in a table"},
    {commands::tableItems,
     "Keep the rows, the selected ones of several, in windows of their own: a histogram and a table"},
    {commands::removeRows, "Take the selected features out of the list"},
    {commands::filters, "Filter the image"},
    {commands::highlight, "Show slopes instead of heights"},
    {commands::invert, "Turn the colours of this view around"},

    {commands::quickView, "Show small pictures of many files"},
    {commands::saveAll, "Choose among all changed documents which are saved"},
    {commands::settings, "Change the settings of the whole program"},
    {commands::windows, "List all windows, to go to one or to close several"},
    {commands::output, "Show or hide the pane of messages"},
    {commands::help, "Open the manual"},

    {commands::firstPalette, "Edit the custom palette; all windows show the change"},

    {commands::open, "Open recordings, documents, pictures and tables"},
    {commands::close, "Close the window"},
    {commands::save, "Save the document; a recording is never written over"},
    {commands::saveAs, "Save the document under another name"},
    {commands::pageSetup, "Choose paper and margins"},
    {commands::print, "Print the view"},
    {commands::printPreview, "Show the view on its sheet of paper"},
    {commands::copy, "Copy the picture, or what is selected, to the clipboard"},
    {commands::selectAll, "Select all"},
    {commands::undo, "Take the last change of the image back"},
    {commands::redo, "Make the change again that was taken back"},
    {commands::cascade, "Lay the windows over each other"},
    {commands::tileHorizontally, "Put the windows under each other"},
    {commands::tileVertically, "Put the windows beside each other"},
    {commands::about, "Show version, licence and libraries"},
    {commands::exit, "End the program"},
    {commands::toolbar, "Show or hide the toolbar"},
    {commands::statusBar, "Show or hide this bar"},
};

struct range_row {
    unsigned first, last;
    const char* text;
};

/// Commands that a menu's dynamic row stands for.
constexpr range_row ranges[] = {
    {commands::firstClosed, commands::lastClosed, "Open this document again, as it was when it was closed"},
    {commands::gray, commands::lastPalette, "Show heights in these colours"},
    {commands::firstRecent, commands::lastRecent, "Open this file"},
    {commands::firstWindow, commands::lastWindow, "Go to this window"},
};

} // namespace

std::string_view command_status(unsigned id) noexcept
{
    const auto found = std::ranges::lower_bound(prompts, id, {}, &prompt_row::id);
    if (found != std::end(prompts) && found->id == id) return found->text;
    const auto range =
        std::ranges::find_if(ranges, [id](const range_row& row) { return row.first <= id && id <= row.last; });
    return range != std::end(ranges) ? range->text : "";
}

} // namespace vldv
