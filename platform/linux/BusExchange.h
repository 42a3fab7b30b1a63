#pragma once

#include "platform/linux/BusWait.h"

#include <vector>

namespace velmor {

/// What came of several calls that were made at once.
struct BusExchange {
  /// In the order of the calls; null for a call that failed.
  std::vector<VariantPtr> replies;
  /// False when somebody left a call without an answer, which is not the same as refusing it.
  bool isComplete = false;

  /// Makes the calls and waits for their answers until this moment, or until stop is requested.
  /// Any thread.
  [[nodiscard]] static BusExchange make(const BusConnectionPtr& connection,
                                        const std::vector<BusCall>& calls, BusWait::Moment end,
                                        const std::stop_token& stop);
};

} // namespace velmor
