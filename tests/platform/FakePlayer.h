#pragma once

#include "platform/linux/GlibHandles.h"

#include <atomic>
#include <string>

namespace velmor {

/// A media player on a bus. It answers on GDBus's own thread, so it needs no main loop.
class FakePlayer {
public:
  /// `properties` and `identity` are dictionaries in GVariant's text form; without an identity
  /// the player says that it has no such interface.
  FakePlayer(const std::string& address, const std::string& name, std::string properties,
             std::string identity = "");
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
  std::string program;
  std::atomic<bool> hanging = false;
  std::atomic<int> unanswered = 0;
  unsigned filter = 0;
  BusConnectionPtr connection;
};

} // namespace velmor
