#include "resources/strings.h"

#include "resources/command_prompts.h"
#include "resources/commands.h"
#include "resources/layouts.h"
#include "resources/open_filter.h"

#include <algorithm>
#include <iterator>

namespace vldv {

namespace {

struct string_row {
    unsigned id;
    const char* text;
};

// Ascending by number. Document strings (101 to 125) hold, one a line: window title, document name, name in a "new"
// list, filter name, filter extension, type id, type name. The string of a command is what the status bar says of it,
// behind the line end the tool tip.
const string_row stringTable[] = {
    {101, "Sect.\nSection\n\n\n\n\n"},
    {102, "Surf.\nSurface image\n\nVelmira Files (*.spm)\n.spm\nVelmiraDoc\nVelmira Document"},
    {103, "Line\nLine\n\n\n\n\n"},
    {105, "3D\n3D View\n\n\n\n\n"},
    {106, "Hist.\nHistogram\n\n\n\n\n"},
    {107, "QV.\nQuick view\n\n\n\n\n"},
    {108, "Par.\nParameters view\n\n\n\n\n"},
    {109, "FFT\nFourier view\n\n\n\n\n"},
    {112, "Capture video\nVideo Capture\n\n\n\n\n"},
    {113, "Feat.\nFeatures\n\n\n\n\n"},
    {114, "Table\nTable\n\n\n\n\n"},
    {115, "Text\nText\n\n\n\n\n"},
    {118, "3D Volume\n3D Volume\n\n\n\n\n"},
    {119, "Parametric curve\nParametric curve\n\n\n\n\n"},
    {120, "Items.\nItems Histogram\n\n\n\n\n"},
    {121, "ItemsTable\nItems Table\n\n\n\n\n"},
    {125, "Collage\nCollage View\n\n\n\n\n"},

    {1001, "X=%lG %hs, Y=%lG %hs, Z=%lG %hs"},
    {1002, "W=%lG %hs, H=%lG %hs, Z=%lG %hs"},
    {1003, "R=%lG %hs, dZ=%lG %hs, Z=%lG %hs"},
    {1004, "Angle=%.1lf deg, Z=%lG %hs"},
    {1005, "Angle=%.1lf deg"},
    {1006, "L=%lG %hs"},
    {1007, "Line=%d, Z=%lG %hs"},
    {1008, "X: \t Y: "},
    {1009, "File"},
    {1010, "Image data"},
    {1012, "Total: %d"},
    {1014, "Click left mouse button to rotate/offset the image; use Ctrl, Shift and Z for tilt, pan, Z scaling and "
           "lamp movement"},
    {1017, "L=%lG %hs"},
    {1019, "dX: %lG %hs"},
    {1020, "dY: %lG %hs"},
    {1024, "X0: %.4lf %hs\tX1: %.4lf %hs\tX1-X0: %.4lf %hs %%: %.1lf"},
    {1025, openFilterText},
    {1028, "Can't save Undo information.\nUndo buffer will be erased."},
    {1038, "Can't open file %s to export data."},
    {1040, "File %s is empty."},
    {1049, "Copy %d of %s"},
    {1051, "Can't create temporary file for intermediate data."},
    {1055, "Failed to save decorations to file \"%s\""},
    {1056, "Failed to load decorations from file \"%s\""},
    {1059, "Can't save Redo information.\nRedo buffer will be erased."},
    {1066, "Y: %lG %hs"},
    {1067, "X: %lG %hs"},
    {1070, "Text"},
    {1076, "Too many files selected - please, repeat operation with fewer files."},
    {1077, "Can't access capture file '%hs'. Retry?"},
    {1078, "Recompression with selected codec failed."},
    {1079, "JPEG Files(*.jpeg)|*.jpg,*.jpeg|BMP Files (*.bmp)|*.bmp||"},
    {1080, "Configuration is not available for \"%hs\""},
    {1084, "Statistics"},
    {1085, "X"},
    {1086, "Y"},

    {4007, "Can't start record"},
    {4011, "Select curve for X series"},
    {4026, "Bitmap Files (*.bmp)|*.bmp|JPEG Files (*.jpeg)|*.jpeg;*.jpg|TIFF Files (*.tif)|*.tif;*.tiff|"},
    {4027, "%s slice %d.spm"},
    {4029, "Text Files (*.txt)|*.txt|"},
    {4030, "VRML Files (*.wrl,*.vrml)|*.wrl;*.vrml|"},
    {4033, "Select image %d for operation"},
    {4034, "&Preferences..."},
    {4036, "Bitmap"},
    {4998, saveFilesLayoutText},
    {4999, optionsLayoutText},
    {5000, settingsLayoutText}, // the program's own
    {5001, recoveryLayoutText},

    {commands::firstMode, "Select rectangular region\nRectangular selection"},
    {commands::ellipse, "Select elliptic region\nElliptic selection"},
    {commands::section, "Build sections\nSection"},
    {commands::distance, "Measure distance\nDistance"},
    {commands::angle, "Measure angle\nAngle"},
    {commands::marks, "Put marks\nMarks"},
    {commands::curve, "Put curve\nCurve"},
    {commands::lineProfile, "Select line\nLine selection"},
    {commands::columnProfile, "Select column\nColumn selection"},
    {commands::lengthyObject, "Select lengthy object\nLengthy objects selection"},
    {commands::isoline, "Select region inside isoline\nIsoline"},
    {commands::includeFeatures, "Add features by extending mask\nInclude features"},
    {commands::excludeFeatures, "Remove features by erasing mask\nExclude features"},

    {commands::cutoff, "Cutoff poits behind left and right edges of selection"},
    {commands::filteredFeatures, "Set filtered features to the minimum height"},
    {commands::selectX, "Select curve for X series in parametric dependencie"},
    {commands::findSteps, "Find vertical steps on the image and trace their position"},
    {commands::autocorrelationFinite, "Evaluate normalized unbiased auto-correlation function"},
    {commands::structureFinite, "Evaluate structure function S(t)=<(Y(x)-Y(x+t))^2>"},
    {commands::stereo, "Switch stereo image mode"},
    {commands::separationFit, "Build separation curve and perform WLC model fitting"},
    {commands::autocorrelationCyclic, "Evaluate normalized unbiased cyclic auto-correlation function"},
    {commands::structureCyclic, "Evaluate cyclic structure function S(t)=<(Y(x)-Y(x+t))^2>"},
    {commands::separationCurve, "Build separation curve"},
    {commands::normalizedForce, "Build normalized force curve"},
    {commands::duplicate, "Duplicate the image, or only its selected part where there is a selection\nDuplicate"},
    {10203, "Select images for operation"},

    // The framework's own messages.
    {61697, "Failed to open document."},
    {61700, "Failed to create empty document."},
};

} // namespace

const char* string_resource(unsigned id) noexcept
{
    const auto found = std::ranges::lower_bound(stringTable, id, {}, &string_row::id);
    return found != std::end(stringTable) && found->id == id ? found->text : "";
}

std::vector<unsigned> string_resource_ids()
{
    std::vector<unsigned> ids;
    for (const string_row& row : stringTable) ids.push_back(row.id);
    return ids;
}

command_prompt command_prompt_of(unsigned id)
{
    const std::string text = string_resource(id);
    const std::size_t end = text.find('\n');
    if (end == std::string::npos) return {text.empty() ? std::string(command_status(id)) : text, {}};
    return {text.substr(0, end), text.substr(end + 1)};
}

} // namespace vldv
