#include "platform/linux/desktop/EwmhWindowList.h"

#include <utility>

namespace velmor {

std::vector<EwmhClient> readEwmhClients() {
  const WindowProperties properties;
  return properties.describe(properties.clients());
}

std::vector<std::string> readEwmhTitles(std::int32_t process) {
  std::vector<std::string> titles;
  for (auto& client : readEwmhClients()) {
    if (client.process == process) titles.push_back(std::move(client.title));
  }
  return titles;
}

std::vector<WindowDescription> EwmhWindowList::onScreen() {
  std::vector<WindowDescription> windows;
  for (auto& client : readEwmhClients()) {
    if (client.hidden || client.belongsToDesktop) continue;
    windows.push_back({client.process, std::move(client.title)});
  }
  return windows;
}

} // namespace velmor
