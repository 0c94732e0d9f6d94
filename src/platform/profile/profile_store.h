#pragma once
#include "platform/app/Host.h"
#include "platform/profile/profile_changes.h"
#include "platform/profile/profile_table.h"
#include "vldv_api.h"

#include <filesystem>

namespace vldv::platform {

/// File of the user's settings: "velmira/profile" in $XDG_CONFIG_HOME, or in ".config" of the home folder. Empty when
/// the user has neither.
VLDV_INTERNAL_API std::filesystem::path profile_path();

} // namespace vldv::platform

namespace vldv {

/// The user's settings in a file that several running programs share; see platform/profile_line.h for its form.
/// The file is read once. Changes are collected until `flush` or the end of a batch: then the file is read again under
/// a lock, the changed keys alone are replaced in it, and it is exchanged in one step. What others wrote meanwhile
/// stays, and this program sees it with its next start. A write that changes nothing is no change.
/// Writes tell false when the settings cannot be stored as things stand; the value then holds for this run, and every
/// flush tries again. Interface thread only.
class VLDV_API CProfileStore : public IProfile {
public:
    /// \param file_  may be missing, its folders too; empty for settings that cannot be kept
    explicit CProfileStore(std::filesystem::path file_);
    CProfileStore(const CProfileStore&) = delete;
    CProfileStore& operator=(const CProfileStore&) = delete;
    /// Stores what is left.
    ~CProfileStore() override;

    /// Stores the collected changes now; inside a batch nothing is done before its end. Nothing to store is a success.
    bool flush();
    /// Why settings cannot be read or stored, with the path, for the user; empty when all is well.
    const std::string& error() const noexcept { return problem; }

    std::optional<int> readInt(const std::string& section, const std::string& key) const override;
    std::optional<std::string> readString(const std::string& section, const std::string& key) const override;
    std::optional<std::vector<std::byte>> readBinary(const std::string& section, const std::string& key) const override;
    bool writeInt(const std::string& section, const std::string& key, int value) override;
    bool writeString(const std::string& section, const std::string& key, const std::string& value) override;
    bool writeBinary(const std::string& section, const std::string& key, std::span<const std::byte> value) override;
    std::vector<std::string> keys(const std::string& section) const override;
    std::vector<std::string> sections(const std::string& prefix) const override;
    bool deleteValue(const std::string& section, const std::string& key) override;
    bool deleteSection(const std::string& section) override;
    void beginBatch() override;
    bool endBatch() override;

private:
    bool write(const std::string& section, const std::string& key, const vldv::platform::profile_value& value);
    void beforeChange();
    void merge() const;
    bool store() noexcept;

    std::filesystem::path file;
    vldv::platform::profile_table values;
    vldv::platform::profile_changes changes; ///< not yet in the file
    std::string problem;
    int batches = 0; ///< open ones
};

} // namespace vldv
