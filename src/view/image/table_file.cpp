#include "view/image/table_file.h"

#include "base/text.h"
#include "output/picture_writer.h"
#include "platform/app/WinApp.h"
#include "platform/files/Exceptions.h"
#include "resources/string_ids.h"
#include "resources/strings.h"

#include <span>

namespace vldv::view {

void save_table(const wchar_t* path, const std::string& text)
{
    try {
        output::save_file_atomically(path, std::as_bytes(std::span(text)));
    } catch (const CException&) {
        const std::string name = base::narrow(path);
        AfxGetApp()->host().messageBox(base::formatted(string_resource(texts::cannotExport), name.c_str()),
                                       message_icon::warning);
    }
}

} // namespace vldv::view
