// Times what a poll costs on this system's real backend, and prints seconds as JSON:
//   velmor-poll-benchmark poll ROUNDS      a detection; its child processes by themselves
//   velmor-poll-benchmark session ROUNDS   a media session's reading; a playerctl process

#include "nowplaying/MediaRemoteClient.h"
#include "nowplaying/NowPlayingDetector.h"
#include "platform/Host.h"
#include "platform/ProcessLauncher.h"

#include <nlohmann/json.hpp>

#include <chrono>
#include <iostream>
#include <string>
#include <utility>
#include <vector>

namespace {

using namespace velmor;

/// Passes every child on, and remembers it so that it can be run again by itself.
class RecordingLauncher : public ProcessLauncher {
public:
  explicit RecordingLauncher(ProcessLauncher& launcher) : real(launcher) {}

  ChildResult run(const ChildProcess& child) override {
    children.push_back(child);
    return real.run(child);
  }

  std::vector<ChildProcess> takeChildren() { return std::exchange(children, {}); }

private:
  ProcessLauncher& real;
  std::vector<ChildProcess> children;
};

template <typename Work>
double secondsOf(Work work) {
  const auto start = std::chrono::steady_clock::now();
  work();
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

/// The first round warms caches and connections up; it is told apart and counts for nothing else.
void record(nlohmann::json& report, int round, double measured, double baseline) {
  if (round == 0) {
    report["first"] = measured;
    return;
  }
  report["measured"].push_back(measured);
  report["baseline"].push_back(baseline);
}

std::string detect(NowPlayingDetector& detector) {
  try {
    return detector.current().title;
  } catch (const std::exception& error) {
    return error.what();
  }
}

nlohmann::json timePolls(const Platform& system, int rounds) {
  RecordingLauncher launcher(system.processes);
  const auto observed = system.with(launcher);
  NowPlayingDetector detector(observed);
  nlohmann::json report;
  for (int round = 0; round <= rounds; ++round) {
    const double poll = secondsOf([&] { report["answer"] = detect(detector); });
    const auto children = launcher.takeChildren();
    report["children"] = children.size();
    record(report, round, poll, secondsOf([&] {
             for (const auto& child : children)
               static_cast<void>(system.processes.run(child));
           }));
  }
  return report;
}

nlohmann::json timeSession(const Platform& system, int rounds) {
  const ChildProcess playerctl{"/usr/bin/playerctl", {"metadata"}};
  nlohmann::json report;
  for (int round = 0; round <= rounds; ++round) {
    const double reading = secondsOf([&] {
      const auto track = MediaRemoteClient::currentTrackWorker(system);
      report["answer"] = track ? track->title : "";
    });
    record(report, round, reading,
           secondsOf([&] { report["exitStatus"] = system.processes.run(playerctl).exitStatus; }));
  }
  return report;
}

} // namespace

int main(int argc, char** argv) {
  const auto host = makeHost();
  const std::vector<std::string> arguments(argv + 1, argv + argc);
  if (arguments.size() != 2 || (arguments[0] != "poll" && arguments[0] != "session")) {
    std::cerr << "usage: velmor-poll-benchmark poll|session ROUNDS\n";
    return 2;
  }
  const auto measure = arguments[0] == "poll" ? timePolls : timeSession;
  std::cout << measure(host->platform(), std::stoi(arguments[1])) << '\n';
}
