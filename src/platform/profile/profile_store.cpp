#include "platform/profile/profile_store.h"

#include "platform/files/Exceptions.h"
#include "platform/files/file_lock.h"
#include "platform/profile/profile_file.h"

#include <cassert>
#include <cstdlib>
#include <pwd.h>
#include <unistd.h>

using namespace vldv;

namespace {

/// Another program writes for milliseconds; one that was stopped must not stop this one too.
constexpr std::chrono::seconds patience{1};

constexpr const char* firstLine = "# Settings of velmira. Lines that it does not understand stay as they are.\n";

/// Empty when the user has none.
std::filesystem::path home_folder()
{
    const char* const home = std::getenv("HOME");
    if (home && *home) return home;
    const passwd* const user = getpwuid(geteuid());
    return user && user->pw_dir ? user->pw_dir : "";
}

/// Runs `work`. \return true, or false with the reason in `problem`
template <class Work>
bool succeeds(std::string& problem, Work work)
{
    try {
        work();
        return true;
    } catch (const std::exception& exception) {
        problem = exception.what();
        return false;
    }
}

void expect_path(const std::filesystem::path& file)
{
    if (file.empty()) throw CException("there is no home folder for the settings");
}

} // namespace

std::filesystem::path platform::profile_path()
{
    const char* const configured = std::getenv("XDG_CONFIG_HOME");
    std::filesystem::path folder = configured ? configured : "";
    if (!folder.is_absolute()) { // empty and relative ones count as not set
        folder = home_folder();
        if (folder.empty()) return {};
        folder /= ".config";
    }
    return folder / "velmira" / "profile";
}

namespace vldv {

CProfileStore::CProfileStore(std::filesystem::path file_) : file(std::move(file_))
{
    succeeds(problem, [this] {
        expect_path(file);
        values = platform::profile_table(platform::read_profile_file(file));
    });
}

CProfileStore::~CProfileStore()
{
    assert(batches == 0 && "batches end before the store");
    if (!changes.empty()) store();
}

bool CProfileStore::flush()
{
    if (batches > 0) return problem.empty();
    return changes.empty() || store();
}

bool CProfileStore::store() noexcept
{
    if (!succeeds(problem, [this] { merge(); })) return false;
    changes.clear();
    problem.clear();
    return true;
}

void CProfileStore::merge() const
{
    expect_path(file);
    platform::make_profile_folder(file);
    std::filesystem::path lockFile = file;
    lockFile += ".lock";
    // The lock is a file of its own beside the profile, which is replaced by a new file at each write: a lock on the
    // old one would keep nobody out. What is read under it may hold the changes of others; only our own are applied to
    // it.
    const platform::file_lock lock(lockFile, patience);
    const std::string stored = platform::read_profile_file(file);
    platform::profile_table table(stored.empty() ? firstLine : stored);
    changes.apply(table);
    const std::string text = table.text();
    if (text != stored) platform::replace_profile_file(file, text);
}

std::optional<int> CProfileStore::readInt(const std::string& section, const std::string& key) const
{
    return values.readInt(section, key);
}

std::optional<std::string> CProfileStore::readString(const std::string& section, const std::string& key) const
{
    return values.readString(section, key);
}

std::optional<std::vector<std::byte>> CProfileStore::readBinary(const std::string& section,
                                                                const std::string& key) const
{
    return values.readBinary(section, key);
}

bool CProfileStore::writeInt(const std::string& section, const std::string& key, int value)
{
    return write(section, key, value);
}

bool CProfileStore::writeString(const std::string& section, const std::string& key, const std::string& value)
{
    return write(section, key, value);
}

bool CProfileStore::writeBinary(const std::string& section, const std::string& key, std::span<const std::byte> value)
{
    return write(section, key, std::vector<std::byte>(value.begin(), value.end()));
}

bool CProfileStore::write(const std::string& section, const std::string& key, const platform::profile_value& value)
{
    if (values.set(section, key, value)) {
        beforeChange();
        changes.set(section, key, value);
    }
    return problem.empty();
}

std::vector<std::string> CProfileStore::keys(const std::string& section) const { return values.keys(section); }

std::vector<std::string> CProfileStore::sections(const std::string& prefix) const { return values.sections(prefix); }

bool CProfileStore::deleteValue(const std::string& section, const std::string& key)
{
    if (values.erase(section, key)) {
        beforeChange();
        changes.erase(section, key);
    }
    return problem.empty();
}

bool CProfileStore::deleteSection(const std::string& section)
{
    if (values.eraseSection(section)) {
        beforeChange();
        changes.eraseSection(section);
    }
    return problem.empty();
}

/// The first change since the last flush looks whether that can work; asking for each would cost a call of the system.
void CProfileStore::beforeChange()
{
    if (!changes.empty() || !problem.empty()) return;
    succeeds(problem, [this] { platform::expect_storable(file); });
}

void CProfileStore::beginBatch() { ++batches; }

bool CProfileStore::endBatch()
{
    assert(batches > 0 && "each end has its beginning");
    --batches;
    return flush();
}

} // namespace vldv
