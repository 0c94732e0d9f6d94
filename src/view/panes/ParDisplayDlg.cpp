#include "view/panes/ParDisplayDlg.h"

#include "document/StorageDoc.h"
#include "document/document_table.h"

using namespace vldv;

namespace {

constexpr char separator = '|', globalFlag = '+', localFlag = '-';

std::vector<std::string> offered_names(const CStorageDoc& document, unsigned image)
{
    std::vector<std::string> names(document.getStringsNames(nullptr, 0, image));
    document.getStringsNames(names.data(), static_cast<unsigned>(names.size()), image);
    std::erase_if(names, [](const std::string& name) { return name.find(separator) != std::string::npos; });
    return names;
}

} // namespace

CParDisplayDlg::CParDisplayDlg(const CStorageDoc& document, unsigned image, std::string_view list)
{
    title = "Display Parameters";
    chosenHeading = "Parameters to Display";
    sources = {{"Global Parameters", offered_names(document, document::documentTable), ""},
               {"Local Parameters", offered_names(document, image), " (local)"}};
    while (!list.empty()) {
        const std::size_t end = std::min(list.find(separator), list.size());
        const std::string_view row = list.substr(0, end);
        list.remove_prefix(std::min(end + 1, list.size()));
        if (row.size() < 2) continue;
        chosen.push_back({row.back() == globalFlag ? global : local, std::string(row.substr(0, row.size() - 1))});
    }
}

std::string CParDisplayDlg::listText() const
{
    std::string text;
    for (const entry& each : chosen) text += each.text + (each.source == global ? globalFlag : localFlag) + separator;
    return text;
}
