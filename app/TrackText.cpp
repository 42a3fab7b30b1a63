#include "app/TrackText.h"

#include "base/Json.h"
#include "base/Number.h"
#include "base/Text.h"

#include <vector>

namespace velmor {

namespace {

using text::printable;

/// The parts that are there, between commas.
std::string details(double bpm, const std::string& key, const std::string& genre) {
  std::vector<std::string> parts;
  if (bpm > 0) parts.push_back(number::formatFixed(bpm, 1) + " BPM");
  if (!key.empty()) parts.push_back(printable(key));
  if (!genre.empty()) parts.push_back(printable(genre));
  return text::joined(parts, ", ");
}

std::string named(const std::string& artist, const std::string& title,
                  const std::string& inBrackets) {
  const auto name = printable(artist) + " – " + printable(title);
  return inBrackets.empty() ? name : name + " (" + inBrackets + ")";
}

} // namespace

std::string TrackText::readable(const NowPlayingTrack& track) {
  const auto album = track.album.empty() ? "" : " from " + printable(track.album);
  return named(track.artist, track.title, details(track.bpm, track.key, track.genre)) + album +
         " [" + printable(track.source) + ": " + printable(track.detection) + "]\n";
}

std::string TrackText::json(const NowPlayingTrack& track) {
  return jsonEncoder().encode(track) + "\n";
}

std::string TrackText::readable(const VisionResult& result, const std::string& label) {
  const auto& current = result.currentTrack;
  if (current.song.empty() && result.recommendations.empty()) {
    return "The model sees no playback, so it suggests nothing.\n" + printable(result.notice) +
           " " + printable(result.source) + "\n";
  }
  std::string lines =
      label + ": " +
      named(current.artist, current.song, details(current.bpm, current.key, current.genre)) + "\n" +
      printable(result.notice) + " " + printable(result.source) + "\n\n";
  int rank = 0;
  for (const auto& track : result.recommendations) {
    lines += std::to_string(++rank) + ". " +
             named(track.artist, track.song, details(track.bpm, track.key, track.genre)) + " " +
             std::to_string(track.compatibilityScore) + "/100\n   " + printable(track.explanation) +
             "\n";
  }
  if (result.recommendations.empty()) lines += "No recommendations.\n";
  return lines;
}

} // namespace velmor
