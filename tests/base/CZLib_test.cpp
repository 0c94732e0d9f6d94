#include "base/CZLib.h"

#include "base/text.h"
#include "support/temporary_folder.h"

#include <csignal>
#include <ctime>
#include <gtest/gtest.h>
#include <memory>
#include <random>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>
#include <zip.h>

namespace {

std::wstring wide(const std::filesystem::path& path) { return base::widen(path.native()); }

std::string noise(std::size_t length)
{
    std::mt19937 random(5);
    std::string bytes(length, '\0');
    for (char& c : bytes) c = static_cast<char>(random());
    return bytes;
}

struct entry {
    std::string name, content;
    bool operator==(const entry&) const = default;
};

/// What another library finds in the archive.
std::vector<entry> entries_of(const std::filesystem::path& path)
{
    int error = 0;
    const std::unique_ptr<zip_t, decltype(&zip_discard)> archive(zip_open(path.c_str(), ZIP_CHECKCONS, &error),
                                                                 zip_discard);
    EXPECT_TRUE(archive) << error;
    std::vector<entry> found;
    for (zip_int64_t i = 0; archive && i < zip_get_num_entries(archive.get(), 0); ++i) {
        const auto index = static_cast<zip_uint64_t>(i);
        zip_stat_t stat{};
        EXPECT_EQ(zip_stat_index(archive.get(), index, ZIP_FL_ENC_RAW, &stat), 0);
        EXPECT_LE(std::abs(std::difftime(stat.mtime, std::time(nullptr))), 60.0);
        zip_uint8_t system = 0;
        zip_uint32_t attributes = 0;
        zip_file_get_external_attributes(archive.get(), index, 0, &system, &attributes);
        EXPECT_EQ(system, ZIP_OPSYS_UNIX);
        EXPECT_EQ(attributes >> 16, 0100644u);
        std::string content(stat.size, '\0');
        zip_file_t* file = zip_fopen_index(archive.get(), index, 0);
        EXPECT_EQ(zip_fread(file, content.data(), content.size()), static_cast<zip_int64_t>(content.size()));
        EXPECT_EQ(zip_fclose(file), 0); // tells of a wrong checksum
        found.push_back({stat.name, content});
    }
    return found;
}

class CZLibTest : public testing::Test {
protected:
    std::wstring source(const std::string& content)
    {
        write_file(folder / "source", content);
        return wide(folder / "source");
    }

    temporary_folder folder;
    const std::filesystem::path target = folder / "a.spm";
    CZLib zip;
};

TEST_F(CZLibTest, WritesWhatAnotherReaderReads)
{
    const std::vector<entry> entries = {
        {"main.xml", "<xml/>"}, {"Höhe [µm]", std::string(300000, 'h')}, {"empty", ""}, {"noise", noise(200000)}};
    write_file(target, std::string(1000000, 'o')); // replaced, not overwritten in place
    ASSERT_EQ(zip.Open(wide(target).c_str(), CZLib::createNew), 0);
    for (const entry& each : entries) {
        ASSERT_EQ(zip.AddFile(source(each.content).c_str(), base::widen(each.name).c_str()), 0);
        std::filesystem::remove(folder / "source"); // it has been read
    }
    ASSERT_EQ(zip.Close(), 0);
    EXPECT_EQ(entries_of(target), entries);
    const std::string bytes = file_content(target);
    EXPECT_LT(bytes.size(), 203000u); // the even text is packed
    // The first local header: version 2.0 is enough, names are UTF-8 (bit 11).
    EXPECT_EQ(bytes.substr(0, 6), std::string("PK\3\4\x14\0", 6));
    EXPECT_EQ(bytes[7] & 0x08, 0x08);
}

TEST_F(CZLibTest, KeepsAnyPathAndMakesNamesValid)
{
    const std::filesystem::path odd = folder / "caf\xe9.spm"; // no UTF-8
    ASSERT_EQ(zip.Open(wide(odd).c_str(), CZLib::createNew), 0);
    ASSERT_EQ(zip.AddFile(source("x").c_str(), base::widen("caf\xe9").c_str()), 0);
    ASSERT_EQ(zip.Close(), 0);
    EXPECT_EQ(entries_of(odd), (std::vector<entry>{{"caf\xef\xbf\xbd", "x"}}));
}

TEST_F(CZLibTest, TellsOfEveryFailure)
{
    EXPECT_NE(zip.Open(wide(folder / "none/a.spm").c_str(), CZLib::createNew), 0);
    EXPECT_NE(zip.Open(nullptr, CZLib::createNew), 0);
    EXPECT_NE(zip.Open(wide(target).c_str(), 1), 0);
    EXPECT_NE(zip.AddFile(source("x").c_str(), L"x"), 0);
    EXPECT_NE(zip.Close(), 0);
    struct failing_entry {
        std::wstring path, name;
    };
    const failing_entry cases[] = {{wide(folder / "missing"), L"x"},
                                   {wide(folder.path), L"a folder"},
                                   {source("x"), L""},
                                   {source("x"), std::wstring(70000, L'n')}};
    for (const failing_entry& each : cases) {
        ASSERT_EQ(zip.Open(wide(target).c_str(), CZLib::createNew), 0);
        EXPECT_NE(zip.Open(wide(target).c_str(), CZLib::createNew), 0); // one at a time
        EXPECT_EQ(zip.AddFile(source("x").c_str(), L"first"), 0);
        EXPECT_NE(zip.AddFile(each.path.c_str(), each.name.c_str()), 0);
        EXPECT_NE(zip.AddFile(source("x").c_str(), L"last"), 0);
        EXPECT_NE(zip.Close(), 0); // a caller that looks here alone is told, too
    }
    ASSERT_EQ(zip.Open(wide(target).c_str(), CZLib::createNew), 0);
    EXPECT_EQ(zip.Close(), 0);
    EXPECT_EQ(entries_of(target), std::vector<entry>{});
}

bool write_archive(const std::wstring& target, const std::wstring& source)
{
    CZLib zip;
    bool isWritten = zip.Open(target.c_str(), CZLib::createNew) == 0;
    for (const wchar_t* name : {L"first", L"second"}) isWritten = isWritten && zip.AddFile(source.c_str(), name) == 0;
    return zip.Close() == 0 && isWritten;
}

TEST_F(CZLibTest, NoticesAFullDiskAtAnyByte)
{
    const std::wstring from = source(noise(150000)), to = wide(target);
    ASSERT_TRUE(write_archive(to, from));
    const rlim_t whole = std::filesystem::file_size(target);
    std::vector<rlim_t> limits = {whole - 1, whole, whole + 1};
    for (rlim_t limit = 0; limit < whole; limit += limit < 200 || limit + 300 > whole ? 7 : 4001)
        limits.push_back(limit);
    const pid_t child = fork();
    if (child == 0) {
        std::signal(SIGXFSZ, SIG_IGN); // writing fails instead
        for (const rlim_t limit : limits) {
            const rlimit bound{limit, RLIM_INFINITY};
            if (setrlimit(RLIMIT_FSIZE, &bound) != 0 || write_archive(to, from) != (limit >= whole)) _exit(1);
        }
        _exit(0);
    }
    int status = -1;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0);
}

} // namespace
