#include "platform/linux/system/RememberingLauncher.h"

#include "platform/linux/system/PosixProcessLauncher.h"
#include "tests/support/TemporaryFolder.h"

#include <arpa/inet.h>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <memory>
#include <random>
#include <tuple>
#include <utility>

namespace velmor {

namespace {

namespace fs = std::filesystem;
using namespace std::chrono_literals;

/// A child of the test that bears the names that it is told to.
class NamedChild {
public:
  explicit NamedChild(const std::string& name) {
    if (::pipe2(names.data(), O_CLOEXEC) != 0) std::abort();
    process = ::fork();
    std::array<char, 64> told{};
    while (process == 0 && ::read(names[0], told.data(), told.size()) > 0)
      ::prctl(PR_SET_NAME, told.data());
    rename(name);
  }
  NamedChild(const NamedChild&) = delete;
  NamedChild& operator=(const NamedChild&) = delete;
  ~NamedChild() {
    die();
    ::waitpid(process, nullptr, 0);
    ::close(names[0]);
    ::close(names[1]);
  }

  /// Returns once the child bears the name; the dead keep theirs.
  void rename(const std::string& name) const {
    constexpr std::size_t kernelsLimit = 15;
    const auto shownName = [this] {
      std::string shown;
      std::getline(std::ifstream("/proc/" + std::to_string(process) + "/comm"), shown);
      return shown;
    };
    const auto wanted = name.substr(0, kernelsLimit);
    // A name that it bears already would be seen before the child has read it, and the next one
    // would be read together with it.
    if (isDead || shownName() == wanted) return;
    ASSERT_GT(::write(names[1], name.c_str(), name.size() + 1), 0);
    const auto deadline = std::chrono::steady_clock::now() + 30s;
    while (shownName() != wanted)
      ASSERT_LT(std::chrono::steady_clock::now(), deadline) << "never called " << name;
  }

  /// It stays in the process table until the object is destroyed.
  void die() {
    ::kill(process, SIGKILL);
    siginfo_t ended{};
    ::waitid(P_PID, static_cast<id_t>(process), &ended, WEXITED | WNOWAIT);
    isDead = true;
  }

private:
  std::array<int, 2> names{};
  pid_t process = 0;
  bool isDead = false;
};

/// Counts the children that it passes on; `before` may change the world first.
class CountingLauncher : public ProcessLauncher {
public:
  ChildResult run(const ChildProcess& child) override {
    ++count;
    if (before) std::exchange(before, nullptr)();
    return real.run(child);
  }

  int count = 0;
  std::function<void()> before;

private:
  std::stop_source quit;
  PosixProcessLauncher real{quit.get_token()};
};

ChildProcess pgrep(const std::string& pattern) {
  return {"/usr/bin/pgrep", {"-xi", pattern}};
}

class RememberingLauncherTest : public testing::Test {
protected:
  using Changes = std::vector<std::pair<std::string, std::function<void()>>>;

  void expectTheSame(const ChildProcess& child, const std::string& when = "") {
    const auto remembered = launcher.run(child);
    const auto asked = direct.run(child);
    EXPECT_EQ(std::tie(remembered.output, remembered.errorOutput, remembered.exitStatus),
              std::tie(asked.output, asked.errorOutput, asked.exitStatus))
        << child.arguments.back() << when;
  }

  /// How many children a question starts.
  int startedBy(const ChildProcess& child) {
    const int before = real.count;
    static_cast<void>(launcher.run(child));
    return real.count - before;
  }

  /// After each change the answer is right, and then known.
  void expectToFollow(const ChildProcess& child, const Changes& changes) {
    for (const auto& [what, change] : changes) {
      change();
      expectTheSame(child, " with " + what);
      EXPECT_EQ(startedBy(child), 0) << what;
    }
  }

  CountingLauncher real;
  CountingLauncher direct;
  // Every question has a look of its own, so that the test need not wait between them.
  RememberingLauncher launcher{real, 0ms};
  TemporaryFolder folder;
};

TEST_F(RememberingLauncherTest, NeverDiffersFromAskingWhileProcessesComeGoAndChangeNames) {
  const std::vector<std::string> names = {
      "velm probe",      "Velm Probe",       "VELM PROBE",     "velm_probe",      "velm probe1",
      "velm  probe",     "velm.probe",       "(velm probe)",   "velm) probe",     "kvelm",
      "velmprobelonger", "VelmProbeLongerX", "velmprobelonge", "velm\u017Fprobe", "velm prob\u00E9",
      "\u212Avelm",      "velm\tprobe",      "velm\\probe",    "other \xFF\xFE"};
  const std::vector<std::string> patterns = {"velm probe",      "velm_probe",      "velm.probe",
                                             "velmprobelonge",  "velmprobelonger", "kvelm",
                                             "velmprobelongerx"};
  constexpr int questions = 400;
  constexpr int changesBetween = 5;
  constexpr std::size_t mostChildren = 8;
  const auto seed = std::random_device{}();
  std::mt19937 random(seed);
  const auto below = [&](std::size_t limit) { return random() % limit; };
  std::vector<std::unique_ptr<NamedChild>> children;
  const auto change = [&] {
    const auto& name = names[below(names.size())];
    const auto kind = children.empty() ? 0 : below(4);
    if (kind == 0 && children.size() < mostChildren)
      children.push_back(std::make_unique<NamedChild>(name));
    const auto child = children.begin() + static_cast<std::ptrdiff_t>(below(children.size()));
    if (kind == 1) (*child)->rename(name);
    if (kind == 2) (*child)->die();
    if (kind == 3) children.erase(child);
  };
  for (int question = 0; question < questions && !HasFailure(); ++question) {
    for (int step = 0; step < changesBetween; ++step)
      change();
    expectTheSame(pgrep(patterns[below(patterns.size())]), " with seed " + std::to_string(seed));
  }
  EXPECT_LT(real.count, questions) << "nothing was remembered";
}

TEST_F(RememberingLauncherTest, AsksAgainOnlyWhenBearersOfTheNameChange) {
  EXPECT_EQ(startedBy(pgrep("velm probe")), 1);
  EXPECT_EQ(startedBy(pgrep("velm probe")), 0);
  const NamedChild other("somebody else");
  EXPECT_EQ(startedBy(pgrep("velm probe")), 0);
  const NamedChild bearer("Velm Probe");
  EXPECT_EQ(startedBy(pgrep("velm probe")), 1);
  EXPECT_EQ(startedBy(pgrep("velm probe")), 0);
}

TEST_F(RememberingLauncherTest, AlwaysAsksWhatItCannotKnow) {
  const std::vector<ChildProcess> questions = {pgrep("velm.probe"),
                                               pgrep("fifteen letters"),
                                               pgrep("-c"),
                                               pgrep(""),
                                               {"/usr/bin/pgrep", {"-xif", "velm probe"}},
                                               {"/usr/bin/which", {"../sh"}},
                                               {"/usr/bin/which", {"-a"}},
                                               {"/bin/true", {}}};
  for (const auto& question : questions) {
    expectTheSame(question);
    EXPECT_EQ(startedBy(question), 1) << question.executable;
  }
  const NamedChild unclear("velm prob\xC5\xBF");
  EXPECT_EQ(startedBy(pgrep("velm probs")) + startedBy(pgrep("velm probs")), 2);
}

TEST_F(RememberingLauncherTest, ForgetsAnAnswerGivenWhileSomethingChanged) {
  std::optional<NamedChild> passing;
  real.before = [&] { passing.emplace("velm probe"); };
  EXPECT_EQ(launcher.run(pgrep("velm probe")).exitStatus, 0);
  passing.reset();
  expectTheSame(pgrep("velm probe"));
}

TEST_F(RememberingLauncherTest, SharesOneLookForAShortTime) {
  RememberingLauncher patient(real, 1h);
  EXPECT_EQ(patient.run(pgrep("velm probe")).exitStatus, 1);
  const NamedChild born("velm probe");
  EXPECT_EQ(patient.run(pgrep("velm probe")).exitStatus, 1) << "the look was not shared";
  EXPECT_EQ(launcher.run(pgrep("velm probe")).exitStatus, 0);
}

TEST_F(RememberingLauncherTest, KnowsProgramsOfThePath) {
  const auto later = folder.path / "later";
  fs::create_directory(later);
  fs::create_directory(folder.path / "velm-probe");
  const std::string oldPath = std::getenv("PATH");
  ::setenv("PATH", (folder.path.string() + ':' + later.string() + ':' + oldPath).c_str(), 1);
  const auto putOneBefore = [&] {
    fs::remove(folder.path / "velm-probe");
    fs::create_symlink(later / "velm-probe", folder.path / "velm-probe");
  };
  expectToFollow({"/usr/bin/which", {"velm-probe"}},
                 {{"a folder of that name", [] {}},
                  {"a file", [&] { std::ofstream(later / "velm-probe") << "#!/bin/sh\n"; }},
                  {"a program", [&] { fs::permissions(later / "velm-probe", fs::perms::all); }},
                  {"one before it", putOneBefore},
                  {"none", [&] { fs::remove(later / "velm-probe"); }}});
  ::setenv("PATH", oldPath.c_str(), 1);
}

/// A socket bound to a free port of this machine.
int boundSocket() {
  const int socket = ::socket(AF_INET, SOCK_STREAM, 0);
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = ::htonl(INADDR_LOOPBACK);
  if (::bind(socket, reinterpret_cast<sockaddr*>(&address), sizeof address) != 0) std::abort();
  return socket;
}

TEST_F(RememberingLauncherTest, KnowsListeningSockets) {
  if (!fs::exists("/usr/bin/lsof")) GTEST_SKIP() << "lsof is not installed";
  const int first = boundSocket();
  const int second = boundSocket();
  expectToFollow(
      {"/usr/bin/lsof", {"-nP", "-iTCP", "-sTCP:LISTEN", "-a", "-p", std::to_string(::getpid())}},
      {{"bound sockets", [] {}},
       {"one listening", [&] { ::listen(first, 1); }},
       {"two listening", [&] { ::listen(second, 1); }},
       {"one closed", [&] { ::close(first); }},
       {"none", [&] { ::close(second); }}});
}

} // namespace

} // namespace velmor
