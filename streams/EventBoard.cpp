#include "streams/EventBoard.h"

#include <algorithm>

namespace velmor {

void EventBoard::post(const std::string& name, const std::string& data) {
  const std::lock_guard guard(lock);
  events.push_back({++last, name, data});
  if (events.size() > mostKept) events.pop_front();
  std::erase_if(newestOfEach, [&](const Event& event) { return event.name == name; });
  newestOfEach.push_back(events.back());
  news.notify_all();
}

std::optional<EventBoard::Event> EventBoard::newest(const std::string& name) const {
  const std::lock_guard guard(lock);
  const auto found = std::ranges::find(newestOfEach, name, &Event::name);
  return found == newestOfEach.end() ? std::nullopt : std::optional(*found);
}

std::uint64_t EventBoard::lastNumber() const {
  const std::lock_guard guard(lock);
  return last;
}

std::optional<EventBoard::Event> EventBoard::next(std::uint64_t after,
                                                  std::chrono::milliseconds patience) {
  std::unique_lock guard(lock);
  news.wait_for(guard, patience, [&] { return closed || last > after; });
  if (closed) return std::nullopt;
  const auto found =
      std::ranges::find_if(events, [&](const Event& event) { return event.number > after; });
  return found == events.end() ? std::nullopt : std::optional(*found);
}

void EventBoard::close() {
  const std::lock_guard guard(lock);
  closed = true;
  news.notify_all();
}

bool EventBoard::isClosed() const {
  const std::lock_guard guard(lock);
  return closed;
}

} // namespace velmor
