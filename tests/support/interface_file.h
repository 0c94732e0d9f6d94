#pragma once
#include "base/SPMVarList.h"
#include "platform/files/interface_directory.h"

#include <filesystem>
#include <fstream>
#include <string>

/// The variable "language" of the global options for the lifetime of this object.
class scoped_language {
public:
    explicit scoped_language(const char* name)
    {
        SPMVar language;
        language.Init("language,string");
        language.set_string(name);
        VLGlobalVarList* const options = VLGlobalVarList::GetVarList("global_options");
        options->set_var(language);
        options->ReleaseList();
    }
    scoped_language(const scoped_language&) = delete;
    scoped_language& operator=(const scoped_language&) = delete;
    ~scoped_language()
    {
        VLGlobalVarList* const options = VLGlobalVarList::GetVarList("global_options");
        options->set_var("language", "");
        options->ReleaseList();
    }
};

/// A file in the interface folder, beside the test program, for the lifetime of this object.
class interface_file {
public:
    interface_file(const std::string& name, const std::string& content, bool translated = false)
        : path(get_interface_directory(!translated) / name)
    {
        std::filesystem::create_directories(path.parent_path());
        std::ofstream(path) << content;
    }
    interface_file(const interface_file&) = delete;
    interface_file& operator=(const interface_file&) = delete;
    ~interface_file()
    {
        std::error_code error;
        std::filesystem::remove(path, error);
        if (path.parent_path() != get_interface_directory(true).parent_path())
            std::filesystem::remove(path.parent_path(), error);
    }

private:
    std::filesystem::path path;
};
