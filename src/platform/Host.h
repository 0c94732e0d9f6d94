#pragma once
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

/// Icons of a message box.
enum class message_icon { information, warning, error };

/// Values kept for the user between runs, by section and key.
class IProfile {
public:
    virtual ~IProfile() = default;
    virtual std::optional<int> readInt(const std::string& section, const std::string& key) const = 0;
    virtual std::optional<std::string> readString(const std::string& section, const std::string& key) const = 0;
    virtual std::optional<std::vector<std::byte>> readBinary(const std::string& section,
                                                             const std::string& key) const = 0;
    virtual bool writeInt(const std::string& section, const std::string& key, int value) = 0;
    virtual bool writeString(const std::string& section, const std::string& key, const std::string& value) = 0;
    virtual bool writeBinary(const std::string& section, const std::string& key, std::span<const std::byte> value) = 0;
};

/// What a save dialog is asked to show.
struct save_prompt {
    std::wstring suggestedPath;
    std::string filter; ///< "name|pattern|name|pattern||"
};

/// The machine as the logic sees it. One host lives for the whole program; see `CWinApp`.
class IHost {
public:
    virtual ~IHost() = default;
    virtual IProfile& profile() = 0;
    virtual void messageBox(const std::string& text, message_icon icon) = 0;
    /// The path that the user chose, or nothing when the dialog was cancelled.
    virtual std::optional<std::wstring> askSavePath(const save_prompt& prompt) = 0;
    /// Logical dots per inch of the system; 0 when it cannot tell.
    virtual int systemDpi() const { return 0; }
    /// Nested; the cursor returns with the last `false`.
    virtual void waitCursor(bool on) = 0;
};
