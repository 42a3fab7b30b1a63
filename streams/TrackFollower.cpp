#include "streams/TrackFollower.h"

#include "platform/async/Waiting.h"
#include "streams/WindowLine.h"

namespace velmor {

namespace {

/// A window that lives says so every five seconds: one that is silent for 18 hangs.
constexpr int mostSilentRounds = 12;
/// What a window that is busy may take for its first word.
constexpr int roundsToGreet = 3;
constexpr int roundsAfterSilence = 20;

} // namespace

TrackFollower::TrackFollower(MainLoop& mainLoop, LocalService& localService,
                             std::function<TrackLook()> look, TrackFeed& trackFeed)
    : loop(mainLoop), service(localService), ask(std::move(look)), feed(trackFeed) {}

Task<void> TrackFollower::run() {
  for (;;) {
    const bool cancelled = co_await isCancelled();
    if (cancelled) co_return;
    approachWindow();
    // Two that look at different moments see different things: the window goes first.
    const bool isWaiting = window && silentRounds < roundsToGreet;
    if (!isTold && !isWaiting) {
      const auto seen = co_await occupied(loop, ask);
      take(seen);
    }
    co_await Sleep(loop, pollInterval);
  }
}

void TrackFollower::approachWindow() {
  if (window && ++silentRounds > mostSilentRounds) {
    leaveWindow();
    roundsUntilApproach = roundsAfterSilence;
  }
  if (window || roundsUntilApproach-- > 0) return;
  roundsUntilApproach = 0;
  window = service.connect();
  if (!window) return;
  silentRounds = 0;
  window->read([this](const auto& line) { hear(line); }, [this] { leaveWindow(); });
  window->send(WindowQuestion{WindowQuestion::Kind::follow}.line());
}

void TrackFollower::hear(const std::string& line) {
  const auto said = WindowLine::read(line);
  if (!said) return;
  isTold = true;
  silentRounds = 0;
  if (said->aboutTrack) feed.setTrack(said->track);
  if (said->suggestions) feed.setSuggestions(*said->suggestions);
}

void TrackFollower::leaveWindow() {
  window.reset();
  if (isTold) changes = TrackChanges(feed.track());
  isTold = false;
}

void TrackFollower::take(const TrackLook& seen) {
  const auto news = changes.take(seen);
  // The window may have begun to tell while this looked.
  if (isTold) return;
  const bool isFirst = !feed.isKnown() && !seen.track;
  if (news == TrackChanges::News::changed) feed.setTrack(seen.track);
  if (news == TrackChanges::News::stopped || isFirst) feed.setTrack(std::nullopt);
}

} // namespace velmor
