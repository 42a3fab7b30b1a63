#include "platform/linux/EwmhWindowList.h"

#include "platform/linux/EwmhClient.h"

namespace velmor {

std::vector<WindowDescription> EwmhWindowList::onScreen() {
  std::vector<WindowDescription> windows;
  for (auto& client : readEwmhClients()) {
    if (client.hidden || client.belongsToDesktop) continue;
    windows.push_back({client.process, std::move(client.title)});
  }
  return windows;
}

} // namespace velmor
