#pragma once
#include "base/SPMVar.h"
#include "base/VLXMLParser.h"
#include "vldv_api.h"

#include <map>
#include <string>

/// Reads the small files that give variables and enum items their labels in the language of the installation: `var`
/// with `id` and `name`, in it `item` with `filter` and `name`. An element that lacks one of its attributes is passed
/// over; an `item` outside of a `var` belongs to the empty id.
class VLDV_API CProcessParser : public VLXMLParser {
public:
    CProcessParser();

    /// Reads an interface file, in the language's folder or else without language. \return false when there is none or
    /// it is broken; what was read before the break stays
    bool loadInterfaceFile(const std::string& name);
    /// Replaces the label of a variable and those of its items where there are others; the value stays.
    void applyLabels(SPMVar& variable) const;

    void init() override;

    std::map<std::string, std::string> labels;                            ///< by id of the variable
    std::map<std::string, std::map<std::string, std::string>> itemLabels; ///< by id, then by key of the item
    std::string currentVariable;

private:
    void xmlh_var(const char* element, const attributes& found);
    void xmlh_var_end(const char* element);
    void xmlh_item(const char* element, const attributes& found);
};
