#include "crate/CrateContents.h"

#include "crate/TrackIdentity.h"

#include <algorithm>
#include <iterator>
#include <tuple>

namespace velmor {

namespace {

/// A track, and how much its source is preferred: 0 is the first.
struct Candidate {
  std::size_t source = 0;
  CrateTrack track;
};

void takeUnknown(auto& value, auto& other) {
  if (value == std::decay_t<decltype(value)>{}) value = std::move(other);
}

/// Adds what only the other entry of the same track knows.
void complete(CrateTrack& track, CrateTrack& other) {
  takeUnknown(track.album, other.album);
  takeUnknown(track.genre, other.genre);
  takeUnknown(track.file, other.file);
  takeUnknown(track.bpm, other.bpm);
  takeUnknown(track.key, other.key);
  takeUnknown(track.energy, other.energy);
  takeUnknown(track.rating, other.rating);
  takeUnknown(track.year, other.year);
  takeUnknown(track.added, other.added);
}

/// The tracks of all sources that can be suggested, those of one identity side by side.
std::vector<Candidate> gathered(std::vector<CrateSource>& sources,
                                std::vector<CrateSkip>& skipped) {
  std::vector<Candidate> all;
  for (std::size_t index = 0; index < sources.size(); ++index) {
    for (auto& track : sources[index].tracks) {
      if (track.artist.empty() || track.title.empty()) {
        skipped.push_back({track.file, "no artist or no title"});
        continue;
      }
      all.push_back({index, std::move(track)});
    }
    sources[index].tracks = {};
  }
  const auto order = [](const Candidate& one, const Candidate& other) {
    return std::tie(one.track.identity, one.source, one.track.file) <
           std::tie(other.track.identity, other.source, other.track.file);
  };
  std::ranges::sort(all, order);
  return all;
}

void noteLastPlayed(CrateContents& contents) {
  for (const auto& night : contents.nights) {
    for (const auto& play : night) {
      const auto* const track = contents.find(play.identity);
      if (!track) continue;
      auto& known = contents.tracks[static_cast<std::size_t>(track - contents.tracks.data())];
      known.lastPlayed = std::max(known.lastPlayed, play.when);
    }
  }
}

} // namespace

CrateContents CrateContents::joined(std::vector<CrateSource> sources) {
  CrateContents contents;
  for (auto& source : sources) {
    contents.sources.push_back({source.name, source.place, source.tracks.size()});
    std::ranges::move(source.skipped, std::back_inserter(contents.skipped));
    std::ranges::move(source.nights, std::back_inserter(contents.nights));
  }
  auto all = gathered(sources, contents.skipped);
  for (auto& candidate : all) {
    auto& tracks = contents.tracks;
    if (!tracks.empty() && tracks.back().identity == candidate.track.identity) {
      complete(tracks.back(), candidate.track);
    } else {
      tracks.push_back(std::move(candidate.track));
    }
  }
  noteLastPlayed(contents);
  return contents;
}

std::string CrateContents::status() const {
  if (tracks.empty()) return "No music found for your crate";
  auto count = std::to_string(tracks.size());
  for (auto position = count.size(); position > 3; position -= 3)
    count.insert(position - 3, ",");
  return "Your crate: " + count + (tracks.size() == 1 ? " track" : " tracks");
}

const CrateTrack* CrateContents::find(std::uint64_t identity) const {
  const auto found = std::ranges::lower_bound(tracks, identity, {}, &CrateTrack::identity);
  return found != tracks.end() && found->identity == identity ? &*found : nullptr;
}

const CrateTrack* CrateContents::find(std::string_view artist, std::string_view title) const {
  return find(TrackIdentity::of(artist, title).identity);
}

} // namespace velmor
