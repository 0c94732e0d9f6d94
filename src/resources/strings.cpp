#include "resources/strings.h"

#include "resources/layouts.h"

namespace {

struct string_row {
    unsigned id;
    const char* text;
};

const string_row stringTable[] = {
    {1040, "File %s is empty."},
    {1049, "Copy %d of %s"},
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
