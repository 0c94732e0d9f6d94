#pragma once
#include "view/panes/PaneView.h"
#include "vldv_api.h"

#include <string>
#include <vector>

class CStorageDoc;

namespace vldv::view {

/// One text parameter of a document or of an image.
struct parameter_row {
    std::string place; ///< "Document", or the image's label
    std::string name, value;
    bool operator==(const parameter_row&) const = default;
};

/// The document's texts, then those of each image, of which name or value holds `wanted` without regard to case.
std::vector<parameter_row> parameter_rows(const CStorageDoc& document, const std::string& wanted);

} // namespace vldv::view

/// A searchable table of a document's text parameters.
class VLDV_API CParametersView : public vldv::CTableView {
public:
    void OnUpdate(CView* sender, std::uint32_t hint, const vldv::hint_object& object) override;
    /// What the user searches for.
    void setFilter(const std::wstring& text) override;
    const std::vector<vldv::view::parameter_row>& rows() const noexcept { return shownRows; }

private:
    void show();
    std::wstring titleSuffix() const override { return L" parameters"; }

    std::string filter;
    std::vector<vldv::view::parameter_row> shownRows;
};
