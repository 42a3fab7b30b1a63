#pragma once

#include "base/Record.h"

#include <cstdint>
#include <string>
#include <vector>

/// What the page learns of the DJ's own music. Rules as in model/Records.h.
namespace velmor {

/// A song by its names, as they are written anywhere.
struct SongName {
  std::string song;
  std::string artist;

  static constexpr auto fields() {
    return std::tuple{Field{"song", &SongName::song}, Field{"artist", &SongName::artist}};
  }
};

/// A source of the crate, such as Mixxx's library.
struct CrateSourceState {
  std::string name;
  /// How many tracks it has.
  std::int64_t tracks = 0;

  static constexpr auto fields() {
    return std::tuple{Field{"name", &CrateSourceState::name},
                      Field{"tracks", &CrateSourceState::tracks}};
  }
};

/// The crate as a whole.
struct CrateState {
  /// How many tracks there are, each counted once.
  std::int64_t tracks = 0;
  std::int64_t withoutTempo = 0;
  std::int64_t withoutKey = 0;
  /// How many files or entries could not be read or used.
  std::int64_t skipped = 0;
  std::vector<CrateSourceState> sources;
  /// The sources are being read, for the first time or again.
  bool reading = false;
  /// How far that is: 0 to 1.
  double progress = 0;
  /// A sentence for the user: "Your crate: 4,212 tracks", "No music found for your crate", and
  /// "Reading your music" as long as it is read for the first time.
  std::string status;
  /// Keys count when tracks are ranked.
  bool keys = true;

  static constexpr auto fields() {
    return std::tuple{
        Field{"tracks", &CrateState::tracks},
        Field{"withoutTempo", &CrateState::withoutTempo},
        Field{"withoutKey", &CrateState::withoutKey},
        Field{"skipped", &CrateState::skipped},
        Field{"sources", &CrateState::sources},
        Field{"reading", &CrateState::reading},
        Field{"progress", &CrateState::progress},
        Field{"status", &CrateState::status},
        Field{"keys", &CrateState::keys},
    };
  }
};

/// A track of the crate.
struct CrateEntry {
  std::string song;
  std::string artist;
  /// Beats per minute.
  double bpm = 0;
  /// In Camelot notation.
  std::string key;
  std::string genre;
  /// The address of its file, such as "file:///music/A%20-%20B.mp3"; "" when it is not on this
  /// machine.
  std::string uri;
  /// The day on which it was last played, "2026-10-03"; "" for never.
  std::string lastPlayed;

  static constexpr auto fields() {
    return std::tuple{
        Field{"song", &CrateEntry::song},
        Field{"artist", &CrateEntry::artist},
        Field{"bpm", &CrateEntry::bpm},
        Field{"key", &CrateEntry::key},
        Field{"genre", &CrateEntry::genre},
        Field{"uri", &CrateEntry::uri},
        Field{"lastPlayed", &CrateEntry::lastPlayed},
    };
  }
};

} // namespace velmor
