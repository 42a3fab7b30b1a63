#include "app/DoctorSources.h"

#include "nowplaying/readers/DjayDetector.h"
#include "nowplaying/readers/MediaRemoteClient.h"
#include "nowplaying/readers/MixxxDetector.h"
#include "nowplaying/readers/MixxxLibrary.h"
#include "nowplaying/readers/RekordboxDetector.h"
#include "nowplaying/readers/SeratoDetector.h"
#include "nowplaying/readers/StreamingAppDetector.h"
#include "nowplaying/readers/VirtualDJHistory.h"
#include "nowplaying/readers/VirtualDJNetworkControl.h"
#include "nowplaying/shared/NowPlayingError.h"
#include "nowplaying/shared/ProcessUtils.h"
#include "nowplaying/shared/SQLiteReader.h"
#include "platform/FileManager.h"
#include "platform/MediaRemote.h"
#include "platform/PlatformRecord.h"

#include <algorithm>
#include <filesystem>

namespace velmor {

namespace {

using State = DoctorFinding::State;
using Paths = std::vector<std::filesystem::path>;

constexpr Seconds patience{2};
constexpr auto startInSession =
    "Start Velmor inside your desktop session. The services listed below say what is missing.";

DoctorFinding absent(const std::string& name, const std::string& advice) {
  return {name, State::absent, "not running", advice};
}

/// What to do about a database that cannot be read.
std::string adviceAbout(SQLiteReader::Obstacle obstacle) {
  switch (obstacle) {
  case SQLiteReader::Obstacle::notAFile:
    return "Something else stands in the place of the database or of a file beside it: remove it.";
  case SQLiteReader::Obstacle::strayLog:
    return "Its last changes lie in a log that was copied or left behind, and Velmor writes "
           "nothing "
           "to recover them. Start and quit the program once.";
  default:
    return "Give your user the right to read the file and its folder. If it has it, the program "
           "keeps the file locked, or the file is damaged.";
  }
}

/// What to say of a running program that Velmor reads from one of these databases.
DoctorFinding database(const std::string& name, const Paths& paths,
                       const std::string& missingAdvice) {
  using Obstacle = SQLiteReader::Obstacle;
  std::optional<DoctorFinding> unreadable;
  for (const auto& path : paths) {
    const auto obstacle = SQLiteReader::obstacle(path);
    if (obstacle == Obstacle::none) {
      return {name, State::ready, "running, reads " + path.string(), ""};
    }
    if (obstacle == Obstacle::missing || unreadable) continue;
    unreadable = {name, State::faulty, "running, but " + path.string() + " cannot be read",
                  adviceAbout(obstacle)};
  }
  if (unreadable) return *unreadable;
  return {name, State::faulty, "running, but there is no " + paths.front().string(), missingAdvice};
}

/// Whether the reader gives a track.
template <typename Reader>
bool names(const Platform& platform, Reader reader) {
  try {
    static_cast<void>(reader(platform));
    return true;
  } catch (const std::exception&) {
    return false;
  }
}

DoctorFinding mixxx(const Platform& platform) {
  constexpr auto name = "Mixxx";
  if (!MixxxDetector::isRunning(platform)) return absent(name, "Start Mixxx and play a track.");
  if (MixxxDetector::displayedTrack(platform)) {
    if (names(platform, MixxxDetector::current)) {
      return {name, State::ready, "running, the window's title names the track", ""};
    }
    return {name, State::faulty, "running, but the track that its window shows has no artist",
            "Velmor knows a track by artist and title: enter both in Mixxx's library."};
  }
  const auto libraries = MixxxLibrary::libraryDatabasePaths(platform);
  if (!libraries.empty()) return database(name, libraries, "");
  return {name, State::faulty, "running, but no window names a track and your home has no library",
          "Load and play a track. Run Mixxx as the same user and with its usual settings folder."};
}

DoctorFinding rekordbox(const Platform& platform) {
  constexpr auto name = "rekordbox";
  if (!RekordboxDetector::isRunning(platform)) {
    return absent(name, "Start rekordbox and load a track.");
  }
  try {
    const auto decks = RekordboxDetector::readDecksViaAccessibility(platform);
    return {name, State::ready,
            "running, loaded decks in its window: " + std::to_string(decks.size()), ""};
  } catch (const NowPlayingError& error) {
    if (error.errorCase() == NowPlayingError::Case::accessibilityDenied) {
      return {name, State::faulty, "running, but its window may not be read",
              "Let Velmor read other programs' windows: on macOS in System Settings → Privacy & "
              "Security → Accessibility; on Linux by switching the accessibility bus on, of which "
              "a line below tells. Then start rekordbox again."};
    }
  } catch (const std::exception&) {
    // The same advice helps as for a window without a deck.
  }
  return {name, State::faulty, "running, but its window shows no loaded deck",
          "Open its window in performance mode and load a track. While rekordbox runs, Velmor asks "
          "no source below it."};
}

DoctorFinding djay(const Platform& platform) {
  constexpr auto name = "djay Pro";
  if (!DjayDetector::isRunning(platform)) return absent(name, "Start djay Pro and play a track.");
  return database(name, DjayDetector::mediaLibraryPaths(platform),
                  "Keep the media library in the Music folder, and play a track.");
}

DoctorFinding player(const Platform& platform, const std::string& name) {
  if (!ProcessUtils::isRunning(platform, {name})) {
    return absent(name, "Start " + name + " and play a track.");
  }
  try {
    const bool plays =
        StreamingAppDetector::current(platform, name, {name}, name, name).has_value();
    if (plays) return {name, State::ready, "running, plays a track", ""};
    const bool isAskedOnBus = platform.record.answerScript != nullptr;
    if (isAskedOnBus && !platform.mediaRemote.open()) {
      return {name, State::faulty, "running, but there is no session bus to ask it on",
              startInSession};
    }
    return {name, State::absent, "running, but plays nothing",
            "Press play in " + name +
                ". What has no artist or album, such as an advertisement, is no track."};
  } catch (const std::exception& error) {
    return {name, State::faulty, "running, but Velmor could not ask it", error.what()};
  }
}

DoctorFinding mediaSession(const Platform& platform) {
  constexpr auto name = "Media session";
  const auto session = platform.mediaRemote.open();
  if (!session) {
    return {name, State::faulty, "not available", startInSession};
  }
  const auto client = session->nowPlayingClient(patience);
  if (session->nowPlayingApplicationIsPlaying(patience).value_or(false)) {
    const auto who = client ? MediaRemoteClient::mediaSourceName(*client) : "a player";
    if (MediaRemoteClient::currentTrackWorker(platform)) {
      return {name, State::ready, who + " plays", ""};
    }
    return {name, State::faulty, who + " plays, but does not tell title and artist",
            "Velmor knows a track by artist and title. Give the file both tags, or play it where "
            "both are announced."};
  }
  return {name, State::absent, client ? "a player is open, but plays nothing" : "no player",
          "Play a track in a browser or any player that announces its track."};
}

DoctorFinding virtualDJ(const Platform& platform) {
  constexpr auto name = "VirtualDJ";
  if (ProcessUtils::processIDs(platform, VirtualDJNetworkControl::processName).empty()) {
    return absent(name, "Start VirtualDJ and play a track.");
  }
  for (const auto port : VirtualDJNetworkControl::listeningPorts(platform)) {
    try {
      static_cast<void>(VirtualDJNetworkControl::queryNetworkControl(platform, port));
      return {name, State::ready,
              "running, Network Control answers on port " + std::to_string(port), ""};
    } catch (const std::exception&) {
      continue;
    }
  }
  const auto history = VirtualDJHistory::homeFolder(platform) / "History";
  if (!platform.files.list(history).empty()) {
    return {name, State::ready, "running, reads " + history.string(), ""};
  }
  return {name, State::faulty, "running, but neither Network Control nor a play history is found",
          "Switch on the Network Control plugin, or the history in VirtualDJ's settings."};
}

DoctorFinding serato(const Platform& platform) {
  constexpr auto name = "Serato";
  if (!SeratoDetector::isRunning(platform)) return absent(name, "Start Serato and play a track.");
  return database(name, SeratoDetector::historyPaths(platform),
                  "Play a track, so that Serato writes its history.");
}

} // namespace

DoctorSources::Result DoctorSources::examine(const Platform& platform) {
  Result result;
  const auto add = [&](DoctorFinding finding) { result.findings.push_back(std::move(finding)); };
  add(mixxx(platform));
  add(rekordbox(platform));
  add(djay(platform));
  add(player(platform, StreamingAppDetector::spotify));
  add(player(platform, StreamingAppDetector::music));
  add(mediaSession(platform));
  add(virtualDJ(platform));
  add(serato(platform));
  // While rekordbox runs, nobody after it is asked.
  const auto end = result.findings[1].state == State::absent ? result.findings.end()
                                                             : result.findings.begin() + 2;
  result.trackCanBeFound = std::any_of(result.findings.begin(), end, [](const auto& finding) {
    return finding.state == State::ready;
  });
  return result;
}

} // namespace velmor
