#include "resources/strings.h"

#include "resources/layouts.h"

namespace {

struct string_row {
    unsigned id;
    const char* text;
};

const string_row stringTable[] = {
    {1028, "Can't save Undo information.\nUndo buffer will be erased."},
    {1040, "File %s is empty."},
    {1049, "Copy %d of %s"},
    {1059, "Can't save Redo information.\nRedo buffer will be erased."},
    {4998, saveFilesLayoutText},
    {4999, optionsLayoutText},
};

} // namespace

const char* string_resource(unsigned id) noexcept
{
    for (const string_row& row : stringTable)
        if (row.id == id) return row.text;
    return "";
}
