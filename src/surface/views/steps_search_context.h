#pragma once
#include "base/SPMVarList.h"
#include "platform/dialogs/VarListDlg.h"
#include "surface/figures/measure/step_search.h"

#include <deque>

class CSurfMathView;

/// A search for steps on the shown frame of a surface: the dialog with its mask that follows every change, and what
/// becomes of the steps that were found. The search reads the view's own samples, so that opening the dialog copies
/// nothing.
class steps_search_context : public SPMVarListHandler, public CVarListDlgHandler {
public:
    explicit steps_search_context(CSurfMathView& view_) : view(view_) {}
    /// Asks, and puts the steps into the document, each with a window. Cancelling leaves the last mask.
    void run();

    void OnFireVariableChange(int index, const SPMVarList* list) override;
    void OnCommandMessage(const char* id, CVarListDlg* dialog) override;

private:
    vldv::surface::step_settings proposed() const;
    void search();
    void showMask();
    void tellCount() const;
    /// False when the user keeps steps that he has corrected.
    bool mayReplace() const;
    void deliver();
    void openWindow(unsigned image, int place);

    CSurfMathView& view;
    vldv::surface::step_settings settings; ///< of the last search
    std::deque<vldv::surface::surface_step> steps;
    bool hasSearched = false;
};
