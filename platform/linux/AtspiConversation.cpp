#include "platform/linux/AtspiConversation.h"

#include <algorithm>
#include <iterator>

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

std::vector<VariantPtr> AtspiConversation::exchange(std::vector<BusCall> calls) {
  std::vector<VariantPtr> replies;
  replies.reserve(calls.size());
  while (replies.size() < calls.size() && !isOver()) {
    const auto first = calls.begin() + static_cast<std::ptrdiff_t>(replies.size());
    const auto count = std::min(callsAtOnce, calls.size() - replies.size());
    const std::vector<BusCall> batch(
        std::make_move_iterator(first),
        std::make_move_iterator(first + static_cast<std::ptrdiff_t>(count)));
    const auto patienceEnds = std::chrono::steady_clock::now() + AtspiBus::patience;
    auto result = bus->exchange(batch, std::min(end, patienceEnds));
    hung = !result.isComplete;
    std::ranges::move(result.replies, std::back_inserter(replies));
  }
  replies.resize(calls.size());
  return replies;
}

VariantPtr AtspiConversation::ask(BusCall call) {
  std::vector<BusCall> calls;
  calls.push_back(std::move(call));
  return std::move(exchange(std::move(calls)).front());
}

} // namespace velmor
