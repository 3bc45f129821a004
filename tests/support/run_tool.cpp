#include "support/run_tool.h"

#include <fcntl.h>
#include <stdexcept>
#include <sys/wait.h>
#include <unistd.h>

#include "support/temp_dir.h"

namespace orv::test {

ToolRun runTool(const std::vector<std::string>& args, const std::string& stdinText,
                const EnvChanges& env) {
    TempDir io;
    const auto outPath = io / "out", errPath = io / "err", inPath = io / "in";
    writeFile(inPath, stdinText);
    const std::string exe = (binaryDir() / "src" / "cli" / "orvanta-tool").string();
    std::vector<std::string> argv{exe};
    argv.insert(argv.end(), args.begin(), args.end());
    std::vector<char*> cargv;
    for (auto& a : argv)
        cargv.push_back(a.data());
    cargv.push_back(nullptr);

    const pid_t pid = fork();
    if (pid < 0)
        throw std::runtime_error("fork failed");
    if (pid == 0) {
        const int in = ::open(inPath.c_str(), O_RDONLY);
        const int out = ::open(outPath.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
        const int err = ::open(errPath.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
        ::dup2(in, 0);
        ::dup2(out, 1);
        ::dup2(err, 2);
        for (const auto& [name, value] : env)
            if (value.empty())
                ::unsetenv(name.c_str());
            else
                ::setenv(name.c_str(), value.c_str(), 1);
        ::execv(exe.c_str(), cargv.data());
        _exit(127);
    }
    int status = 0;
    ::waitpid(pid, &status, 0);
    ToolRun r;
    r.status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    r.out = readFile(outPath);
    r.err = readFile(errPath);
    return r;
}

} // namespace orv::test
