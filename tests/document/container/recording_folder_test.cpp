#include "document/container/recording_folder.h"

#include "support/temporary_folder.h"

#include <gtest/gtest.h>
#include <unistd.h>

namespace {

namespace fs = std::filesystem;

/// The superuser may read everything: while this lives the process is somebody else.
class ordinary_user {
public:
    ordinary_user() : isNeeded(geteuid() == 0) { EXPECT_TRUE(!isNeeded || seteuid(nobody) == 0); }
    ordinary_user(const ordinary_user&) = delete;
    ordinary_user& operator=(const ordinary_user&) = delete;
    ~ordinary_user() { EXPECT_TRUE(!isNeeded || seteuid(0) == 0); }

private:
    static constexpr uid_t nobody = 65534;
    bool isNeeded;
};

const char* const matrix = "# Channel: Height\n# Width: 2 nm\n# Height: 2 nm\n# Value units: nm\n1 2\n3 4\n";
const char* const omicron = ";\n;  Omicron SPM Control.\n;  Parameter file for SPM data.\n;\n";
const std::string omicronData("\0\1\0\2", 4);

class RecordingFolder : public testing::Test {
protected:
    temporary_folder folder;

    void write(const std::string& name, const std::string& content) const
    {
        fs::create_directories((folder / name).parent_path());
        write_file(folder / name, content);
    }
    static std::vector<std::string> names(const document::folder_content& found)
    {
        std::vector<std::string> out;
        for (const auto& each : found.recordings) out.push_back(each.path.filename().native());
        return out;
    }
};

TEST_F(RecordingFolder, WhatCannotBeReadIsTold)
{
    for (const char* name : {"good.txt", "shut.txt", "a/b.txt", "shut/c.txt", "listed/d.txt"}) write(name, matrix);
    fs::create_symlink("gone.txt", folder / "leads nowhere");
    fs::create_symlink("loop", folder / "loop");
    fs::permissions(folder.path, fs::perms(0755));
    for (const char* name : {"shut.txt", "shut"}) fs::permissions(folder / name, fs::perms::none);
    fs::permissions(folder / "listed", fs::perms(0444));
    document::folder_content found, shut;
    {
        const ordinary_user user;
        found = document::recordings_in(folder.path);
        shut = document::recordings_in(folder / "shut");
    }
    for (const char* name : {"shut", "listed"}) fs::permissions(folder / name, fs::perms::owner_all);
    EXPECT_EQ(names(found), (std::vector<std::string>{"b.txt", "good.txt"}));
    EXPECT_TRUE(found.recordings[0].isCertain);
    std::vector<std::pair<std::string, std::string>> told;
    for (const auto& [path, reason] : found.unreadables)
        told.emplace_back(path.lexically_relative(folder.path), reason);
    const std::string denied = "Permission denied", loops = "Too many levels of symbolic links";
    EXPECT_EQ(told,
              (decltype(told){{"listed/d.txt", denied}, {"loop", loops}, {"shut", denied}, {"shut.txt", denied}}));
    ASSERT_EQ(shut.unreadables.size(), 1u);
    EXPECT_EQ(shut.unreadables[0].path, folder / "shut") << "the folder itself";
}

TEST_F(RecordingFolder, ASetOfFilesCountsOnce)
{
    for (const char* name : {"in/m1.par", "in/M2.PAR", "other/m1.par"}) write(name, omicron);
    for (const char* name : {"in/m1.tf0", "in/m1.tb0", "in/m2.sf0", "in/m3.tf0"}) write(name, omicronData);
    write("in/m1.txt", matrix);
    const document::folder_content found = document::recordings_in(folder.path);
    EXPECT_EQ(names(found), (std::vector<std::string>{"M2.PAR", "m1.par", "m1.txt", "m3.tf0", "m1.par"}))
        << "a data file whose parameters are missing stands for itself";
    EXPECT_FALSE(found.recordings[3].isCertain);
    EXPECT_TRUE(found.unreadables.empty());
}

TEST_F(RecordingFolder, WhatIsPassedOverIsCounted)
{
    write("tab.csv", "1,2\n3,4\n");
    write("below/tab.xyz", "0 0 1\n1 0 2\n");
    write("out/m.txt", matrix);
    const auto isOut = [&](const fs::path& below) { return below == folder / "out"; };
    const document::folder_content found = document::recordings_in(folder.path, isOut);
    EXPECT_TRUE(found.recordings.empty());
    EXPECT_EQ(found.others, 2u);
    EXPECT_EQ(document::why_no_recordings(found), "none of the files in the folder (2) is a recording by its name or "
                                                  "content; a file that is named itself is tried all the same");
    EXPECT_EQ(document::why_no_recordings({}), "the folder holds no file that opens");
}

TEST_F(RecordingFolder, ADamagedRecordingIsNotPassedOver)
{
    // Nothing in them says what they are, but their names do; the others may be anybody's.
    write("empty.spm", "");
    write("scan.001", std::string(64, '\0'));
    write("night.JPK-force", "");
    write("noise.mdt", "????");
    for (const char* name : {"readme.txt", "part.par", "solid.stp", "scan.100", "my.jpkg", "._scan.001"})
        write(name, "");
    const document::folder_content found = document::recordings_in(folder.path);
    EXPECT_EQ(names(found), (std::vector<std::string>{"empty.spm", "night.JPK-force", "noise.mdt", "scan.001"}));
    for (const auto& each : found.recordings) EXPECT_TRUE(each.isCertain) << each.path;
    EXPECT_EQ(found.others, 6u);
}

} // namespace
