#pragma once

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <deque>
#include <mutex>
#include <optional>
#include <string>

namespace velmor {

/// The newest events, for readers that come and go on other threads. A reader that keeps up gets
/// every event; one that falls behind by more than `mostKept` goes on with the oldest that is
/// kept. Any thread.
class EventBoard {
public:
  struct Event {
    std::uint64_t number = 0;
    std::string name;
    /// JSON on one line.
    std::string data;
  };
  static constexpr std::size_t mostKept = 256;

  void post(const std::string& name, const std::string& data);

  /// The last event of this name.
  [[nodiscard]] std::optional<Event> newest(const std::string& name) const;
  /// The number of the last event; 0 before the first.
  [[nodiscard]] std::uint64_t lastNumber() const;

  /// The next event after the number. Nothing when none has come in this time, or the board is
  /// closed.
  [[nodiscard]] std::optional<Event> next(std::uint64_t after, std::chrono::milliseconds patience);

  /// Ends every wait; there is nothing more.
  void close();
  [[nodiscard]] bool isClosed() const;

private:
  mutable std::mutex lock;
  std::condition_variable news;
  std::deque<Event> events;
  std::deque<Event> newestOfEach;
  std::uint64_t last = 0;
  bool closed = false;
};

} // namespace velmor
