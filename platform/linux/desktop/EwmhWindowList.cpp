#include "platform/linux/desktop/EwmhWindowList.h"

#include <algorithm>
#include <utility>

namespace velmor {

std::vector<WindowDescription> frontFirst(std::vector<EwmhClient> stack) {
  std::erase_if(stack, &EwmhClient::belongsToDesktop);
  std::ranges::reverse(stack);
  std::ranges::stable_partition(stack, [](const auto& client) { return !client.hidden; });
  std::vector<WindowDescription> windows;
  windows.reserve(stack.size());
  for (auto& client : stack)
    windows.push_back({client.process, std::move(client.title)});
  return windows;
}

std::vector<WindowDescription> EwmhWindowList::list() {
  auto windows = properties.stack();
  // Some window managers do not tell the order.
  if (windows.empty()) windows = properties.clients();
  return frontFirst(properties.describe(windows));
}

} // namespace velmor
