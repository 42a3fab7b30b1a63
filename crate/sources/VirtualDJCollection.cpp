#include "crate/sources/VirtualDJCollection.h"

#include "base/Number.h"
#include "crate/tracks/CrateDates.h"

#include <utility>

namespace velmor {

namespace {

/// Seconds from beat to beat, or beats per minute: nothing is played at less than 10 of them.
double tempoOf(const std::string& text) {
  constexpr double longestBeat = 10;
  const auto value = number::parseDouble(text).value_or(0);
  if (value <= 0) return 0;
  return value > longestBeat ? value : 60 / value;
}

} // namespace

void VirtualDJCollection::element(const XmlStream& xml, const Take& take) {
  const auto name = xml.name();
  if (xml.depth() <= 1) end(take);
  if (xml.depth() == 1 && name == "Song") {
    isInSong = true;
    track.file = xml.attribute("FilePath");
  }
  if (!isInSong || xml.depth() != 2 || (name != "Tags" && name != "Scan")) return;
  if (name == "Tags") {
    track.title = xml.attribute("Title");
    track.artist = xml.attribute("Author");
    track.album = xml.attribute("Album");
    track.genre = xml.attribute("Genre");
    track.year = CrateDates::year(xml.attribute("Year"));
  }
  // The tags, which the DJ may have put right, come before what the program found.
  const bool isTag = name == "Tags";
  if (const auto tempo = tempoOf(xml.attribute("Bpm")); tempo > 0 && (isTag || track.bpm <= 0)) {
    track.bpm = tempo;
  }
  if (const auto key = MusicalKey::read(xml.attribute("Key")); key && (isTag || !track.key)) {
    track.key = key;
  }
}

void VirtualDJCollection::end(const Take& take) {
  auto song = std::exchange(track, {});
  // Parts of other songs, made by the program, have no title.
  if (std::exchange(isInSong, false) && !song.title.empty()) take(std::move(song));
}

} // namespace velmor
