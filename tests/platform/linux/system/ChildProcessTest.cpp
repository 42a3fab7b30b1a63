#include "platform/linux/system/PosixEnvironment.h"
#include "platform/linux/system/PosixProcessLauncher.h"
#include "tests/support/TemporaryFolder.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <functional>
#include <thread>

namespace velmor {

namespace {

using testing::HasSubstr;
using testing::Not;

class ChildProcessTest : public testing::Test {
protected:
  ChildResult shell(const std::string& line) { return launcher.run({"/bin/sh", {"-c", line}}); }

  std::string launchFailure(const std::string& executable) {
    try {
      static_cast<void>(launcher.run({executable, {}}));
    } catch (const LaunchError& error) {
      return error.what();
    }
    return "started";
  }

  std::stop_source quit;
  PosixProcessLauncher launcher{quit.get_token()};
  TemporaryFolder folder;
};

TEST_F(ChildProcessTest, PassesWhatItIsGivenAndGives) {
  const std::string text(1'000'000, 'x');
  const std::tuple<ChildProcess, std::string, std::string, int> cases[] = {
      {{"/bin/sh", {"-c", "tee /dev/stderr"}, text}, text, text, 0},
      // A child that closes its input early is no failure.
      {{"/bin/sh", {"-c", "exec <&-; echo done"}, text}, "done\n", "", 0},
      {{.executable = "/bin/sh",
        .arguments = {"-c", "echo a; echo b >&2; echo c; exit 3"},
        .mergeErrorOutput = true},
       "a\nb\nc\n",
       "",
       3},
      {{"/usr/bin/printf", {"%s|", "$HOME; 'x' \"y\"", "", "ä\n"}},
       "$HOME; 'x' \"y\"||ä\n|",
       "",
       0},
      {{"/bin/sh", {"-c", "head -c 6000000 /dev/zero; echo end >&2"}},
       std::string(ProcessLauncher::outputLimit, '\0'),
       "end\n",
       0}};
  for (const auto& [child, output, errorOutput, exitStatus] : cases) {
    const auto result = launcher.run(child);
    EXPECT_TRUE(result.output == output) << child.arguments.back() << result.output.size();
    EXPECT_TRUE(result.errorOutput == errorOutput) << child.arguments.back();
    EXPECT_EQ(result.exitStatus, exitStatus) << child.arguments.back();
  }
}

TEST_F(ChildProcessTest, TellsLaunchFailuresFromEndings) {
  std::ofstream(folder.path / "plain") << "text";
  EXPECT_EQ(launchFailure("/nowhere/program"), "No such file or directory");
  EXPECT_EQ(launchFailure(folder.path / "plain"), "Permission denied");
  EXPECT_EQ(shell("kill -KILL $$").exitStatus, 128 + SIGKILL);
}

TEST_F(ChildProcessTest, DoesNotWaitForWhatTheChildLeavesRunning) {
  ASSERT_EQ(::mkfifo((folder.path / "fifo").c_str(), 0600), 0);
  const auto result =
      shell("(read line < " + (folder.path / "fifo").string() + ") & echo $!; exit 0");
  EXPECT_EQ(::kill(std::stoi(result.output), SIGKILL), 0);
}

TEST_F(ChildProcessTest, ChildrenInheritNeitherSecretsNorDescriptorsNorSignals) {
  ::setenv("OPENAI_API_KEY", "sk-secret", 1);
  ::setenv("TINKER_API_KEY", "tk-secret", 1);
  ::setenv("VIRTUALDJ_NETWORK_CONTROL_TOKEN", "vdj-secret", 1);
  const PosixEnvironment environment;
  EXPECT_THAT(launcher.run({"/usr/bin/env", {}}).output, Not(HasSubstr("secret")));

  const int inheritable = ::open("/dev/null", O_RDONLY);
  // The listing's own descriptor is the fourth.
  EXPECT_EQ(launcher.run({"/bin/ls", {"/proc/self/fd"}}).output, "0\n1\n2\n3\n");
  ::close(inheritable);

  sigset_t blocked;
  ::sigemptyset(&blocked);
  ::sigaddset(&blocked, SIGTERM);
  ::pthread_sigmask(SIG_BLOCK, &blocked, nullptr);
  const auto signals = launcher.run({"/bin/grep", {"-E", "SigBlk|SigIgn", "/proc/self/status"}});
  ::pthread_sigmask(SIG_UNBLOCK, &blocked, nullptr);
  EXPECT_THAT(signals.output, HasSubstr("SigBlk:\t0000000000000000\n"));
  // The C library itself ignores signals 32 and 33 in children; the others begin below them.
  const auto ignored = std::stoul(signals.output.substr(signals.output.rfind('\t')), nullptr, 16);
  EXPECT_EQ(ignored & 0x7fffffffU, 0U);
}

TEST_F(ChildProcessTest, AChildInTheBackgroundIsNiceAndGetsItsVariables) {
  ::setenv("VELMOR_TEST", "own", 1);
  const auto run = [&](bool isInBackground, std::map<std::string, std::string> variables) {
    return launcher
        .run({.executable = "/bin/sh",
              .arguments = {"-c", "nice; echo \"$VELMOR_TEST|$OTHER|$HOME\""},
              .endsWithVelmor = true,
              .isInBackground = isInBackground,
              .variables = std::move(variables)})
        .output;
  };
  const auto home = std::string(std::getenv("HOME"));
  const auto own = std::stoi(run(false, {}));
  EXPECT_EQ(run(false, {}), std::to_string(own) + "\nown||" + home + "\n");
  EXPECT_EQ(run(true, {{"VELMOR_TEST", "=a b"}, {"OTHER", "ä\"$x"}}),
            std::to_string(std::min(19, own + 10)) + "\n=a b|ä\"$x|" + home + "\n");
  ::unsetenv("VELMOR_TEST");
}

TEST_F(ChildProcessTest, TheTimeLimitEndsChildrenWhichThenHaveFailed) {
  const auto file = folder.path / "process";
  const auto line = "echo $$ > " + file.string() + "; while :; do sleep 0.05; done";
  for (const std::string prepared : {"", "trap 'exit 0' TERM; ", "trap '' TERM; "}) {
    const ChildProcess hanging{.executable = "/bin/sh",
                               .arguments = {"-c", prepared + line},
                               .timeLimit = std::chrono::milliseconds{500}};
    EXPECT_THROW(static_cast<void>(launcher.run(hanging)), LaunchError) << prepared;
    pid_t process = 0;
    std::ifstream(file) >> process;
    ASSERT_GT(process, 0) << prepared;
    EXPECT_NE(::kill(process, 0), 0) << prepared;
  }
}

TEST_F(ChildProcessTest, QuittingAsksChildrenToEndAndMakesThem) {
  const auto ready = folder.path / "ready";
  const auto line = "touch " + ready.string() + "; while :; do sleep 0.05; done";
  for (const auto& [prepared, ending] :
       {std::pair{"trap 'exit 7' TERM; ", 7}, std::pair{"trap '' TERM; ", 128 + SIGKILL}}) {
    std::stop_source ends;
    PosixProcessLauncher endingLauncher(ends.get_token());
    const std::jthread quitter([&] {
      while (!std::filesystem::exists(ready))
        std::this_thread::yield();
      ends.request_stop();
    });
    EXPECT_EQ(endingLauncher.run({"/bin/sh", {"-c", prepared + line}}).exitStatus, ending);
    std::filesystem::remove(ready);
  }
  quit.request_stop();
  EXPECT_EQ(launchFailure("/bin/true"), "Operation canceled");
}

TEST_F(ChildProcessTest, AChildThatEndsWithVelmorOutlivesNoKill) {
  const auto note = folder.path / "pid";
  const auto parent = ::fork();
  if (parent == 0) {
    const auto line = "echo $$ > " + note.string() + "; exec sleep 600";
    const ChildProcess child{
        .executable = "/bin/sh", .arguments = {"-c", line}, .endsWithVelmor = true};
    static_cast<void>(launcher.run(child));
    ::_exit(0);
  }
  const auto waitUntil = [](const std::function<bool()>& condition) {
    const auto end = std::chrono::steady_clock::now() + std::chrono::minutes(1);
    while (!condition() && std::chrono::steady_clock::now() < end)
      std::this_thread::sleep_for(std::chrono::milliseconds(10));
    return condition();
  };
  pid_t process = 0;
  EXPECT_TRUE(waitUntil([&] { return static_cast<bool>(std::ifstream(note) >> process); }));
  ::kill(parent, SIGKILL);
  ::waitpid(parent, nullptr, 0);
  // Until somebody collects it, a process that has ended still has its number.
  EXPECT_TRUE(waitUntil([&] {
    std::string number;
    std::string name;
    std::string state;
    std::ifstream status("/proc/" + std::to_string(process) + "/stat");
    return !(status >> number >> name >> state) || state == "Z" || state == "X";
  }));
}

} // namespace

} // namespace velmor
