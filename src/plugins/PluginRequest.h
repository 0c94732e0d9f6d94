#pragma once
#include "document/plugin_decoration.h"
#include "vldv_api.h"

#include <cstddef>
#include <cstdint>

// What crosses between the program and a module of mathematics: plain records in natural 64-bit layout and interfaces
// of one virtual operation each. No exception crosses, and who allocates a block frees it.

class SPMDataStream;
class SPMVarList;
class SPMVarListHandler;

namespace vldv {

/// What is selected in a view.
enum plugin_selection_kind : std::uint32_t {
    SELECTION_POSITION = 0,     ///< sample of a curve: x
    SELECTION_POINT = 1,        ///< x, y
    SELECTION_POINT_3D = 2,     ///< x, y, z
    SELECTION_RANGE = 3,        ///< samples of a curve: first, one past the last
    SELECTION_RECTANGLE = 4,    ///< left, top, right, bottom; right and bottom lie outside
    SELECTION_SEGMENT = 6,      ///< x and y of one end and of the other
    SELECTION_POLYLINE = 7,     ///< x, y of one corner; the line goes on with the next record
    SELECTION_POLYLINE_END = 8, ///< x, y of the last corner
};

} // namespace vldv

/// One selection, in samples of the source.
struct VLPluginDataSelection {
    std::uint32_t size;    ///< 36
    std::uint32_t version; ///< 1
    std::uint32_t kind;    ///< `plugin_selection_kind`
    std::int32_t data[6];  ///< as its kind says
};
static_assert(sizeof(VLPluginDataSelection) == 36 && offsetof(VLPluginDataSelection, data) == 12);

namespace vldv {

constexpr std::uint32_t pluginSelectionSize = 36, pluginSelectionVersion = 1;
/// One selection; numbers that its kind does not have are 0.
constexpr VLPluginDataSelection plugin_selection(plugin_selection_kind kind, int a, int b = 0, int c = 0, int d = 0)
{
    return {pluginSelectionSize, pluginSelectionVersion, kind, {a, b, c, d, 0, 0}};
}

} // namespace vldv

/// Shows a line of text, UTF-8, to the user.
class VLDV_API IPluginReportCallback {
public:
    virtual void Report(const char* text) = 0;

protected:
    ~IPluginReportCallback() = default;
};

/// Whose stream a decoration belongs to.
enum VLPluginDecorationTarget : std::int32_t { DECORATE_SOURCE = 0, DECORATE_RESULT = 1 };

/// Stores drawings with a source or result of the function that runs.
class VLDV_API IPluginDecorationsCallback {
public:
    virtual void Decorate(const VLPluginDecoration* list, unsigned count, int imageType,
                          VLPluginDecorationTarget target, int index) = 0;

protected:
    ~IPluginDecorationsCallback() = default;
};

/// A table of columns of numbers; texts are UTF-8 and live as long as the table.
class VLDV_API IPluginTable {
public:
    virtual unsigned columns() const = 0;
    virtual unsigned rows() const = 0;
    virtual const char* columnName(unsigned column) const = 0;
    virtual const char* columnUnits(unsigned column) const = 0;
    virtual double value(unsigned column, unsigned row) const = 0;

protected:
    ~IPluginTable() = default;
};

/// Shows a table as a histogram.
class VLDV_API IPluginTableCallback {
public:
    virtual void PlotHistogram(IPluginTable* table) = 0;

protected:
    ~IPluginTableCallback() = default;
};

namespace vldv {

/// What a call asks for.
enum plugin_operation : std::uint32_t {
    PLUGIN_DESCRIBE = 0,        ///< fill source count, result count, version
    PLUGIN_CLOSE = 2,           ///< release what is held
    PLUGIN_TEST = 3,            ///< 0: the function can work on the stream in `sources`
    PLUGIN_TEST_SELECTIONS = 4, ///< the same with the selections
    PLUGIN_PERFORM = 6,         ///< compute; 0: done
    PLUGIN_PREPARE = 7,         ///< make `parameters`, name the results; 0: done
};

} // namespace vldv

/// The record of every call.
struct VLPluginRequest {
    std::uint32_t size;                              ///< 68, the interface's number
    std::uint32_t version;                           ///< 2, or 9 for modules that know it
    std::uint32_t operation;                         ///< `plugin_operation`
    SPMDataStream* sources;                          ///< in the first calls the current stream
    std::int32_t sourceCount;                        ///< by the module; negative: as many as the user chooses
    SPMDataStream* results;                          ///< filled by the module
    VLPluginDataSelection* selections;               ///< null for none
    std::uint32_t selectionCount;                    ///<
    void* window;                                    ///< of the view, for what the module shows
    SPMVarList* parameters;                          ///< by the module; null for none
    SPMVarListHandler* handler;                      ///< by the module; may be null
    IPluginReportCallback* reportCallback;           ///<
    std::int32_t* subImages;                         ///< active sub-image of each source
    std::int32_t resultCount;                        ///< by the module; 1 below version 3
    const SPMDataStream* parameterStream;            ///< what the view's curve is measured against, or null
    IPluginDecorationsCallback* decorationsCallback; ///<
    IPluginTableCallback* tableCallback;             ///<
};
static_assert(sizeof(VLPluginRequest) == 128 && offsetof(VLPluginRequest, sources) == 16 &&
              offsetof(VLPluginRequest, results) == 32 && offsetof(VLPluginRequest, selectionCount) == 48 &&
              offsetof(VLPluginRequest, window) == 56 && offsetof(VLPluginRequest, reportCallback) == 80 &&
              offsetof(VLPluginRequest, resultCount) == 96 && offsetof(VLPluginRequest, parameterStream) == 104 &&
              offsetof(VLPluginRequest, tableCallback) == 120);

namespace vldv {

constexpr std::uint32_t pluginRequestSize = 68;

} // namespace vldv

/// A function of a module, exported by name.
using VLPluginFunction = int (*)(VLPluginRequest* request);
