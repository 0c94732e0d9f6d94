#include "base/SPMVarList.h"

#include <algorithm>
#include <cassert>
#include <map>
#include <memory>

namespace {

const SPMVar& unknown_variable() noexcept
{
    static const SPMVar shared;
    return shared;
}

} // namespace

SPMVarList::SPMVarList() = default;
SPMVarList::SPMVarList(const SPMVarList& other) : variables(other.variables), positions(other.positions) {}

SPMVarList& SPMVarList::operator=(const SPMVarList& other)
{
    variables = other.variables;
    positions = other.positions;
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

unsigned SPMVarList::get_var_i(const char* name) const noexcept
{
    const auto found = positions.find(std::string_view(name));
    return found == positions.end() ? unsigned(-1) : found->second;
}

void SPMVarList::set_var(const SPMVar& source)
{
    const unsigned index = get_var_i(source.get_name());
    if (index == unsigned(-1)) {
        const std::uint64_t stamp = source.timestamp;
        variables.push_back(source);
        positions.emplace(source.get_name(), get_size() - 1);
        if (stamp != 0) notify(get_size() - 1);
        return;
    }
    const bool changed = variables[index].timestamp != source.timestamp;
    variables[index] = source;
    if (changed) notify(index);
}

bool SPMVarList::set_var(const char* name, const char* text)
{
    const unsigned index = get_var_i(name);
    if (index == unsigned(-1) || !variables[index].from_string(text)) return false;
    variables[index].update_timestamp();
    notify(index);
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
}

unsigned SPMVarList::get_variables(SPMVar* out, unsigned max) const
{
    if (!out) return get_size();
    const unsigned copied = std::min(get_size(), max);
    std::copy_n(variables.begin(), copied, out);
    return copied;
}

void SPMVarList::AddFireVariableChangeHandler(SPMVarListHandler* handler)
{
    if (std::ranges::find(handlers, handler) == handlers.end()) handlers.push_back(handler);
}

void SPMVarList::RemoveFireVariableChangeHandler(SPMVarListHandler* handler) { std::erase(handlers, handler); }

void SPMVarList::notify(unsigned index)
{
    // A handler may register or remove others; who has left in the meantime is not called any more.
    const std::vector<SPMVarListHandler*> told = handlers;
    for (SPMVarListHandler* handler : told)
        if (std::ranges::find(handlers, handler) != handlers.end())
            handler->OnFireVariableChange(static_cast<int>(index), this);
}

VLGlobalVarList* VLGlobalVarList::GetVarList(const char* name)
{
    static std::map<std::string, std::unique_ptr<VLGlobalVarList>, std::less<>> lists;
    auto found = lists.find(std::string_view(name));
    if (found == lists.end()) found = lists.emplace(name, std::unique_ptr<VLGlobalVarList>(new VLGlobalVarList)).first;
    ++found->second->referenceCount;
    return found->second.get();
}

void VLGlobalVarList::ReleaseList() noexcept
{
    assert(referenceCount > 0 && "each release pairs with a GetVarList");
    if (referenceCount > 0) --referenceCount;
}
