#include "platform/dialogs/VarListCtrl.h"

#include "base/variables/declaration.h"
#include "base/variables/option_display.h"

using namespace vldv;

namespace {

const SPMVarList& no_variables()
{
    static const SPMVarList none;
    return none;
}

const SPMVarList& list_or_none(const SPMVarList* list) { return list ? *list : no_variables(); }

} // namespace

void CVarListCtrl::SetVarList(SPMVarList* list_)
{
    if (variables) variables->RemoveFireVariableChangeHandler(this);
    variables = list_;
    if (variables) variables->AddFireVariableChangeHandler(this);
}

bool CVarListCtrl::hasRow(const SPMVar& variable) const
{
    return *variable.get_description() && !hidden.contains(variable.get_name());
}

unsigned CVarListCtrl::rowCount() const
{
    unsigned count = 0;
    for (const SPMVar& variable : list_or_none(variables).all())
        if (hasRow(variable)) ++count;
    return count;
}

const SPMVar& CVarListCtrl::row(unsigned index) const
{
    for (const SPMVar& variable : list_or_none(variables).all())
        if (hasRow(variable) && index-- == 0) return variable;
    return list_or_none(variables).get_var(unsigned(-1));
}

std::string CVarListCtrl::rowText(unsigned index) const
{
    return base::shown_text(list_or_none(variables), row(index));
}

bool CVarListCtrl::isHeading(unsigned index) const { return base::is_heading(row(index)); }

unsigned CVarListCtrl::headingOf(unsigned index) const
{
    if (index >= rowCount() || isHeading(index)) return unsigned(-1);
    // A heading holds for the rows that follow it as long as their names begin with its name; the first other row ends
    // it.
    unsigned found = unsigned(-1), at = 0;
    for (const SPMVar& variable : variables->all()) {
        if (!hasRow(variable)) continue;
        if (base::is_heading(variable))
            found = at;
        else if (found != unsigned(-1) && !base::stands_under(row(found), variable))
            found = unsigned(-1);
        if (at++ == index) break;
    }
    return found;
}

bool CVarListCtrl::edit(unsigned index, const char* text)
{
    if (index >= rowCount() || isHeading(index)) return false;
    SPMVar changed = row(index);
    if (!base::take_shown_text(*variables, changed, text)) return false;
    changed.update_timestamp();
    variables->set_var(changed);
    return true;
}
