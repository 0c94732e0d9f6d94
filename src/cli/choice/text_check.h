#pragma once
#include <string>
#include <utility>

namespace vldv::cli {

/// A check that `parse` takes a text: else "expected LEFT,TOP,RIGHT,BOTTOM, not "1,2"".
template <class Parse>
auto must_parse(Parse parse, std::string expected)
{
    return [parse, expected = std::move(expected)](const std::string& text) {
        return parse(text) ? std::string() : "expected " + expected + ", not \"" + text + '"';
    };
}

} // namespace vldv::cli
