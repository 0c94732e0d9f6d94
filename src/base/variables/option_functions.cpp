#include "base/variables/option_functions.h"

#include "base/text/text_list.h"

#include <algorithm>
#include <array>
#include <map>
#include <memory>

namespace vldv::base {

namespace {

constexpr std::size_t maxArguments = 4;

std::map<std::string, any_function, std::less<>>& registered()
{
    // Never destroyed: a module takes its functions back when it is unloaded, which may be at the very end.
    static auto& functions = *new std::map<std::string, any_function, std::less<>>;
    return functions;
}

any_function find_function(std::string_view module, std::string_view name)
{
    const auto found = registered().find(std::string(module) + ":" + std::string(name));
    return found == registered().end() ? nullptr : found->second;
}

char* called(any_function function, bool takesNumbers, std::span<const double> arguments)
{
    if (!takesNumbers) return reinterpret_cast<text_function>(function)();
    std::array<int, maxArguments> numbers{};
    std::transform(arguments.begin(), arguments.end(), numbers.begin(), [](double value) {
        return value > -2147483649.0 && value < 2147483648.0 ? static_cast<int>(value) : 0;
    });
    switch (arguments.size()) {
    case 0:
        return reinterpret_cast<text_function>(function)();
    case 1:
        return reinterpret_cast<char* (*)(int)>(function)(numbers[0]);
    case 2:
        return reinterpret_cast<char* (*)(int, int)>(function)(numbers[0], numbers[1]);
    case 3:
        return reinterpret_cast<char* (*)(int, int, int)>(function)(numbers[0], numbers[1], numbers[2]);
    default:
        return reinterpret_cast<char* (*)(int, int, int, int)>(function)(numbers[0], numbers[1], numbers[2],
                                                                         numbers[3]);
    }
}

} // namespace

void register_option_function(std::string_view module, std::string_view name, any_function function)
{
    const std::string key = std::string(module) + ":" + std::string(name);
    if (function)
        registered().insert_or_assign(key, function);
    else
        registered().erase(key);
}

std::optional<std::string> call_option_function(std::string_view target, std::span<const double> arguments)
{
    const std::size_t colon = target.find(':'), star = target.find('*');
    if (colon == std::string_view::npos || star == std::string_view::npos || star < colon) return std::nullopt;
    const std::string_view module = target.substr(0, colon);
    std::string_view name = target.substr(colon + 1, star - colon - 1);
    const bool takesNumbers = name.ends_with("@d");
    if (takesNumbers) name.remove_suffix(2);
    const any_function function = find_function(module, name);
    const any_function release = find_function(module, target.substr(star + 1));
    // Without the function that frees the text the call is not made: it could only leak.
    if (!function || !release || (takesNumbers && arguments.size() > maxArguments)) return std::nullopt;
    const std::unique_ptr<char, text_release> text(called(function, takesNumbers, arguments),
                                                   reinterpret_cast<text_release>(release));
    return text ? std::string(text.get()) : std::string();
}

std::string font_list(std::string_view list)
{
    std::vector<std::string> entries;
    if (auto chosen = list_entry(list, 0)) entries.push_back(*chosen);
    if (const auto fonts = call_option_function("vldv:GetFontList*FreeSettingsString", {})) {
        for (std::string& font : parse_list(*fonts))
            if (entries.empty() || font != entries.front()) entries.push_back(std::move(font));
    }
    return write_list(entries);
}

} // namespace vldv::base
