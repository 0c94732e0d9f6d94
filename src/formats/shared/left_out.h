#pragma once
#include "base/streams/byte_reader.h"
#include "formats/recording.h"

#include <algorithm>
#include <cstddef>
#include <string>
#include <utility>
#include <vector>

namespace vldv::formats {

/// The text that tells what a reader left out or changed, a line each.
constexpr const char* readerNote = "\\Reader note";

/// What each of its lines holds that tells how many samples were not measured.
constexpr const char* unmeasuredNote = " not measured and ";

/// \return `notes` with a line more
inline std::string with_note(const std::string& notes, const std::string& added)
{
    return notes.empty() ? added : notes + "\n" + added;
}

/// Tells the user something of what was read: as a warning, and as a line of `readerNote`. Only a damaged or hostile
/// file gives more than the first hundred, which nobody reads.
inline void add_warning(recording& out, const std::string& text)
{
    constexpr std::size_t most = 100;
    if (out.warnings.size() > most) return;
    out.warnings.push_back(out.warnings.size() < most ? text : "further notes are not shown");
    std::string& notes = out.strings[readerNote];
    notes = with_note(notes, out.warnings.back());
}

/// Parts of a file that cannot be read, as a rule because the file is cut short: what is whole is shown all the same,
/// and a warning names each part that is not. When nothing is whole, the first reason is why the file is refused.
class left_out {
public:
    void add(base::read_error why)
    {
        const auto same = std::ranges::find(reasons, why.reason, [](const told& each) { return each.why.reason; });
        if (same != reasons.end())
            ++same->times;
        else if (reasons.size() < mostReasons)
            reasons.push_back({std::move(why), 1});
        else
            ++others;
    }
    bool empty() const noexcept { return reasons.empty(); }
    const base::read_error& first() const { return reasons.front().why; }
    void tell(recording& out) const
    {
        for (const auto& [why, times] : reasons)
            add_warning(out, "left out: " + why.reason + (times > 1 ? " (" + std::to_string(times) + " times)" : ""));
        if (others != 0) add_warning(out, "left out: " + std::to_string(others) + " more parts");
    }

private:
    struct told {
        base::read_error why;
        std::size_t times;
    };
    static constexpr std::size_t mostReasons = 20;
    std::vector<told> reasons;
    std::size_t others = 0;
};

} // namespace vldv::formats
