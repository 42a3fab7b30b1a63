#pragma once

#include "platform/linux/BusExchange.h"

#include <cstdint>
#include <optional>

namespace velmor {

/// The accessibility bus: where programs offer what their windows show. Any thread.
class AtspiBus {
public:
  /// How long a program may leave a call without an answer before it counts as hung.
  static constexpr std::chrono::milliseconds patience{2000};

  /// Null when the session bus with this address knows of no accessibility bus.
  [[nodiscard]] static std::shared_ptr<AtspiBus> open(const std::string& sessionAddress,
                                                      const std::stop_token& quit);

  AtspiBus(BusConnectionPtr sessionBus, BusConnectionPtr accessibilityBus,
           std::stop_token quitToken);

  [[nodiscard]] bool isOpen() const;

  /// Whether programs are told to offer what their windows show.
  [[nodiscard]] bool isSwitchedOn() const;

  /// The bus name of the program that runs as this process; nothing when it offers nothing.
  [[nodiscard]] std::optional<std::string> nameOf(std::int32_t process) const;

  /// Makes all calls at once, and waits until `end` at the latest.
  [[nodiscard]] BusExchange exchange(const std::vector<BusCall>& calls, BusWait::Moment end) const;

private:
  [[nodiscard]] std::vector<std::string> registeredNames() const;
  void askForCaches() const;

  BusConnectionPtr session;
  BusConnectionPtr accessibility;
  std::stop_token quit;
};

} // namespace velmor
