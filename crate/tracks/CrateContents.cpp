#include "crate/tracks/CrateContents.h"

#include "crate/tracks/TrackIdentity.h"

#include <algorithm>
#include <tuple>
#include <unordered_map>

namespace velmor {

namespace {

/// A track, and how much its source is preferred: 0 is the first.
struct Candidate {
  std::size_t source = 0;
  const CrateTrack* track = nullptr;
};

void takeUnknown(auto& value, const auto& other) {
  if (value == std::decay_t<decltype(value)>{}) value = other;
}

/// Adds what only the other entry of the same track knows.
void complete(CrateTrack& track, const CrateTrack& other) {
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
std::vector<Candidate> gathered(const CrateContents::Sources& sources,
                                std::vector<CrateSkip>& skipped) {
  std::vector<Candidate> all;
  for (std::size_t index = 0; index < sources.size(); ++index) {
    for (const auto& track : sources[index]->tracks) {
      if (track.artist.empty() || track.title.empty()) {
        skipped.push_back({track.file, "no artist or no title"});
        continue;
      }
      all.push_back({index, &track});
    }
  }
  const auto order = [](const Candidate& one, const Candidate& other) {
    return std::tie(one.track->identity, one.source, one.track->file) <
           std::tie(other.track->identity, other.source, other.track->file);
  };
  std::ranges::sort(all, order);
  return all;
}

void append(auto& all, const auto& more) {
  all.insert(all.end(), more.begin(), more.end());
}

} // namespace

CrateContents CrateContents::joined(Sources sources) {
  CrateContents contents;
  for (const auto& source : sources) {
    contents.sources.push_back({source->name, source->place, source->tracks.size()});
    append(contents.skipped, source->skipped);
    append(contents.nights, source->nights);
    append(contents.lists, source->lists);
  }
  const auto all = gathered(sources, contents.skipped);
  auto& tracks = contents.tracks;
  tracks.reserve(all.size());
  for (auto one = all.begin(); one != all.end();) {
    const auto isOther = [&](const Candidate& next) {
      return next.track->identity != one->track->identity;
    };
    const auto end = std::find_if(one, all.end(), isOther);
    tracks.push_back(one->track);
    if (end - one > 1) tracks.back() = &contents.own.emplace_back(*one->track);
    for (++one; one != end; ++one)
      complete(contents.own.back(), *one->track);
  }
  contents.owners = std::move(sources);
  contents.noteLastPlayed();
  return contents;
}

void CrateContents::noteLastPlayed() {
  std::unordered_map<std::uint64_t, CrateTime> lastPlays;
  for (const auto& night : nights) {
    for (const auto& play : night) {
      auto& last = lastPlays[play.identity];
      last = std::max(last, play.when);
    }
  }
  for (const auto& [identity, when] : lastPlays) {
    const auto found = std::ranges::lower_bound(tracks, identity, {}, &CrateTrack::identity);
    if (found == tracks.end() || (*found)->identity != identity) continue;
    auto& played = own.emplace_back(**found);
    played.lastPlayed = when;
    *found = &played;
  }
}

std::string CrateContents::status() const {
  if (tracks.empty()) return "No music found for your crate";
  auto count = std::to_string(tracks.size());
  for (auto position = count.size(); position > 3; position -= 3)
    count.insert(position - 3, ",");
  return "Your crate: " + count + (tracks.size() == 1 ? " track" : " tracks");
}

std::size_t CrateContents::withoutTempo() const {
  const auto lacksIt = [](const CrateTrack* track) { return track->bpm <= 0; };
  return static_cast<std::size_t>(std::ranges::count_if(tracks, lacksIt));
}

std::size_t CrateContents::withoutKey() const {
  const auto lacksIt = [](const CrateTrack* track) { return !track->key; };
  return static_cast<std::size_t>(std::ranges::count_if(tracks, lacksIt));
}

const CrateTrack* CrateContents::find(std::uint64_t identity) const {
  const auto found = std::ranges::lower_bound(tracks, identity, {}, &CrateTrack::identity);
  return found != tracks.end() && (*found)->identity == identity ? *found : nullptr;
}

const CrateTrack* CrateContents::find(std::string_view artist, std::string_view title) const {
  return find(TrackIdentity::of(artist, title).identity);
}

} // namespace velmor
