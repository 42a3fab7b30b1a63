#pragma once

#include "app/AppController.h"
#include "app/CommandLine.h"
#include "app/Doctor.h"
#include "platform/Host.h"
#include "streams/TrackFeed.h"
#include "streams/TrackFormat.h"
#include "streams/WindowLine.h"

#include <optional>
#include <ostream>
#include <string>
#include <vector>

namespace velmor {

/// The program as it is started from a command line.
class Program {
public:
  Program(Host& host, std::ostream& out, std::ostream& err);

  /// Gives the exit status: 0 for success, 1 for a failure that a sentence on the error stream
  /// tells, 2 for a command line that cannot be carried out.
  [[nodiscard]] int run(const std::vector<std::string>& arguments);

private:
  using Command = Task<void> (Program::*)(AppController& controller, bool json);

  [[nodiscard]] int carryOut(const CommandLine& line);
  [[nodiscard]] int runWindow();
  [[nodiscard]] int runBridge();
  /// Keeps a feed true until the program is asked to end.
  [[nodiscard]] int follow(TrackFeed& feed);
  [[nodiscard]] int runNow(const CommandLine& line);
  [[nodiscard]] int runFollow(const CommandLine& line);
  [[nodiscard]] int runServe(const CommandLine& line);
  [[nodiscard]] int runDoctor(const CommandLine& line);
  /// Shows on the error stream how far the reading of the DJ's music is, as long as there is one.
  void showReading(AppController& controller);
  /// Runs a command that prints something and ends.
  [[nodiscard]] int runCommand(Command command, bool json);
  /// Runs the main loop until the task has ended, or the program is asked to end.
  [[nodiscard]] int runTask(Task<void> task);
  /// Says what it does, does it, and adds what it found.
  [[nodiscard]] Task<void> tryOut(const CommandLine& line, DoctorReport& report);
  /// What the running window says. Nothing when there is none, or it takes longer than this.
  [[nodiscard]] Task<std::optional<WindowLine>> askWindow(WindowQuestion question,
                                                          Seconds patience);
  [[nodiscard]] Task<void> reporting(Task<void> command);
  [[nodiscard]] Task<void> now(AppController& controller, bool json);
  [[nodiscard]] Task<void> suggest(AppController& controller, bool json);
  [[nodiscard]] Task<void> suggestFromCrate(AppController& controller, bool json);
  [[nodiscard]] Task<void> after(AppController& controller, bool json);
  [[nodiscard]] Task<void> crate(AppController& controller, bool json);
  [[nodiscard]] std::string lineFor(const NowPlayingTrack& track, bool json) const;
  /// Prints a ranking.
  void print(const VisionResult& result, bool json);
  /// Prints the message and gives the status of a failure.
  [[nodiscard]] int fail(const std::string& message);

  Host& host;
  std::ostream& out;
  std::ostream& err;
  int status = 0;
  /// The track that `after` is asked for.
  std::string trackName;
  /// How `now` prints a track; nothing for the usual way.
  std::optional<TrackFormat> format;
  /// The file that `now` writes to instead; "" for none.
  std::string outputFile;
};

} // namespace velmor
