#pragma once
#include "base/SPMVar.h"
#include "base/variables/option_settling.h"
#include "vldv_api.h"

#include <deque>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

class SPMVarList;

/// Told by a list that one of its variables changed.
class VLDV_API SPMVarListHandler {
public:
    /// \param index  of the changed variable in `list`
    virtual void OnFireVariableChange(int index, const SPMVarList* list) = 0;

protected:
    ~SPMVarListHandler() = default;
};

/// Ordered variables, found by name without allocating. One thread at a time.
/// Each change settles the list: variables with an evaluation expression follow those that it reads. Handlers run after
/// that, once per variable that changed, in the order of declaration. Changes that belong together are one `batch`. A
/// handler may change the list again: it settles at once, and handlers are told when the present one returns. Handlers
/// that keep changing each other's variables without end are stopped after 1000 calls per variable.
class VLDV_API SPMVarList {
public:
    SPMVarList();
    SPMVarList(const SPMVarList& other);
    SPMVarList& operator=(const SPMVarList& other);
    virtual ~SPMVarList();

    /// The variable of that name; a shared one of type 0, which reads as 0, false or empty, when there is none.
    const SPMVar& operator[](const std::string& name) const noexcept { return find(name); }
    const SPMVar& operator[](const char* name) const noexcept { return find(name ? name : ""); }
    const SPMVar& get_var(const char* name) const noexcept { return find(name ? name : ""); }
    /// By position, in declaration order; an index past the end gives the same shared variable.
    const SPMVar& get_var(unsigned index) const noexcept;
    /// Position of the name, or `unsigned(-1)`.
    unsigned get_var_i(std::string_view name) const noexcept;
    unsigned get_var_i(const char* name) const noexcept { return get_var_i(std::string_view(name ? name : "")); }
    std::span<const SPMVar> all() const noexcept { return variables; }
    unsigned get_size() const noexcept { return static_cast<unsigned>(variables.size()); }

    /// Replaces the variable of the same name or appends; handlers run when the stored time stamp changes.
    void set_var(const SPMVar& source);
    /// `from_string` on the named variable, then notifies. \return false for an unknown name or unusable text
    bool set_var(const char* name, const char* text);
    /// Runs `work`, which may change any number of variables, as one change: until the outermost batch ends nothing
    /// follows and nobody is told, so that a value is never bound by what another one is about to leave.
    template <class Work>
    void batch(Work&& work);
    /// Replaces the whole list. Handlers stay and are not told.
    virtual void set_variables(const SPMVar* source, unsigned count);
    /// Copies at most `max` variables to `out` and returns how many; the count when `out` is null.
    unsigned get_variables(SPMVar* out, unsigned max) const;

    /// A copy of `source`, which may be of this list or not, with the value that people are shown: evaluated with this
    /// list behind the names, then through the display expression, limits not applying. Where that gives a text the
    /// copy is a `string`. A broken expression counts as not given.
    SPMVar evaluate_var(const SPMVar& source) const;

    void AddFireVariableChangeHandler(SPMVarListHandler* handler);
    void RemoveFireVariableChangeHandler(SPMVarListHandler* handler);

protected:
    const SPMVar& find(std::string_view name) const noexcept;

private:
    struct name_hash {
        using is_transparent = void;
        std::size_t operator()(std::string_view text) const noexcept { return std::hash<std::string_view>{}(text); }
    };
    /// Of a variable that was set, with the stamp that it had.
    struct set_variable {
        unsigned index;
        std::uint64_t formerStamp;
    };
    void settle();
    void changed(unsigned index, std::uint64_t formerStamp);
    void settleAndNotify();
    void endBatch();
    void tellHandlers();

    std::vector<SPMVar> variables;
    std::unordered_map<std::string, unsigned, name_hash, std::equal_to<>> positions;
    vldv::base::option_settling settling;
    std::vector<set_variable> changes; ///< since the list was settled
    unsigned batches = 0;              ///< that run now, one inside the other
    std::vector<unsigned> moved;       ///< of the present settling
    std::deque<unsigned> pending;      ///< variables whose handlers wait
    bool telling = false;
    std::vector<SPMVarListHandler*> handlers; ///< null: left while handlers are told
};

template <class Work>
void SPMVarList::batch(Work&& work)
{
    ++batches;
    try {
        work();
    } catch (...) {
        endBatch(); // what was changed until then holds
        throw;
    }
    endBatch();
}

/// A list shared by name across the process and counted: `GetVarList` and `ReleaseList` pair within one function.
/// The content of a list lives until the process ends, so that releasing the last reference loses no settings.
class VLDV_API VLGlobalVarList : public SPMVarList {
public:
    /// The list of that name, its reference count raised; created empty on first use.
    static VLGlobalVarList* GetVarList(const char* name);
    void ReleaseList() noexcept;
    unsigned references() const noexcept { return referenceCount; }

private:
    VLGlobalVarList() = default;
    unsigned referenceCount = 0;
};
