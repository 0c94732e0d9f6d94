#pragma once
#include <vector>

/// Text of the string table with this number, UTF-8; empty for an unknown one.
const char* string_resource(unsigned id) noexcept;
/// All numbers, ascending.
std::vector<unsigned> string_resource_ids();
