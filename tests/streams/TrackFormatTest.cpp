#include "streams/TrackFormat.h"

#include "base/VelmorError.h"

#include <gtest/gtest.h>

using namespace velmor;

TEST(TrackFormat, LeavesOutBracketsWithAnEmptyField) {
  const NowPlayingTrack whole{.title = "T", .artist = "A", .bpm = 128, .key = "A minor"};
  const NowPlayingTrack half{.title = "T [{bpm}]\n(Live", .artist = " A ", .bpm = 124.52};
  const std::tuple<const char*, NowPlayingTrack, const char*> cases[] = {
      {"{artist} - {title} [{bpm} BPM, {key}]", whole, "A - T [128 BPM, A minor]"},
      {"{artist} - {title} [{bpm} BPM, {key}]", half, "A - T [{bpm}] (Live"},
      {"{title} [{bpm}] ({key}) now", half, "T [{bpm}] (Live [124.5] now"},
      {"{artist} ({bpm} [in {key}])", half, "A (124.5)"},
      {"{artist} ({key} [at {bpm}])", half, "A"},
      {"{artist} [{title}", whole, "A [T"},
      {"{artist} (live) ]) {{{camelot}}}", whole, "A (live) ]) {8A}"},
      {"({title}]", whole, "(T]"},
      {"{album} {genre}", whole, ""},
      {"♪ {title}\t\x1B[2J", whole, "♪ T  [2J"},
  };
  for (const auto& [format, track, line] : cases)
    EXPECT_EQ(TrackFormat(format).line(track), line) << format;
}

TEST(TrackFormat, NamesWhatItDoesNotKnow) {
  const std::pair<const char*, const char*> cases[] = {
      {"{titel}", "The format has no field {titel}. There are: title, artist, album, genre, bpm, "
                  "key, camelot, source, detection."},
      {"{artist", "The format has a { without a }. Write {{ for a brace."},
      {"artist}", "The format has a } without a {. Write }} for a brace."},
  };
  for (const auto& [format, message] : cases) {
    try {
      const TrackFormat parsed(format);
      ADD_FAILURE() << format;
    } catch (const VelmorError& error) {
      EXPECT_EQ(error.message(), message);
    }
  }
}
