#include "host/menus/command_door.h"

#include "platform/app/WinApp.h"
#include "platform/app/menu_item.h"

#include <QTimer>
#include <map>
#include <new>
#include <utility>
#include <vector>

namespace vldv::host {

namespace {

/// Of a menu's text: no access key, no dots, and no shortcut behind a tab.
std::string plain_name(const std::string& text)
{
    std::string out;
    for (std::size_t i = 0; i < text.size() && text[i] != '\t'; ++i) {
        if (text[i] == '&' && ++i == text.size()) break; // a double one stands for itself
        out += text[i];
    }
    if (out.ends_with("...")) out.resize(out.size() - 3);
    return out;
}

std::string find_name(const std::vector<menu_item>& items, unsigned id)
{
    for (const menu_item& item : items) {
        if (item.kind == menu_kind::command && item.id == id) return plain_name(item.text);
        if (const std::string below = find_name(item.children, id); !below.empty()) return below;
    }
    return {};
}

struct menu_names {
    std::map<unsigned, std::string> texts;
    std::map<unsigned, unsigned> ranges; ///< last number of a dynamic row by its first

    menu_names()
    {
        for (const unsigned menu : menu_resource_ids())
            for (const menu_row& row : menu_resource(menu)) {
                if (row.kind == menu_kind::command) texts.emplace(row.id, plain_name(row.text));
                if (row.kind == menu_kind::dynamic) ranges.emplace(row.id, row.lastId);
            }
    }
};

/// Tells what there was no memory for, in quotation marks.
void tell_no_memory(const std::string& operation)
{
    CWinApp* const app = AfxGetApp();
    if (!app) return;
    app->host().messageBox(operation.empty() ? "There is not enough memory for this."
                                             : "There is not enough memory for \"" + operation + "\".",
                           message_icon::error);
}

/// \return false when memory ran out, which the user has been told
template <class Run>
bool guarded(const Run& run, const std::function<std::string()>& operation)
{
    try {
        run();
        return true;
    } catch (const std::bad_alloc&) {
        tell_no_memory(operation());
        return false;
    }
}

/// Commands that run now, one out of another, and what waits for the last to end.
struct running_commands {
    unsigned depth = 0;
    std::vector<std::function<void()>> waiting;

    /// What there is no memory to start now goes on waiting.
    void startWaiting() noexcept
    try {
        for (; !waiting.empty(); waiting.erase(waiting.begin())) QTimer::singleShot(0, waiting.front());
    } catch (const std::bad_alloc&) {
    }
};
running_commands running;

struct running_scope {
    running_scope() { ++running.depth; }
    ~running_scope()
    {
        if (--running.depth == 0) running.startWaiting();
    }
    running_scope(const running_scope&) = delete;
    running_scope& operator=(const running_scope&) = delete;
};

} // namespace

std::string command_name(unsigned id)
{
    static const menu_names names;
    if (const auto found = names.texts.find(id); found != names.texts.end()) return found->second;
    CWinApp* const app = AfxGetApp();
    const auto range = names.ranges.upper_bound(id);
    if (!app || range == names.ranges.begin() || id > std::prev(range)->second) return {};
    std::vector<menu_item> items;
    app->routeMenuItems(std::prev(range)->first, items);
    return find_name(items, id);
}

bool run_command(unsigned id, const std::function<bool()>& run)
{
    const running_scope scope;
    bool handled = true;
    guarded([&] { handled = run(); }, [id] { return command_name(id); });
    return handled;
}

bool command_runs() noexcept { return running.depth != 0; }

void after_commands(std::function<void()> work)
{
    running.waiting.push_back(std::move(work));
    if (running.depth == 0) running.startWaiting();
}

void run_named(const std::string& operation, const std::function<void()>& run)
{
    guarded(run, [&] { return operation; });
}

} // namespace vldv::host
