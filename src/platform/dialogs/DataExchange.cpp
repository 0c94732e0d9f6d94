#include "platform/dialogs/DataExchange.h"

#include "base/text.h"
#include "platform/dialogs/VarListCtrl.h"

#include <cmath>

using namespace vldv;

namespace {

constexpr std::size_t longestNumber = 256;
constexpr double plainDecades = 7.0;

} // namespace

void DDX_DoublePrecText(CDataExchange* exchange, int id, double& value, int precision)
{
    if (exchange->m_bSaveAndValidate) {
        const std::string text = base::narrow(exchange->GetControlText(id).substr(0, longestNumber));
        value = base::leading_number(text).value_or(value);
        return;
    }
    // The logarithm of 0 is infinite and that of a negative number is none: both fail the comparison.
    const bool isPlain = std::fabs(std::log10(value)) <= plainDecades;
    const std::string text = base::formatted(isPlain ? "%.*f" : "%.*g", precision, value);
    exchange->SetControlText(id, base::widen(text));
}

void DDX_VarList(CDataExchange* exchange, unsigned id, SPMVar* variables, int count)
{
    CVarListCtrl* const grid = exchange->GetVarListCtrl(id);
    SPMVarList* const list = grid ? grid->GetVarList() : nullptr;
    if (!list || count < 1) return;
    if (!exchange->m_bSaveAndValidate) {
        list->set_variables(variables, static_cast<unsigned>(count));
        return grid->Refresh();
    }
    for (int i = 0; i < count; ++i)
        if (list->get_var_i(variables[i].get_name()) != unsigned(-1))
            variables[i] = list->get_var(variables[i].get_name());
}
