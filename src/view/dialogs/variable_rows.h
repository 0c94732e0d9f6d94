#pragma once
#include "base/SPMVarList.h"
#include "vldv_api.h"

#include <map>
#include <string>
#include <vector>

class CWnd;

namespace vldv::view {

/// A row of a dialog: declaration, label and value. An empty label keeps that of the declaration.
struct variable_row {
    std::string declaration, label, value;
};
VLDV_INTERNAL_API std::vector<SPMVar> declared(const std::vector<variable_row>& rows);
/// "Step X, nm"; the name alone without units.
VLDV_INTERNAL_API std::string label_with_units(const char* name, const char* units);

/// Runs the dialog that edits the list. \return false when it was cancelled
VLDV_INTERNAL_API bool ask_variables(SPMVarList& list, const char* title, CWnd* parent);

/// Keeps variables of a dialog in accord while the user edits them.
class VLDV_INTERNAL_API tied_variables : private SPMVarListHandler {
public:
    explicit tied_variables(SPMVarList& list_) : list(list_) { list.AddFireVariableChangeHandler(this); }
    tied_variables(const tied_variables&) = delete;
    tied_variables& operator=(const tied_variables&) = delete;

protected:
    ~tied_variables() { list.RemoveFireVariableChangeHandler(this); }
    /// The user changed a variable; others are to follow by `put`, which does not come back here.
    virtual void userChanged(const std::string& name) = 0;
    void put(const std::string& name, double value);
    double number(const char* name) const { return static_cast<double>(list[name]); }
    SPMVarList& list;

private:
    void OnFireVariableChange(int index, const SPMVarList*) override;
    std::map<std::string, double> written; ///< by `put`, whose changes are told later
};

} // namespace vldv::view
