#pragma once

#include "platform/linux/bus/SessionBus.h"

#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

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

/// Calls to one program. Once the program has left a call unanswered nothing more is asked of it,
/// so that a hung program costs one deadline in all.
class AtspiConversation {
public:
  /// The longest that one look at a program may take, however slowly it answers.
  static constexpr std::chrono::seconds budget{6};

  AtspiConversation(std::shared_ptr<AtspiBus> accessibilityBus, std::string programName);

  /// Makes all calls at once. The answers stand in the order of the calls; null for a call that
  /// failed.
  [[nodiscard]] std::vector<VariantPtr> exchange(std::vector<BusCall> calls);

  /// Makes one call; null when it fails.
  [[nodiscard]] VariantPtr ask(BusCall call);

  /// Whether the program has stopped answering.
  [[nodiscard]] bool isOver() const;

  /// The program's name on the bus.
  [[nodiscard]] const std::string& program() const { return name; }

private:
  std::shared_ptr<AtspiBus> bus;
  std::string name;
  BusWait::Moment end;
  bool hung = false;
};

} // namespace velmor
