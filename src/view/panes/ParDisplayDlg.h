#pragma once
#include "platform/dialogs/ListChooser.h"
#include "vldv_api.h"

#include <string_view>

class CStorageDoc;

/// The dialog that chooses which text parameters of a document and of one of its images a legend shows.
///
/// The choice is kept as one text: for each parameter its name, "+" for the document's or "-" for the image's, and "|".
/// A name with "|" in it cannot stand there and is not offered.
class VLDV_API CParDisplayDlg : public vldv::CListChooser {
public:
    static constexpr std::size_t global = 0, local = 1; ///< the two sources

    /// \param list  what is chosen now; parameters that the document lacks stay in it
    CParDisplayDlg(const CStorageDoc& document, unsigned image, std::string_view list);
    std::string listText() const;
};
