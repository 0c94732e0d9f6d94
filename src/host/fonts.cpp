#include "host/fonts.h"

#include "base/option_functions.h"
#include "base/text_list.h"

#include <QFontDatabase>
#include <QStringList>
#include <cstdlib>
#include <cstring>

namespace {

char* font_families()
{
    std::vector<std::string> names;
    for (const QString& family : QFontDatabase::families()) names.push_back(family.toStdString());
    return strdup(base::write_list(names).c_str());
}

void free_settings(char* text) { std::free(text); }

} // namespace

void host::register_fonts()
{
    base::register_option_function("vldv", "GetFontList", reinterpret_cast<base::any_function>(font_families));
    base::register_option_function("vldv", "FreeSettingsString", reinterpret_cast<base::any_function>(free_settings));
}
