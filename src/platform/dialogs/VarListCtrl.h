#pragma once
#include "base/SPMVarList.h"
#include "vldv_api.h"

#include <memory>
#include <set>
#include <string>
#include <utility>

namespace vldv {

/// A window of the host around a grid of variables.
class VLDV_API IVarListPeer {
public:
    virtual ~IVarListPeer() = default;
    /// Shows the present values.
    virtual void refresh() = 0;
};

} // namespace vldv

/// The grid that edits a list of variables: what it shows and what edits do. Rows are the variables with a label, in
/// the order of the list, headings among them. The list changes with every edit, so that those who listen follow live.
class VLDV_API CVarListCtrl : private SPMVarListHandler {
public:
    CVarListCtrl() = default;
    CVarListCtrl(const CVarListCtrl&) = delete;
    CVarListCtrl& operator=(const CVarListCtrl&) = delete;
    ~CVarListCtrl() { SetVarList(nullptr); }

    /// \param list_  outlives this or is taken away again; null: there are no rows
    void SetVarList(SPMVarList* list_);
    SPMVarList* GetVarList() const noexcept { return variables; }

    /// Variables that have a label but get no row.
    void hideRows(std::set<std::string, std::less<>> names) { hidden = std::move(names); }
    unsigned rowCount() const;
    const SPMVar& row(unsigned index) const;
    std::string rowText(unsigned index) const;
    /// A declaration without a type: its label stands over the rows behind it.
    bool isHeading(unsigned index) const;
    /// The row of the heading that a row stands under; `unsigned(-1)` when it stands by itself. What stands under a
    /// heading follows it without a gap.
    unsigned headingOf(unsigned index) const;
    /// Stores what the user typed or chose. \return false, with the value as it was, when it cannot be
    bool edit(unsigned index, const char* text);

    void setPeer(std::unique_ptr<vldv::IVarListPeer> peer_) { peer = std::move(peer_); }
    void Refresh()
    {
        if (peer) peer->refresh();
    }

private:
    void OnFireVariableChange(int, const SPMVarList*) override { Refresh(); }

    bool hasRow(const SPMVar& variable) const;

    SPMVarList* variables = nullptr;
    std::set<std::string, std::less<>> hidden;
    std::unique_ptr<vldv::IVarListPeer> peer;
};
