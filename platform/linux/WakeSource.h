#pragma once

#include <chrono>
#include <functional>

struct _GSource;

namespace velmor {

/// A source of the default main context that calls `onReady` on the main thread once its time has
/// come. It begins disarmed, and is disarmed again before each call.
class WakeSource {
public:
  using TimePoint = std::chrono::steady_clock::time_point;

  /// `onReady` must not destroy the source. With `reentrant` it is also called from a loop that
  /// runs inside a call of it.
  WakeSource(std::function<void()> onReady, bool reentrant);
  WakeSource(const WakeSource&) = delete;
  WakeSource& operator=(const WakeSource&) = delete;
  ~WakeSource();

  /// Calls as soon as possible. Any thread.
  void arm();

  /// Calls at this moment. Any thread.
  void armAt(TimePoint moment);

private:
  struct Source;

  std::function<void()> ready;
  _GSource* source;
};

} // namespace velmor
