#include "resources/command_prompts.h"

#include <algorithm>
#include <iterator>

namespace {

struct prompt_row {
    unsigned id;
    const char* text;
};

// Ascending by number. Sentences in the imperative, as those of the string table.
constexpr prompt_row prompts[] = {
    {6101, "Draw marks as arrows"},
    {6102, "Draw marks as the letter V"},
    {6201, "Select a part of the spectrum"},
    {6202, "Put marks on the spectrum"},

    {10011, "Let the colours run over the range of the image, or of its region of interest"},
    {10014, "Follow changes of the colour scale at once"},
    {10015, "Show the surface in three dimensions"},
    {10016, "Draw the view anew"},
    {10017, "Give the window its usual size"},
    {10020, "Show or hide axes, scale and texts around the picture"},
    {10021, "Copy the figures of the view as text"},
    {10022, "Append the figures of the view to the text on the clipboard"},
    {10023, "Show or hide the name of the file and the parameters below the picture"},
    {10025, "Read the document again from its file; what was changed since is gone"},
    {10026, "Close the document and move its file to the trash"},
    {10027, "Remove all marks"},
    {10028, "Number the marks"},
    {10029, "Remove the curves"},
    {10031, "Show how often each height occurs"},
    {10033, "Record, edit and run macros"},
    {10041, "Show all parameters of the document in a table"},
    {10045, "Show the spectrum of the image"},
    {10046, "Set the selected part of the spectrum to zero"},
    {10047, "Set all of the spectrum but the selected part to zero"},
    {10048, "Show weaker waves brighter"},
    {10049, "Show weaker waves darker"},
    {10050, "Show the spectrum in its usual contrast"},
    {10051, "Remove the selection"},
    {10052, "Remove the marks"},
    {10057, "Save what the view shows as a picture or as data of another program"},
    {10060, "Open a window for each image of the document"},
    {10064, "Find grains or pores and show their statistics"},
    {10068, "Show the mean height along each feature"},
    {10072, "Save the picture of the camera"},
    {10074, "Show the video in the size of its source"},
    {10078, "Save pictures of the camera one after another"},
    {10080, "Show the resolution along each axis, or change it"},
    {10082, "Show the legend as a bar and a height inside the picture"},
    {10084, "Show or hide the colour scale beside the picture"},
    {10088, "Turn the drawn curve into a section"},
    {10094, "Save what is drawn over the image to a file"},
    {10095, "Load what is drawn over the image from a file"},
    {10096, "Make a calibration curve of the surface"},
    {10097, "Give the image another number of samples"},
    {10098, "Strengthen the waves that are selected"},
    {10099, "Weaken the waves that are selected"},
    {10100, "Append the measured distance and height to the table of measurements"},
    {10101, "Take the range of colours and the statistics from the selection"},
    {10102, "Take the range of colours and the statistics from the whole image"},
    {10104, "Leave filtered features out of the histogram"},
    {10112, "Keep palette and scale with the image"},
    {10113, "Show the derivative of the curve"},
    {10116, "Find contact, adhesion and stiffness of force curves"},
    {10118, "Change the options of windows of this kind"},
    {10119, "Show a slice of the volume as a surface"},
    {10120, "Turn the volume to its slice"},
    {10121, "Show one sample as one pixel"},
    {10136, "Fill the holes inside features"},
    {10138, "Fill the screen with the view; Esc leaves it"},
    {10143, "Select what is not selected"},
    {10145, "Show the part around the pointer in a window of its own"},
    {10152, "Let the colours run over a fixed window of values"},
    {10154, "Let the colours run over the range of each row by itself"},
    {10156, "Let the colours run over the range of each row, less its best straight line"},
    {10157, "Choose the parameters that stand below the picture"},
    {10164, "Record the video to a file"},
    {10165, "End the recording"},
    {10166, "Remove what is drawn over the image"},
    {10169, "Copy the samples of the curve as text"},
    {10171, "Set selected features to the minimum height"},
    {10183, "Filter the image"},
    {10191, "Show slopes instead of heights"},
    {10192, "Turn the colours of this view around"},

    {10200, "Show small pictures of many files"},
    {10201, "Choose among all changed documents which are saved"},
    {10202, "Change the settings of the whole program"},
    {10204, "List all windows, to go to one or to close several"},
    {10205, "Show or hide the pane of messages"},
    {10206, "Open the manual"},

    {12001, "Edit the custom palette; all windows show the change"},

    {57601, "Open recordings, documents, pictures and tables"},
    {57602, "Close the window"},
    {57603, "Save the document; a recording is never written over"},
    {57604, "Save the document under another name"},
    {57605, "Choose paper and margins"},
    {57607, "Print the view"},
    {57609, "Show the view on its sheet of paper"},
    {57634, "Copy the picture, or what is selected, to the clipboard"},
    {57642, "Select all"},
    {57643, "Take the last change of the image back"},
    {57644, "Make the change again that was taken back"},
    {57650, "Lay the windows over each other"},
    {57651, "Put the windows under each other"},
    {57652, "Put the windows beside each other"},
    {57664, "Show version, licence and libraries"},
    {57665, "End the program"},
    {59392, "Show or hide the toolbar"},
    {59393, "Show or hide this bar"},
};

struct range_row {
    unsigned first, last;
    const char* text;
};

/// Commands that a menu's dynamic row stands for.
constexpr range_row ranges[] = {
    {10220, 10239, "Open this document again, as it was when it was closed"},
    {12002, 12100, "Show heights in these colours"},
    {57616, 57631, "Open this file"},
    {65280, 65379, "Go to this window"},
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
