#pragma once

/// Text of the string table with this number; empty for an unknown one.
const char* string_resource(unsigned id) noexcept;
