#include "view/panes/ParametersView.h"

#include "base/text.h"
#include "document/StorageDoc.h"
#include "document/document_table.h"

#include <algorithm>
#include <cwctype>

using namespace vldv;

namespace vldv::view {

namespace {

std::wstring lower(const std::string& text)
{
    std::wstring out = base::widen(text);
    std::ranges::transform(out, out.begin(),
                           [](wchar_t c) { return static_cast<wchar_t>(std::towlower(std::wint_t(c))); });
    return out;
}

} // namespace

std::vector<parameter_row> parameter_rows(const CStorageDoc& document, const std::string& wanted)
{
    const std::wstring searched = lower(wanted);
    std::vector<parameter_row> rows;
    const auto add = [&](const std::string& place, const CStorageDoc::string_table& strings) {
        for (const auto& [name, value] : strings)
            if (lower(name).find(searched) != std::wstring::npos || lower(value).find(searched) != std::wstring::npos)
                rows.push_back({place, name, value});
    };
    add("Document", document.strings(document::documentTable));
    for (unsigned i = 0; i < document.getImagesNumber(); ++i) {
        const char* const label = document.getImage(i).get_description();
        add(*label ? label : document.getImage(i).get_name(), document.strings(i));
    }
    return rows;
}

} // namespace vldv::view

void CParametersView::OnUpdate(CView*, std::uint32_t, const hint_object&) { show(); }

void CParametersView::setFilter(const std::wstring& text)
{
    filter = base::narrow(text);
    show();
}

void CParametersView::show()
{
    const auto* const document = dynamic_cast<CStorageDoc*>(GetDocument());
    shownRows = document ? view::parameter_rows(*document, filter) : std::vector<view::parameter_row>();
    std::vector<std::vector<std::wstring>> table = {{L"Image", L"Parameter", L"Value"}};
    for (const view::parameter_row& row : shownRows)
        table.push_back({base::widen(row.place), base::widen(row.name), base::widen(row.value)});
    showTable(std::move(table));
}
