#include "base/SPMVarList.h"

#include <algorithm>
#include <cassert>
#include <map>
#include <memory>

using namespace vldv;

namespace {

const SPMVar& unknown_variable() noexcept
{
    static const SPMVar shared;
    return shared;
}

// Handlers that answer each other end sooner or later; those that never do must not hang the program.
constexpr std::size_t callsPerVariable = 1000;

} // namespace

SPMVarList::SPMVarList() = default;

SPMVarList::SPMVarList(const SPMVarList& other) : variables(other.variables), positions(other.positions)
{
    for (unsigned i = 0; i < get_size(); ++i) settling.declare(i, variables[i]);
}

SPMVarList& SPMVarList::operator=(const SPMVarList& other)
{
    if (this != &other) SPMVarList::set_variables(other.variables.data(), other.get_size());
    return *this;
}

SPMVarList::~SPMVarList() = default;

const SPMVar& SPMVarList::find(std::string_view name) const noexcept
{
    const auto found = positions.find(name);
    return found == positions.end() ? unknown_variable() : variables[found->second];
}

const SPMVar& SPMVarList::get_var(unsigned index) const noexcept
{
    return index < variables.size() ? variables[index] : unknown_variable();
}

unsigned SPMVarList::get_var_i(std::string_view name) const noexcept
{
    const auto found = positions.find(name);
    return found == positions.end() ? unsigned(-1) : found->second;
}

void SPMVarList::set_var(const SPMVar& source)
{
    unsigned index = get_var_i(source.get_name());
    const std::uint64_t formerStamp = get_var(index).timestamp;
    if (index == unsigned(-1)) {
        index = get_size();
        variables.push_back(source);
        positions.emplace(source.get_name(), index);
    } else {
        variables[index] = source;
    }
    settling.declare(index, variables[index]);
    changed(index, formerStamp);
}

bool SPMVarList::set_var(const char* name, const char* text)
{
    const unsigned index = get_var_i(name);
    if (index == unsigned(-1) || !variables[index].from_string(text)) return false;
    const std::uint64_t formerStamp = variables[index].timestamp;
    variables[index].update_timestamp();
    settling.touch(index);
    changed(index, formerStamp);
    return true;
}

void SPMVarList::set_variables(const SPMVar* source, unsigned count)
{
    std::vector<SPMVar> replaced;
    decltype(positions) replacedPositions;
    replaced.reserve(count);
    for (unsigned i = 0; i < count; ++i) {
        // Of two declarations of one name the later one counts, at the place of the first.
        const auto [place, isNew] =
            replacedPositions.emplace(source[i].get_name(), static_cast<unsigned>(replaced.size()));
        if (isNew)
            replaced.push_back(source[i]);
        else
            replaced[place->second] = source[i];
    }
    variables = std::move(replaced);
    positions = std::move(replacedPositions);
    pending.clear(); // they were positions in the list that is gone
    changes.clear();
    settling.clear();
    for (unsigned i = 0; i < get_size(); ++i) settling.declare(i, variables[i]);
    settle();
}

unsigned SPMVarList::get_variables(SPMVar* out, unsigned max) const
{
    if (!out) return get_size();
    const unsigned copied = std::min(get_size(), max);
    std::copy_n(variables.begin(), copied, out);
    return copied;
}

SPMVar SPMVarList::evaluate_var(const SPMVar& source) const
{
    SPMVar shown = source;
    const unsigned index = get_var_i(source.get_name());
    // The compiled expressions of the list serve when the variable has the same options; a changed copy is compiled
    // anew.
    const bool isKnown = index != unsigned(-1) && settling[index].text == source.get_options();
    base::compiled_options own;
    if (!isKnown) own = base::compiled_options::of(source.get_options());
    const base::compiled_options& options = isKnown ? settling[index] : own;
    const auto evaluated = [&](const base::expression& rule) {
        std::vector<unsigned> inputs;
        for (const std::string& name : rule.names()) inputs.push_back(get_var_i(name));
        return rule.evaluate({base::expression_value::of(shown), variables, inputs});
    };
    if (options.evaluation)
        if (const auto result = evaluated(*options.evaluation)) base::store_evaluated(shown, *result);
    if (options.display)
        if (const auto result = evaluated(*options.display)) base::show_value(shown, *result);
    return shown;
}

void SPMVarList::AddFireVariableChangeHandler(SPMVarListHandler* handler)
{
    if (handler && std::ranges::find(handlers, handler) == handlers.end()) handlers.push_back(handler);
}

void SPMVarList::RemoveFireVariableChangeHandler(SPMVarListHandler* handler)
{
    // While handlers are told the places stay, so that nobody is told twice or left out.
    if (telling)
        std::ranges::replace(handlers, handler, nullptr);
    else
        std::erase(handlers, handler);
}

void SPMVarList::settle()
{
    settling.settle(variables, [this](std::string_view name) { return get_var_i(name); }, moved);
}

void SPMVarList::changed(unsigned index, std::uint64_t formerStamp)
{
    // A variable counts as changed when its time stamp differs from the one before the first of its settings. One that
    // is set twice in a batch is told once, and one that got its old stamp back is not told.
    if (std::ranges::find(changes, index, &set_variable::index) == changes.end())
        changes.push_back({index, formerStamp});
    if (batches == 0) settleAndNotify();
}

void SPMVarList::endBatch()
{
    if (--batches == 0 && !changes.empty()) settleAndNotify();
}

void SPMVarList::settleAndNotify()
{
    moved.clear();
    for (const set_variable& each : changes)
        if (variables[each.index].timestamp != each.formerStamp) moved.push_back(each.index);
    changes.clear();
    settle();
    // Handlers hear of the changes in the order of the list, whichever came first. What a handler sets joins the end of
    // the queue and is told by the loop that runs already: handlers are never nested.
    std::ranges::sort(moved);
    for (const unsigned index : moved)
        if (std::ranges::find(pending, index) == pending.end()) pending.push_back(index);
    if (!telling) tellHandlers();
}

void SPMVarList::tellHandlers()
{
    struct telling_scope {
        SPMVarList& list;
        explicit telling_scope(SPMVarList& list_) : list(list_) { list.telling = true; }
        telling_scope(const telling_scope&) = delete;
        telling_scope& operator=(const telling_scope&) = delete;
        ~telling_scope()
        {
            list.telling = false;
            list.pending.clear();
            std::erase(list.handlers, nullptr);
        }
    } const scope(*this);
    for (std::size_t told = 0; !pending.empty() && told < callsPerVariable * variables.size(); ++told) {
        const unsigned index = pending.front();
        pending.pop_front();
        // By position: a handler may register others, which moves the table.
        for (std::size_t i = 0; i < handlers.size(); ++i)
            if (handlers[i]) handlers[i]->OnFireVariableChange(static_cast<int>(index), this);
    }
}

VLGlobalVarList* VLGlobalVarList::GetVarList(const char* name)
{
    // Never destroyed: statics of programs and modules may ask for a list on their way out.
    static auto& lists = *new std::map<std::string, std::unique_ptr<VLGlobalVarList>, std::less<>>;
    auto found = lists.find(std::string_view(name ? name : ""));
    if (found == lists.end())
        found = lists.emplace(name ? name : "", std::unique_ptr<VLGlobalVarList>(new VLGlobalVarList)).first;
    ++found->second->referenceCount;
    return found->second.get();
}

void VLGlobalVarList::ReleaseList() noexcept
{
    assert(referenceCount > 0 && "each release pairs with a GetVarList");
    if (referenceCount > 0) --referenceCount;
}
