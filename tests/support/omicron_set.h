#pragma once
#include "support/temporary_folder.h"

/// Writes a small recording of two files: "a.par" and the heights in "a.tf0", 3 x 2. \return the path of the first
inline std::filesystem::path write_omicron_set(const std::filesystem::path& folder)
{
    std::filesystem::create_directories(folder);
    write_file(folder / "a.tf0", "\1\2\3\4\5\6\7\1\2\3\4\5");
    write_file(folder / "a.par", ";\n;  Omicron SPM Control.\n;  Parameter file for SPM data.\n;\n"
                                 "Field X Size in nm : 30\nField Y Size in nm : 20\n"
                                 "Image Size in X : 3\nImage Size in Y : 2\n\n"
                                 "Topographic Channel : Z ;Channel\n Forward \n -10\n 10\n -1\n 3\n"
                                 " 9.5 ;Resolution\n nm ;Unit\n a.tf0  ;Filename\n\n");
    return folder / "a.par";
}
