#pragma once
#include "base/VLAllocator.h"
#include "vldv_api.h"

#include <string>

/// Owned text that crosses library boundaries: the class header and one pointer, which callers read directly.
class VLDV_API smart_string : public VLAllocator {
public:
    smart_string() noexcept = default;
    smart_string(const smart_string& other);
    smart_string(smart_string&& other) noexcept;
    /// The first `length` bytes of `source`; `unsigned(-1)` means up to the terminator. Null gives an empty value.
    smart_string(const char* source, unsigned length = unsigned(-1));
    smart_string(const std::string& source);
    virtual ~smart_string();

    smart_string& operator=(const smart_string& other);
    smart_string& operator=(smart_string&& other) noexcept;
    /// Compares the text; null and empty are equal.
    bool operator==(const smart_string& other) const noexcept;

    /// The text, never null.
    const char* c_str() const noexcept { return text ? text : ""; }

    char* text = nullptr;
};
