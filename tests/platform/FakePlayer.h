#pragma once

#include "platform/linux/GlibHandles.h"

#include <atomic>
#include <string>

namespace velmor {

/// A media player on a bus. It answers on GDBus's own thread, so it needs no main loop.
class FakePlayer {
public:
  /// `properties` is a dictionary in GVariant's text form. The player says that it does not have
  /// the interface that would identify it, and without properties that it has none.
  FakePlayer(const std::string& address, const std::string& name, std::string properties);
  FakePlayer(const FakePlayer&) = delete;
  FakePlayer& operator=(const FakePlayer&) = delete;
  ~FakePlayer();

  /// While it hangs it answers nothing.
  void hang(bool hangs) { hanging = hangs; }

  /// Announces a new playback status.
  void announce(const char* status);

  /// How many questions came that it did not answer.
  [[nodiscard]] int ignored() const { return unanswered; }

private:
  struct Bus;

  std::string player;
  std::atomic<bool> hanging = false;
  std::atomic<int> unanswered = 0;
  unsigned filter = 0;
  BusConnectionPtr connection;
};

} // namespace velmor
