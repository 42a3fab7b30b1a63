#include "nowplaying/NowPlayingDetector.h"

#include "base/Number.h"
#include "nowplaying/readers/DjayDetector.h"
#include "nowplaying/readers/MediaRemoteClient.h"
#include "nowplaying/readers/MixxxDetector.h"
#include "nowplaying/readers/RekordboxDetector.h"
#include "nowplaying/readers/SeratoDetector.h"
#include "nowplaying/readers/StreamingAppDetector.h"
#include "nowplaying/readers/VirtualDJDetector.h"
#include "nowplaying/shared/NowPlayingError.h"
#include "nowplaying/shared/ProcessUtils.h"
#include "platform/RunningApplications.h"

#include <algorithm>
#include <tuple>

namespace velmor {

namespace {

constexpr auto spotify = StreamingAppDetector::spotify;
constexpr auto music = StreamingAppDetector::music;

/// The running applications as they were at the first question: listing them asks the desktop and
/// every media player, which is too dear to be done again for each source of one look. One thread.
class ApplicationsSnapshot : public RunningApplications {
public:
  explicit ApplicationsSnapshot(RunningApplications& applications) : live(applications) {}

  std::vector<RunningApplication> list() override {
    if (!taken) taken = live.list();
    return *taken;
  }

private:
  RunningApplications& live;
  std::optional<std::vector<RunningApplication>> taken;
};

/// The reader's track, or nothing: why it found none is nobody's concern, the next source is tried.
template <typename Reader>
std::optional<NowPlayingTrack> attempt(const Platform& platform, Reader reader) {
  try {
    return reader(platform);
  } catch (const std::exception&) {
    return std::nullopt;
  }
}

std::optional<NowPlayingTrack> currentMixxx(const Platform& platform) {
  if (!MixxxDetector::isRunning(platform)) return std::nullopt;
  return attempt(platform, MixxxDetector::current);
}

std::optional<NowPlayingTrack> currentDjay(const Platform& platform) {
  if (!DjayDetector::isRunning(platform)) return std::nullopt;
  return attempt(platform, DjayDetector::current);
}

std::optional<NowPlayingTrack> currentPlayer(const Platform& platform, const std::string& name) {
  return StreamingAppDetector::current(platform, name, {name}, "macOS media",
                                       "macOS media session");
}

bool isPlayerPaused(const Platform& platform, const std::string& name) {
  return ProcessUtils::isRunning(platform, {name}) &&
         StreamingAppDetector::isPaused(platform, name);
}

} // namespace

NowPlayingTrack NowPlayingDetector::current() {
  ApplicationsSnapshot applications(platform.applications);
  const auto now = platform.with(applications);
  if (auto track = currentMixxx(now)) return *track;
  // While rekordbox runs, a DJ plays with it: what else sounds on the machine is not the set.
  if (RekordboxDetector::isRunning(now)) return currentRekordbox(now);
  resetRekordboxState();
  if (auto track = currentDjay(now)) return *track;
  if (auto track = currentPlayer(now, spotify)) return *track;
  if (auto track = currentPlayer(now, music)) return *track;
  if (auto track = MediaRemoteClient::currentTrackWorker(now)) return *track;
  if (auto track = attempt(now, VirtualDJDetector::current)) return *track;
  if (auto track = attempt(now, SeratoDetector::current)) return *track;
  if (isPlayerPaused(now, spotify) || isPlayerPaused(now, music)) {
    throw NowPlayingError::playbackPaused("media player");
  }
  throw NowPlayingError::noActiveSession();
}

// rekordbox shows every loaded deck alike. The one that plays is the one whose clock moves, which
// takes two polls to see.

namespace {

/// The decks that have been shown before with another time. Of decks with the same track, each
/// goes with the earlier clock that is nearest to its own; where there are fewer clocks than decks,
/// the decks left over have been loaded since.
std::vector<const RekordboxDeck*> movedDecks(const std::vector<RekordboxDeck>& decks,
                                             NowPlayingDetector::Elapsed previous) {
  struct Pair {
    std::uint64_t distance;
    const RekordboxDeck* deck;
    NowPlayingDetector::Elapsed::iterator clock;
  };
  std::vector<Pair> pairs;
  for (const auto& deck : decks) {
    const auto [first, last] = previous.equal_range(deck.fingerprint());
    for (auto clock = first; clock != last; ++clock) {
      const auto [less, more] = std::minmax(clock->second, deck.elapsed);
      pairs.push_back({static_cast<std::uint64_t>(more - less), &deck, clock});
    }
  }
  std::ranges::stable_sort(pairs, {}, &Pair::distance);
  std::vector<const RekordboxDeck*> moved;
  while (!pairs.empty()) {
    const auto nearest = pairs.front();
    if (nearest.distance > 0) moved.push_back(nearest.deck);
    std::erase_if(pairs, [&](const Pair& pair) {
      return pair.deck == nearest.deck || pair.clock == nearest.clock;
    });
  }
  // In the order of the decks, which decides between equals.
  std::ranges::sort(moved);
  return moved;
}

std::optional<RekordboxDeck> rekordboxDeckByFingerprint(const std::vector<RekordboxDeck>& decks,
                                                        const std::string& fingerprint) {
  if (fingerprint.empty()) return std::nullopt;
  const auto found = std::ranges::find(decks, fingerprint, &RekordboxDeck::fingerprint);
  return found == decks.end() ? std::nullopt : std::optional(*found);
}

} // namespace

NowPlayingTrack NowPlayingDetector::currentRekordbox(const Platform& now) {
  // Its process may have ended since; the list of applications stays that of this poll.
  if (!RekordboxDetector::isRunning(now)) {
    resetRekordboxState();
    throw NowPlayingError::noActiveSession();
  }
  const auto deck = trackRekordbox(RekordboxDetector::readDecksViaAccessibility(now));
  if (!deck) throw NowPlayingError::noActiveSession();
  NowPlayingTrack track;
  track.title = deck->title;
  track.artist = deck->artist;
  track.bpm = number::parseDouble(deck->bpm).value_or(0);
  track.key = deck->key;
  track.source = "rekordbox";
  track.detection = "rekordbox deck metadata";
  return track;
}

/// Chooses the playing deck and remembers all clocks. Without a moving clock the deck that was last
/// reported is kept for as long as the patience lasts, if it is still shown.
std::optional<RekordboxDeck>
NowPlayingDetector::trackRekordbox(const std::vector<RekordboxDeck>& decks) {
  constexpr std::int64_t patience = 1;
  const std::lock_guard guard(lock);
  forgetWhatIsOld();
  // After a pause this look only notes the clocks, unless nothing at all is known.
  const bool isWithoutClocks = rekordboxElapsed.empty() && !rekordboxCurrent.empty();
  auto chosen = isWithoutClocks ? std::nullopt : selectRekordboxDeck(decks, rekordboxElapsed);
  if (chosen) {
    rekordboxCurrent = chosen->fingerprint();
    rekordboxUnchanged = 0;
  } else {
    if (rekordboxUnchanged < patience) chosen = rekordboxDeckByFingerprint(decks, rekordboxCurrent);
    ++rekordboxUnchanged;
  }
  remember(decks);
  return chosen;
}

std::optional<RekordboxDeck>
NowPlayingDetector::selectRekordboxDeck(const std::vector<RekordboxDeck>& decks,
                                        const Elapsed& previous) {
  auto candidates = movedDecks(decks, previous);
  if (previous.empty()) {
    for (const auto& deck : decks)
      if (deck.elapsed > 0) candidates.push_back(&deck);
  }
  std::erase_if(candidates, [](const RekordboxDeck* deck) {
    return deck->fingerprint() == RekordboxDeck::emptyFingerprint;
  });
  const auto first = std::ranges::min_element(candidates, {}, [](const RekordboxDeck* deck) {
    return std::tuple(deck->elapsed, deck->top);
  });
  if (first == candidates.end()) return std::nullopt;
  return **first;
}

bool NowPlayingDetector::noteClocks() {
  ApplicationsSnapshot applications(platform.applications);
  const auto now = platform.with(applications);
  try {
    {
      const std::lock_guard guard(lock);
      forgetWhatIsOld();
      if (!rekordboxElapsed.empty()) return false;
    }
    if (!RekordboxDetector::isRunning(now) || currentMixxx(now)) return false;
    const auto decks = RekordboxDetector::readDecksViaAccessibility(now);
    const std::lock_guard guard(lock);
    remember(decks);
    return true;
  } catch (const std::exception&) {
    // The look that counts will say what is wrong.
    return false;
  }
}

/// Clocks older than a few polls tell nothing: a deck that is paused now may have played since. The
/// deck that was last reported counts for longer, since nobody looks while the sound is measured.
void NowPlayingDetector::forgetWhatIsOld() {
  constexpr Seconds oldestClocks{10};
  constexpr Seconds longestMeasurement{180};
  const auto age = platform.clock.now() - rekordboxSeen;
  const bool isClockSetBack = age < age.zero();
  if (isClockSetBack || age > longestMeasurement) forgetClocks();
  if (age > oldestClocks) rekordboxElapsed.clear();
}

void NowPlayingDetector::remember(const std::vector<RekordboxDeck>& decks) {
  rekordboxSeen = platform.clock.now();
  rekordboxElapsed.clear();
  for (const auto& deck : decks)
    rekordboxElapsed.emplace(deck.fingerprint(), deck.elapsed);
}

void NowPlayingDetector::forgetClocks() {
  rekordboxSeen = {};
  rekordboxElapsed.clear();
  rekordboxCurrent.clear();
  rekordboxUnchanged = 0;
}

void NowPlayingDetector::resetRekordboxState() {
  const std::lock_guard guard(lock);
  forgetClocks();
}

} // namespace velmor
