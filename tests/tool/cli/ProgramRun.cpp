#include "tests/tool/cli/ProgramRun.h"

#include "tests/tool/cli/FileContent.h"

#include <gmock/gmock.h>

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <fstream>
#include <stdexcept>
#include <thread>

namespace Orvel::Test
{
namespace
{

void Redirect(int descriptor, const std::string& file)
{
    const int opened = ::open(file.c_str(), O_WRONLY | O_CREAT, 0600);
    if (opened < 0 || ::dup2(opened, descriptor) < 0)
        std::_Exit(126);
}

} // namespace

ProgramRun::ProgramRun(const std::vector<std::string>& arguments, const TemporaryFolder& folder,
                       const std::string& stdoutTo)
{
    std::vector<std::string> texts{ORVELPRC_PROGRAM};
    texts.insert(texts.end(), arguments.begin(), arguments.end());
    std::vector<char*> pointers;
    for (std::string& text : texts)
        pointers.push_back(text.data());
    pointers.push_back(nullptr);

    process = ::fork();
    if (process == 0) {
        ::setenv("TMPDIR", temporary.Path().c_str(), 1);
        Redirect(STDOUT_FILENO, stdoutTo.empty() ? own / "out" : stdoutTo);
        Redirect(STDERR_FILENO, own / "err");
        if (::chdir(folder.Path().c_str()) == 0)
            ::execv(ORVELPRC_PROGRAM, pointers.data());
        std::_Exit(127);
    }
}

ProgramRun::~ProgramRun()
{
    if (process > 0) {
        ::kill(process, SIGKILL);
        ::waitpid(process, nullptr, 0);
    }
}

pid_t ProgramRun::WaitForWorker() const
{
    const std::string children = "/proc/" + std::to_string(process) + "/task/" + std::to_string(process) + "/children";
    for (int tries = 0; tries < 3000; ++tries) {
        pid_t worker = 0;
        if (std::ifstream(children) >> worker)
            return worker;
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    throw std::runtime_error("the program started no process");
}

ProgramResult ProgramRun::Wait()
{
    int status = 0;
    ::waitpid(process, &status, 0);
    process = -1;
    EXPECT_THAT(temporary.Names(), testing::IsEmpty());
    ProgramResult result;
    result.exitCode = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    result.signal = WIFSIGNALED(status) ? WTERMSIG(status) : 0;
    result.out = ReadFile(own / "out");
    result.err = ReadFile(own / "err");
    return result;
}

ProgramResult RunProgram(const std::vector<std::string>& arguments, const TemporaryFolder& folder)
{
    return ProgramRun(arguments, folder).Wait();
}

} // namespace Orvel::Test
