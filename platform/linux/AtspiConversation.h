#pragma once

#include "platform/linux/AtspiBus.h"

namespace velmor {

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
