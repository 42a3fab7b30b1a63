#include "platform/linux/BusExchange.h"

namespace velmor {

BusExchange BusExchange::make(const BusConnectionPtr& connection, const std::vector<BusCall>& calls,
                              BusWait::Moment end, const std::stop_token& stop) {
  BusExchange exchange;
  exchange.replies.resize(calls.size());
  auto missing = calls.size();
  BusWait wait(end, stop);
  for (std::size_t index = 0; index < calls.size(); ++index) {
    wait.call(connection, calls[index], [&exchange, &missing, index](VariantPtr reply) {
      exchange.replies[index] = std::move(reply);
      --missing;
    });
  }
  exchange.isComplete = wait.wait([&] { return missing == 0; });
  return exchange;
}

} // namespace velmor
