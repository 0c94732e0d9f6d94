#pragma once
#include "platform/Host.h"

#include <deque>
#include <map>
#include <string>
#include <utility>
#include <vector>

/// A machine for tests: prompts answer from a script and are recorded, the profile is a map.
class CHeadlessHost : public IHost, public IProfile {
public:
    IProfile& profile() override { return *this; }
    void messageBox(const std::string& text, message_icon) override { messages.push_back(text); }
    std::optional<std::wstring> askSavePath(const save_prompt& prompt) override
    {
        savePrompts.push_back(prompt);
        if (savePaths.empty()) return std::nullopt;
        std::wstring path = savePaths.front();
        savePaths.pop_front();
        return path;
    }
    int systemDpi() const override { return dpi; }
    void waitCursor(bool on) override { waiting += on ? 1 : -1; }

    std::optional<int> readInt(const std::string& section, const std::string& key) const override
    {
        return find(ints, section, key);
    }
    std::optional<std::string> readString(const std::string& section, const std::string& key) const override
    {
        return find(texts, section, key);
    }
    std::optional<std::vector<std::byte>> readBinary(const std::string& section, const std::string& key) const override
    {
        return find(binaries, section, key);
    }
    bool writeInt(const std::string& section, const std::string& key, int value) override
    {
        return write(ints, section, key, value);
    }
    bool writeString(const std::string& section, const std::string& key, const std::string& value) override
    {
        return write(texts, section, key, value);
    }
    bool writeBinary(const std::string& section, const std::string& key, std::span<const std::byte> value) override
    {
        return write(binaries, section, key, std::vector<std::byte>(value.begin(), value.end()));
    }

    std::vector<std::string> messages;
    std::vector<save_prompt> savePrompts;
    std::deque<std::wstring> savePaths; ///< answers of the save dialog; none left: cancelled
    int dpi = 0; ///< 0: cannot tell
    int waiting = 0;
    int writesUntilFailure = -1; ///< writes of the profile that succeed; negative: all

private:
    using place = std::pair<std::string, std::string>;
    template <class T>
    static std::optional<T> find(const std::map<place, T>& values, const std::string& section, const std::string& key)
    {
        const auto found = values.find({section, key});
        return found == values.end() ? std::nullopt : std::optional<T>(found->second);
    }
    template <class T>
    bool write(std::map<place, T>& values, const std::string& section, const std::string& key, const T& value)
    {
        if (writesUntilFailure == 0) return false;
        if (writesUntilFailure > 0) --writesUntilFailure;
        values.insert_or_assign({section, key}, value);
        return true;
    }

    std::map<place, int> ints;
    std::map<place, std::string> texts;
    std::map<place, std::vector<std::byte>> binaries;
};
