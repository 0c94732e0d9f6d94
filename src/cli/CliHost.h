#pragma once
#include "cli/CliWindow.h"
#include "platform/app/Host.h"

#include <functional>
#include <string>

namespace vldv::cli {

/// The machine of the command line: windows that nobody sees, no dialogs, no settings that outlive the program.
/// Messages are kept for the command that caused them.
class CCliHost : public IHost, private IProfile {
public:
    IProfile& profile() override { return *this; }
    void messageBox(const std::string& text, message_icon icon) override;
    std::optional<std::wstring> askSavePath(const save_prompt&) override { return std::nullopt; }
    void waitCursor(bool) override {}
    bool progress(double done) override
    {
        if (onProgress) onProgress(done);
        return true; // the keyboard's interrupt ends the program
    }
    std::unique_ptr<IWindowPeer> createWindow(CWnd& logic, CWnd*, window_kind) override
    {
        return std::make_unique<CCliWindow>(logic);
    }

    /// The messages since the last call, a line each.
    std::string takeMessages();

    /// Told how much of the present file is read, 0 to 1. May stay empty.
    std::function<void(double)> onProgress;

private:
    std::optional<int> readInt(const std::string&, const std::string&) const override { return std::nullopt; }
    std::optional<std::string> readString(const std::string&, const std::string&) const override
    {
        return std::nullopt;
    }
    std::optional<std::vector<std::byte>> readBinary(const std::string&, const std::string&) const override
    {
        return std::nullopt;
    }
    bool writeInt(const std::string&, const std::string&, int) override { return true; }
    bool writeString(const std::string&, const std::string&, const std::string&) override { return true; }
    bool writeBinary(const std::string&, const std::string&, std::span<const std::byte>) override { return true; }
    std::vector<std::string> keys(const std::string&) const override { return {}; }
    std::vector<std::string> sections(const std::string&) const override { return {}; }
    bool deleteValue(const std::string&, const std::string&) override { return true; }
    bool deleteSection(const std::string&) override { return true; }
    void beginBatch() override {}
    bool endBatch() override { return true; }

    std::string messages;
};

} // namespace vldv::cli
