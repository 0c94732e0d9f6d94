#include "program_run.h"

#include "support/temporary_folder.h"

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

void redirect(const std::filesystem::path& path, int descriptor)
{
    const int file = open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
    dup2(file, descriptor);
    close(file);
}

} // namespace

program_result run_vldv(const std::filesystem::path& folder, const std::vector<std::string>& arguments,
                        const std::filesystem::path& output, const std::filesystem::path& input)
{
    const temporary_folder scratch;
    const std::filesystem::path out = scratch / "out", err = scratch / "err";
    std::vector<char*> words = {const_cast<char*>(VLDV_PROGRAM)};
    for (const std::string& argument : arguments) words.push_back(const_cast<char*>(argument.c_str()));
    words.push_back(nullptr);
    const pid_t child = fork();
    if (child == 0) {
        redirect(output.empty() ? out : output, STDOUT_FILENO);
        redirect(err, STDERR_FILENO);
        dup2(open(input.empty() ? "/dev/null" : input.c_str(), O_RDONLY), STDIN_FILENO);
        if (chdir(folder.c_str()) == 0) execv(VLDV_PROGRAM, words.data());
        _exit(127);
    }
    int status = 0;
    waitpid(child, &status, 0);
    return {WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status), file_content(out), file_content(err)};
}
