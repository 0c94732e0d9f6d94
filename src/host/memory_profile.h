#pragma once
#include "platform/Host.h"

#include <map>

namespace host {

/// Settings that live as long as the program.
class memory_profile : public IProfile {
public:
    std::optional<int> readInt(const std::string&, const std::string&) const override { return std::nullopt; }
    std::optional<std::string> readString(const std::string& section, const std::string& key) const override
    {
        const auto found = texts.find({section, key});
        return found == texts.end() ? std::nullopt : std::optional(found->second);
    }
    std::optional<std::vector<std::byte>> readBinary(const std::string&, const std::string&) const override
    {
        return std::nullopt;
    }
    bool writeInt(const std::string&, const std::string&, int) override { return true; }
    bool writeString(const std::string& section, const std::string& key, const std::string& value) override
    {
        texts[{section, key}] = value;
        return true;
    }
    bool writeBinary(const std::string&, const std::string&, std::span<const std::byte>) override { return true; }

private:
    std::map<std::pair<std::string, std::string>, std::string> texts;
};

} // namespace host
