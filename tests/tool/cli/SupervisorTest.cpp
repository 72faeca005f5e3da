#include "tool/cli/Supervisor.h"
#include "tool/cli/Errors.h"
#include "tool/cli/WorkSurroundings.h"

#include <gmock/gmock.h>

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <thread>

namespace Orvel::Cli
{
namespace
{

using namespace std::chrono_literals;
using nlohmann::json;
using testing::ElementsAre;
using testing::HasSubstr;

class Recorder final : public WorkListener
{
public:
    void Stage(const std::string& stage) override { heard.push_back("stage " + stage); }
    void Warning(const std::string& text) override { heard.push_back("warning " + text); }

    void Tick(std::chrono::milliseconds) override
    {
        ++ticks;
        if (onTick)
            onTick();
    }

    std::vector<std::string> heard;
    int ticks = 0;
    std::function<void()> onTick;
};

class Supervisor : public testing::Test
{
protected:
    json Run(const Work& work) { return RunSupervised(work, limits, signals, recorder); }

    std::string FailureOf(const Work& work)
    {
        try {
            return "result " + Run(work).dump();
        } catch (const Failure& failure) {
            return failure.what();
        }
    }

    /// No child of this process may be left, not even a dead one.
    void TearDown() override { EXPECT_EQ(::waitpid(-1, nullptr, WNOHANG), -1); }

    SignalWatch signals;
    WorkLimits limits{60s, 0};
    Recorder recorder;
};

[[noreturn]] void SleepForEver()
{
    for (;;)
        ::pause();
}

TEST_F(Supervisor, HandsBackTheResultAndWhatWasReported)
{
    const json result = Run([](const WorkReporter& reporter) -> json {
        reporter.Stage("reading");
        reporter.Warning("line one\nline two \xff");
        reporter.Stage("writing");
        return {{"pid", ::getpid()}, {"name", "größe"}};
    });
    EXPECT_EQ(result["name"], "größe");
    EXPECT_NE(result["pid"], ::getpid());
    EXPECT_THAT(recorder.heard, ElementsAre("stage reading", "warning line one\nline two \uFFFD", "stage writing"));
}

TEST_F(Supervisor, TakesResultsLargerThanAPipeHolds)
{
    const json result = Run([](const WorkReporter& reporter) -> json {
        for (int i = 0; i < 20000; ++i)
            reporter.Warning("warning number " + std::to_string(i));
        return std::string(std::size_t{4} << 20, 'x');
    });
    EXPECT_EQ(result.get<std::string>().size(), std::size_t{4} << 20);
    ASSERT_EQ(recorder.heard.size(), 20000U);
    EXPECT_EQ(recorder.heard.back(), "warning warning number 19999");
}

TEST_F(Supervisor, TurnsExceptionsIntoFailures)
{
    EXPECT_EQ(FailureOf([](const WorkReporter&) -> json { throw std::runtime_error("no such mesh"); }), "no such mesh");
    EXPECT_THAT(FailureOf([](const WorkReporter&) -> json { throw std::bad_alloc(); }), HasSubstr("not enough memory"));
}

TEST_F(Supervisor, SurvivesEveryKindOfSuddenEnd)
{
    const Work killed = [](const WorkReporter& reporter) -> json {
        reporter.Stage("reading the scene");
        std::raise(SIGKILL);
        return nullptr;
    };
    EXPECT_THAT(FailureOf(killed), HasSubstr("crashed while reading the scene (Killed"));
    EXPECT_THAT(FailureOf([](const WorkReporter&) -> json { std::_Exit(7); }), HasSubstr("(exit code 7)"));
    EXPECT_THAT(FailureOf([](const WorkReporter&) -> json { throw 1; }), HasSubstr("crashed"));
    if (!HasAddressSanitizer) {
        // The sanitizer has handlers of its own for these.
        EXPECT_THAT(FailureOf([](const WorkReporter&) -> json { std::abort(); }), HasSubstr("Aborted"));
        EXPECT_THAT(FailureOf([](const WorkReporter&) -> json { return std::raise(SIGSEGV); }),
                    HasSubstr("Segmentation fault"));
    }
}

TEST_F(Supervisor, EndsWorkThatSendsNonsense)
{
    const Work nonsense = [](const WorkReporter&) -> json {
        for (int descriptor = 3; descriptor < 20; ++descriptor)
            [[maybe_unused]] const auto written = ::write(descriptor, "\x01garbage\n", 9);
        SleepForEver();
    };
    EXPECT_THAT(FailureOf(nonsense), HasSubstr("Killed"));
}

TEST_F(Supervisor, EndsWorkThatTakesTooLong)
{
    limits.time = 300ms;
    const auto start = std::chrono::steady_clock::now();
    const Work endless = [](const WorkReporter& reporter) -> json {
        reporter.Stage("reading the scene");
        for (int i = 0;; ++i) {
            reporter.Warning("still busy");
            std::this_thread::sleep_for(1ms);
        }
    };
    EXPECT_THAT(FailureOf(endless), HasSubstr("took longer than 0.3 s while reading the scene"));
    EXPECT_LT(std::chrono::steady_clock::now() - start, 10s);
    EXPECT_GT(recorder.ticks, 0);
}

TEST_F(Supervisor, KeepsMemoryWithinItsLimit)
{
    if (HasAddressSanitizer)
        GTEST_SKIP() << "memory is not limited under AddressSanitizer";
    limits.memoryInBytes = std::uint64_t{64} << 20;
    const Work greedy = [](const WorkReporter&) -> json {
        return std::vector<char>(std::size_t{100} << 20, 'x').size();
    };
    EXPECT_THAT(FailureOf(greedy), HasSubstr("not enough memory"));
    limits.memoryInBytes = std::uint64_t{512} << 20;
    EXPECT_EQ(FailureOf(greedy), "result 104857600");
}

/// @return `depth`, with a frame of at least a kilobyte for each level.
int Descend(int depth)
{
    volatile char frame[1024];
    frame[depth % 1024] = 1;
    return depth == 0 ? 0 : Descend(depth - 1) + frame[depth % 1024];
}

TEST_F(Supervisor, GivesTheWorkADeepStackWhateverItsOwn)
{
    rlimit stack{};
    ASSERT_EQ(::getrlimit(RLIMIT_STACK, &stack), 0);
    stack.rlim_cur = rlim_t{8} << 20;
    ASSERT_EQ(::setrlimit(RLIMIT_STACK, &stack), 0);
    const int depth = HasAddressSanitizer ? 20000 : 60000;
    EXPECT_EQ(FailureOf([depth](const WorkReporter&) -> json { return Descend(depth); }),
              "result " + std::to_string(depth));
}

TEST_F(Supervisor, KeepsWhatLibrariesPrintFromTheTerminal)
{
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();
    const json input = Run([](const WorkReporter&) -> json {
        std::puts("chatter");
        std::fputs("chatter\n", stderr);
        std::fflush(nullptr);
        return std::getchar();
    });
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
    EXPECT_EQ(input, EOF);
}

TEST_F(Supervisor, PassesOnASignalAndEndsTheWork)
{
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
        recorder.onTick = [signal] { ::kill(::getpid(), signal); };
        try {
            FailureOf([](const WorkReporter&) -> json { SleepForEver(); });
            FAIL() << "signal " << signal << " was lost";
        } catch (const Interrupted& interruption) {
            EXPECT_EQ(interruption.signal, signal);
        }
    }
}

TEST(SignalWatch, LeavesIgnoredSignalsIgnored)
{
    std::signal(SIGHUP, SIG_IGN);
    const SignalWatch signals;
    ::kill(::getpid(), SIGHUP);
    EXPECT_FALSE(signals.Wait(-1, 0, 50ms));
}

} // namespace
} // namespace Orvel::Cli
