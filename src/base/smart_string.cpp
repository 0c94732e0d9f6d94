#include "base/smart_string.h"

#include <cstring>
#include <utility>

namespace {

char* copied(const char* source, std::size_t length)
{
    char* copy = static_cast<char*>(VLAllocator::operator new(length + 1));
    std::memcpy(copy, source, length);
    copy[length] = '\0';
    return copy;
}

} // namespace

smart_string::smart_string(const smart_string& other) : smart_string(other.text) {}

smart_string::smart_string(smart_string&& other) noexcept : text(std::exchange(other.text, nullptr)) {}

smart_string::smart_string(const char* source, unsigned length)
{
    if (source) text = copied(source, length == unsigned(-1) ? std::strlen(source) : strnlen(source, length));
}

smart_string::smart_string(const std::string& source) : text(copied(source.c_str(), source.size())) {}

smart_string::~smart_string() { VLAllocator::operator delete(text); }

smart_string& smart_string::operator=(const smart_string& other)
{
    smart_string copy(other);
    std::swap(text, copy.text);
    return *this;
}

smart_string& smart_string::operator=(smart_string&& other) noexcept
{
    std::swap(text, other.text);
    return *this;
}

bool smart_string::operator==(const smart_string& other) const noexcept
{
    return std::strcmp(c_str(), other.c_str()) == 0;
}
