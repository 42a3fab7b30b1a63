#pragma once

#include "platform/linux/DBusConnection.h"

#include <cstdint>
#include <optional>

namespace velmor {

/// The accessibility bus: where programs offer what their windows show.
class AtspiBus {
public:
  /// How long a program may leave a call without an answer before it counts as hung.
  static constexpr std::chrono::milliseconds callDeadline{2000};

  /// Null when this desktop has no accessibility bus.
  [[nodiscard]] static std::shared_ptr<AtspiBus> open(const std::stop_token& stop);

  AtspiBus(std::shared_ptr<DBusConnection> sessionBus,
           std::shared_ptr<DBusConnection> accessibilityBus);

  [[nodiscard]] bool isOpen() const;

  /// Whether programs are told to offer what their windows show.
  [[nodiscard]] bool isSwitchedOn() const;

  /// The bus name of the program that runs as this process; nothing when it offers nothing.
  [[nodiscard]] std::optional<std::string> nameOf(std::int32_t process) const;

  [[nodiscard]] const DBusConnection& connection() const { return *accessibility; }

private:
  void askForCaches() const;

  std::shared_ptr<DBusConnection> session;
  std::shared_ptr<DBusConnection> accessibility;
};

} // namespace velmor
