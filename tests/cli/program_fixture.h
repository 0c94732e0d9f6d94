#pragma once
#include "document/StorageDoc.h"
#include "platform/app/WinApp.h"
#include "platform/files/paths.h"
#include "program_run.h"
#include "support/HeadlessHost.h"
#include "support/temporary_folder.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

using testing::HasSubstr;

/// 2 rows of 2 columns with four different corners, as a text matrix with its top row first.
inline constexpr const char* smallMatrix =
    "# Channel: Height\n# Width: 2 nm\n# Height: 2 nm\n# Value units: nm\n1 2\n3 4\n";

/// Whole numbers stay as they are; the bottom row stands first.
inline constexpr const char* smallMatrixRaw = "3\t4\n1\t2\n";

/// What an object tells under the names of another is what that one tells.
inline void expect_fields(const nlohmann::json& object, const nlohmann::json& wanted)
{
    nlohmann::json told;
    for (const auto& [name, value] : wanted.items()) told[name] = object.value(name, nlohmann::json("missing"));
    EXPECT_EQ(told, wanted) << object;
}

/// Runs vldv in a folder of its own.
class ProgramTest : public testing::Test {
protected:
    temporary_folder folder;

    program_result vldv(const std::vector<std::string>& arguments, const std::filesystem::path& output = {}) const
    {
        return run_vldv(folder.path, arguments, output);
    }
    /// The call ends so, and its standard error tells why.
    void tells(const std::vector<std::string>& arguments, const std::string& reason, int status = 1) const
    {
        const program_result result = vldv(arguments);
        EXPECT_EQ(result.status, status) << testing::PrintToString(arguments);
        EXPECT_THAT(result.err, HasSubstr(reason)) << testing::PrintToString(arguments);
    }
    void examples() const { ASSERT_EQ(vldv({"examples", "ex"}).status, 0); }
    nlohmann::json info(const std::vector<std::string>& files, int status = 0) const
    {
        std::vector<std::string> arguments = {"info", "--json"};
        arguments.insert(arguments.end(), files.begin(), files.end());
        const program_result result = vldv(arguments);
        EXPECT_EQ(result.status, status) << result.err;
        return nlohmann::json::parse(result.out);
    }
    /// What a call tells of each file, or of each image of a kind.
    nlohmann::json filesOf(std::vector<std::string> arguments, int status = 0) const
    {
        arguments.push_back("--json");
        const program_result result = vldv(arguments);
        EXPECT_EQ(result.status, status) << result.err;
        return nlohmann::json::parse(result.out)["files"];
    }
    /// A document that a function fills.
    template <class Fill>
    void writeDocument(const std::string& name, const Fill& fill) const
    {
        CHeadlessHost host;
        CWinApp app(host);
        CStorageDoc document;
        fill(document);
        ASSERT_TRUE(document.DoSave(platform::to_wide(folder / name).c_str(), false));
    }
    /// A document of these streams.
    void write(const std::string& name, const std::vector<SPMDataStream>& streams) const
    {
        writeDocument(name, [&](CStorageDoc& document) {
            document.AddNewImages(streams.data(), static_cast<unsigned>(streams.size()));
        });
    }
};
