#include "platform/linux/system/RememberingLauncher.h"

#include "platform/linux/system/PosixProcessLauncher.h"
#include "tests/support/TemporaryFolder.h"

#include <arpa/inet.h>
#include <gmock/gmock.h>
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
#include <random>
#include <thread>
#include <utility>

namespace velmor {

namespace {

namespace fs = std::filesystem;
using namespace std::chrono_literals;

/// A child of the test that bears the names that it is told to.
class NamedChild {
public:
  explicit NamedChild(const std::string& name) {
    std::array<int, 2> ends{};
    if (::socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0, ends.data()) != 0) std::abort();
    process = ::fork();
    if (process == 0) obey(ends[1]);
    ::close(ends[1]);
    orders = ends[0];
    rename(name);
  }
  NamedChild(NamedChild&& other) noexcept
      : process(std::exchange(other.process, 0)), orders(std::exchange(other.orders, -1)) {}
  NamedChild& operator=(NamedChild&& other) noexcept {
    std::swap(process, other.process);
    std::swap(orders, other.orders);
    return *this;
  }
  NamedChild(const NamedChild&) = delete;
  NamedChild& operator=(const NamedChild&) = delete;
  ~NamedChild() {
    if (process == 0) return;
    if (orders >= 0) ::close(orders);
    die();
    ::waitpid(process, nullptr, 0);
  }

  void rename(const std::string& name) { order("r" + name, name); }
  /// Runs another program, which takes no orders any more.
  void execute(const fs::path& program) {
    if (orders < 0) return;
    order("x" + program.string(), program.filename());
    const auto executable = "/proc/" + std::to_string(process) + "/exe";
    const auto own = fs::read_symlink("/proc/self/exe");
    std::error_code gone;
    while (fs::read_symlink(executable, gone) == own)
      std::this_thread::yield();
    ::close(std::exchange(orders, -1));
  }
  /// It stays in the process table until the object is destroyed.
  void die() const {
    ::kill(process, SIGKILL);
    siginfo_t ended{};
    ::waitid(P_PID, static_cast<id_t>(process), &ended, WEXITED | WNOWAIT);
  }

private:
  [[noreturn]] static void obey(int orders) {
    std::array<char, 256> text{};
    while (::read(orders, text.data(), text.size()) > 0) {
      const auto argument = std::string(text.data() + 1);
      if (text[0] == 'x') ::execl(argument.c_str(), argument.c_str(), "1000", nullptr);
      ::prctl(PR_SET_NAME, argument.c_str());
    }
    ::_exit(0);
  }

  /// Returns once the child bears the name. After an exec or its death nothing is done any more.
  void order(const std::string& text, const std::string& name) const {
    constexpr std::size_t kernelsLimit = 15;
    if (::send(orders, text.c_str(), text.size() + 1, MSG_NOSIGNAL) < 0) return;
    const auto comm = "/proc/" + std::to_string(process) + "/comm";
    const auto deadline = std::chrono::steady_clock::now() + 30s;
    for (std::string shown; shown != name.substr(0, kernelsLimit);) {
      if (std::chrono::steady_clock::now() > deadline) FAIL() << "never called " << name;
      std::this_thread::yield();
      std::getline(std::ifstream(comm), shown);
    }
  }

  pid_t process = 0;
  int orders = -1;
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
  void expectTheSame(const ChildProcess& child, const std::string& when = "") {
    const auto remembered = launcher.run(child);
    const auto asked = direct.run(child);
    EXPECT_EQ(remembered.output, asked.output) << child.arguments.back() << when;
    EXPECT_EQ(remembered.errorOutput, asked.errorOutput) << child.arguments.back() << when;
    EXPECT_EQ(remembered.exitStatus, asked.exitStatus) << child.arguments.back() << when;
  }

  /// How many children a question starts.
  int startedBy(const ChildProcess& child) {
    const int before = real.count;
    static_cast<void>(launcher.run(child));
    return real.count - before;
  }

  CountingLauncher real;
  CountingLauncher direct;
  // Every question has a look of its own, so that the test need not wait between them.
  RememberingLauncher launcher{real, 0ms};
  TemporaryFolder folder;
};

TEST_F(RememberingLauncherTest, NeverDiffersFromAskingWhileProcessesComeGoAndChangeNames) {
  const std::vector<std::string> names = {"velm probe",
                                          "Velm Probe",
                                          "VELM PROBE",
                                          "velm_probe",
                                          "velm probe1",
                                          "velm  probe",
                                          "velm.probe",
                                          "(velm probe)",
                                          "velm) probe",
                                          "velmprobelonger",
                                          "VelmProbeLongerX",
                                          "velmprobelonge",
                                          "velm\xC5\xBFprobe",
                                          "velm prob\xC3\xA9",
                                          "\xE2\x84\xAA"
                                          "velm",
                                          "velm\tprobe",
                                          "other \xFF\xFE",
                                          "velm\\probe",
                                          "kvelm"};
  const std::vector<std::string> patterns = {"velm probe",      "velm_probe",      "velm.probe",
                                             "velmprobelonge",  "velmprobelonger", "kvelm",
                                             "velmprobelongerx"};
  for (const auto& name : names)
    fs::create_symlink("/bin/sleep", folder.path / name);
  constexpr int questions = 400;
  constexpr int changesBetween = 5;
  constexpr std::size_t mostChildren = 8;
  const auto seed = std::random_device{}();
  std::mt19937 random(seed);
  const auto below = [&](std::size_t limit) { return random() % limit; };
  std::vector<NamedChild> children;
  const auto change = [&] {
    const auto& name = names[below(names.size())];
    const auto kind = children.empty() ? 0 : below(5);
    if (kind == 0 && children.size() < mostChildren) children.emplace_back(name);
    if (kind == 0) return;
    const auto child = children.begin() + static_cast<std::ptrdiff_t>(below(children.size()));
    if (kind == 1) child->rename(name);
    if (kind == 2) child->execute(folder.path / name);
    if (kind == 3) child->die();
    if (kind == 4) children.erase(child);
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
  const std::vector<ChildProcess> questions = {pgrep("velm.*"),
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
  const ChildProcess which{"/usr/bin/which", {"velm-probe"}};
  const auto later = folder.path / "later";
  fs::create_directory(later);
  fs::create_directory(folder.path / "velm-probe");
  const std::string oldPath = std::getenv("PATH");
  ::setenv("PATH", (folder.path.string() + ':' + later.string() + ':' + oldPath).c_str(), 1);
  const std::vector<std::pair<std::string, std::function<void()>>> changes = {
      {"a folder of that name", [] {}},
      {"a file", [&] { std::ofstream(later / "velm-probe") << "#!/bin/sh\n"; }},
      {"a program", [&] { fs::permissions(later / "velm-probe", fs::perms::all); }},
      {"one before it",
       [&] {
         fs::remove(folder.path / "velm-probe");
         fs::create_symlink(later / "velm-probe", folder.path / "velm-probe");
       }},
      {"none", [&] { fs::remove(later / "velm-probe"); }}};
  for (const auto& [what, change] : changes) {
    change();
    expectTheSame(which, " with " + what);
    EXPECT_EQ(startedBy(which), 0) << what;
  }
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
  const ChildProcess lsof{"/usr/bin/lsof",
                          {"-nP", "-iTCP", "-sTCP:LISTEN", "-a", "-p", std::to_string(::getpid())}};
  const int first = boundSocket();
  const int second = boundSocket();
  const std::vector<std::pair<std::string, std::function<void()>>> changes = {
      {"bound sockets", [] {}},
      {"one listening", [&] { ::listen(first, 1); }},
      {"two listening", [&] { ::listen(second, 1); }},
      {"one closed", [&] { ::close(first); }},
      {"none", [&] { ::close(second); }}};
  for (const auto& [what, change] : changes) {
    change();
    expectTheSame(lsof, " with " + what);
    EXPECT_EQ(startedBy(lsof), 0) << what;
  }
}

} // namespace

} // namespace velmor
