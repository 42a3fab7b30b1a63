// Times what a poll costs on this system's real backend, and prints seconds as JSON:
//   velmor-poll-benchmark poll ROUNDS      a detection; what it asks child processes, by themselves
//   velmor-poll-benchmark cpu ROUNDS       processor time of a detection and its children; of one
//                                          that remembers no answers
//   velmor-poll-benchmark session ROUNDS   a media session's reading; a playerctl process

#include "nowplaying/NowPlayingDetector.h"
#include "nowplaying/readers/MediaRemoteClient.h"
#include "platform/Host.h"
#include "platform/ProcessLauncher.h"
#include "platform/linux/system/PosixProcessLauncher.h"

#include <nlohmann/json.hpp>
#include <sys/resource.h>

#include <chrono>
#include <ctime>
#include <iostream>
#include <map>
#include <stop_token>
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

/// Processor time that this process and all children that have ended have used.
double processorSeconds() {
  constexpr double nanoseconds = 1e-9;
  constexpr double microseconds = 1e-6;
  timespec own{};
  ::clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &own);
  rusage children{};
  ::getrusage(RUSAGE_CHILDREN, &children);
  const auto seconds = own.tv_sec + children.ru_utime.tv_sec + children.ru_stime.tv_sec;
  return static_cast<double>(seconds) + static_cast<double>(own.tv_nsec) * nanoseconds +
         static_cast<double>(children.ru_utime.tv_usec + children.ru_stime.tv_usec) * microseconds;
}

double processorSecondsOf(NowPlayingDetector& detector, std::string& answer) {
  const double start = processorSeconds();
  answer = detect(detector);
  return processorSeconds() - start;
}

nlohmann::json countProcessorTime(const Platform& system, int rounds) {
  const std::stop_source quit;
  PosixProcessLauncher forgetful(quit.get_token());
  const auto asking = system.with(forgetful);
  NowPlayingDetector detector(system);
  NowPlayingDetector askingDetector(asking);
  nlohmann::json report;
  std::string answer;
  for (int round = 0; round <= rounds; ++round) {
    const double remembered = processorSecondsOf(detector, answer);
    report["answer"] = answer;
    record(report, round, remembered, processorSecondsOf(askingDetector, answer));
  }
  return report;
}

nlohmann::json timePolls(const Platform& system, int rounds) {
  const std::stop_source quit;
  PosixProcessLauncher forgetful(quit.get_token());
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
               static_cast<void>(forgetful.run(child));
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
  const std::map<std::string, nlohmann::json (*)(const Platform&, int)> measures = {
      {"poll", timePolls}, {"cpu", countProcessorTime}, {"session", timeSession}};
  if (arguments.size() != 2 || !measures.contains(arguments[0])) {
    std::cerr << "usage: velmor-poll-benchmark poll|cpu|session ROUNDS\n";
    return 2;
  }
  const auto measure = measures.at(arguments[0]);
  std::cout << measure(host->platform(), std::stoi(arguments[1])) << '\n';
}
