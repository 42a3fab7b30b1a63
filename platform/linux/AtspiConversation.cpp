#include "platform/linux/AtspiConversation.h"

#include <algorithm>

namespace velmor {

namespace {

/// More at once would let a slow program look like a hung one.
constexpr std::size_t callsAtOnce = 512;

} // namespace

AtspiConversation::AtspiConversation(std::shared_ptr<AtspiBus> accessibilityBus,
                                     std::string programName)
    : bus(std::move(accessibilityBus))
    , name(std::move(programName))
    , end(std::chrono::steady_clock::now() + budget) {}

bool AtspiConversation::isOver() const {
  return hung || std::chrono::steady_clock::now() >= end;
}

std::vector<DBusValue> AtspiConversation::exchange(const std::vector<DBusCall>& calls) {
  std::vector<DBusValue> values;
  values.reserve(calls.size());
  while (values.size() < calls.size() && !isOver()) {
    const auto first = calls.begin() + static_cast<std::ptrdiff_t>(values.size());
    const auto count = std::min(callsAtOnce, calls.size() - values.size());
    const std::vector<DBusCall> batch(first, first + static_cast<std::ptrdiff_t>(count));
    for (auto& answer : bus->connection().exchange(batch, AtspiBus::callDeadline)) {
      hung = hung || answer.timedOut;
      values.push_back(std::move(answer.value));
    }
  }
  values.resize(calls.size());
  return values;
}

} // namespace velmor
