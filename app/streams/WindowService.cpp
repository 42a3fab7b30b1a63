#include "app/streams/WindowService.h"

#include "base/VelmorError.h"

#include <algorithm>

namespace velmor {

namespace {

/// Followers take a window that is silent for longer than a few of these for one that hangs.
constexpr Seconds heartbeatInterval{5};
constexpr Seconds freshFor{10};
constexpr std::size_t mostGuests = 64;

} // namespace

WindowService::WindowService(const Platform& thePlatform,
                             std::shared_ptr<AppController> theController)
    : platform(thePlatform), controller(std::move(theController)), tasks(platform.mainLoop) {
  feed.onTrack([this](const auto& track) { tellFollowers({.aboutTrack = true, .track = track}); });
  feed.onSuggestions([this](const auto& result) { tellFollowers({.suggestions = result}); });
  controller->setListeners([this](const auto& seen) { take(seen); },
                           [this](const auto& result) { feed.setSuggestions(result); });
}

WindowService::~WindowService() {
  controller->setListeners(nullptr, nullptr);
}

void WindowService::start(LocalService& localService) {
  localService.offer([this](const Connection& connection) { welcome(connection); });
}

void WindowService::welcome(const Connection& connection) {
  if (guests.size() >= mostGuests) return;
  const int number = ++lastNumber;
  guests[number].connection = connection;
  connection->read([this, number](const auto& line) { answer(number, line); },
                   [this, number] { part(number); });
}

void WindowService::part(int number) {
  guests.erase(number);
  followersHaveChanged();
}

void WindowService::answer(int number, const std::string& line) {
  const auto guest = guests.find(number);
  if (guest == guests.end()) return;
  const auto question = WindowQuestion::read(line);
  if (!question) return part(number);
  switch (question->kind) {
  case WindowQuestion::Kind::now:
    tasks.start(answerNow(guest->second.connection));
    return;
  case WindowQuestion::Kind::follow:
    beginToTell(guest->second);
    return;
  case WindowQuestion::Kind::suggest:
    tasks.start(answerSuggest(guest->second.connection, question->fromCrate));
    return;
  }
}

void WindowService::beginToTell(Guest& guest) {
  guest.follows = true;
  WindowLine news;
  news.aboutTrack = feed.isKnown() && isTrackFresh();
  if (news.aboutTrack) news.track = feed.track();
  news.suggestions = feed.suggestions();
  guest.connection->send(news.line());
  followersHaveChanged();
}

void WindowService::tellFollowers(const WindowLine& news) {
  const auto line = news.line();
  for (const auto& [number, guest] : guests)
    if (guest.follows) guest.connection->send(line);
}

void WindowService::followersHaveChanged() {
  const bool isFollowed =
      std::ranges::any_of(guests, [](const auto& guest) { return guest.second.follows; });
  if (isFollowed == static_cast<bool>(heartbeat)) return;
  controller->lookForListeners(isFollowed);
  heartbeat.reset();
  if (!isFollowed) return;
  // In the lane that goes on while the window looks or listens.
  heartbeat = platform.mainLoop.callEvery(MainLoop::Lane::Display, heartbeatInterval,
                                          [this] { tellFollowers({}); });
}

void WindowService::take(const TrackLook& seen) {
  if (!isTrackFresh()) {
    feed.forgetTrack();
    changes = TrackChanges();
  }
  lastLook = platform.clock.now();
  const auto news = changes.take(seen);
  const bool isFirst = !feed.isKnown() && !seen.track;
  if (news == TrackChanges::News::changed) feed.setTrack(seen.track);
  if (news == TrackChanges::News::stopped || isFirst) feed.setTrack(std::nullopt);
}

/// When nobody has looked for a while, anything may have happened since. A look takes up to a few
/// seconds itself.
bool WindowService::isTrackFresh() const {
  const auto age = platform.clock.now() - lastLook;
  return age >= age.zero() && age < freshFor;
}

Task<void> WindowService::answerNow(Connection connection) {
  WindowLine reply{.aboutTrack = true};
  try {
    if (isTrackFresh() && feed.track())
      reply.track = feed.track();
    else
      reply.track = co_await controller->detectTrack();
  } catch (const std::exception& error) {
    reply = {.error = messageOf(error)};
  }
  connection->send(reply.line());
}

Task<void> WindowService::answerSuggest(Connection connection, bool fromCrate) {
  WindowLine reply;
  try {
    if (fromCrate) {
      reply.suggestions = co_await controller->suggestFromCrate();
    } else {
      controller->requireKey();
      const auto track = co_await controller->detectTrack();
      reply.aboutTrack = true;
      reply.track = track;
      reply.suggestions = co_await controller->suggestTracksAfter(track);
    }
  } catch (const std::exception& error) {
    reply.error = messageOf(error);
  }
  connection->send(reply.line());
}

} // namespace velmor
