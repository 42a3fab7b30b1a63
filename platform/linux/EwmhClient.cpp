#include "platform/linux/EwmhClient.h"

#include "platform/linux/XcbPropertyReader.h"

namespace velmor {

namespace {

/// What is asked of each window.
struct WindowQuery {
  XcbPropertyRequest process;
  XcbPropertyRequest title;
  XcbPropertyRequest oldTitle;
  XcbPropertyRequest windowClass;
  XcbPropertyRequest state;
  XcbPropertyRequest type;
};

WindowQuery ask(const XcbPropertyReader& reader, std::uint32_t window) {
  return {reader.request(window, "_NET_WM_PID"),   reader.request(window, "_NET_WM_NAME"),
          reader.request(window, "WM_NAME"),       reader.request(window, "WM_CLASS"),
          reader.request(window, "_NET_WM_STATE"), reader.request(window, "_NET_WM_WINDOW_TYPE")};
}

/// WM_CLASS holds two texts, each with a NUL at its end: the instance and the class.
std::string classOf(const std::string& property) {
  const auto instanceEnd = property.find('\0');
  return instanceEnd == std::string::npos ? "" : property.substr(instanceEnd + 1).c_str();
}

EwmhClient collect(const XcbPropertyReader& reader, const WindowQuery& query) {
  EwmhClient client;
  const auto process = reader.numbers(query.process);
  if (!process.empty()) client.process = static_cast<std::int32_t>(process.front());
  client.title = reader.text(query.title);
  const auto oldTitle = reader.text(query.oldTitle);
  if (client.title.empty()) client.title = oldTitle;
  client.windowClass = classOf(reader.text(query.windowClass));
  client.hidden = reader.holdsAtom(reader.numbers(query.state), "_NET_WM_STATE_HIDDEN");
  const auto type = reader.numbers(query.type);
  client.belongsToDesktop = reader.holdsAtom(type, "_NET_WM_WINDOW_TYPE_DESKTOP") ||
                            reader.holdsAtom(type, "_NET_WM_WINDOW_TYPE_DOCK");
  return client;
}

} // namespace

std::vector<EwmhClient> readEwmhClients() {
  const XcbPropertyReader reader({"_NET_CLIENT_LIST", "_NET_WM_PID", "_NET_WM_NAME", "WM_NAME",
                                  "WM_CLASS", "_NET_WM_STATE", "_NET_WM_WINDOW_TYPE",
                                  "_NET_WM_STATE_HIDDEN", "_NET_WM_WINDOW_TYPE_DESKTOP",
                                  "_NET_WM_WINDOW_TYPE_DOCK"});
  if (!reader.isConnected()) return {};

  const auto windows = reader.numbers(reader.request(reader.rootWindow(), "_NET_CLIENT_LIST"));
  // All requests go out before the first answer is awaited: one round trip for all windows.
  std::vector<WindowQuery> queries;
  queries.reserve(windows.size());
  for (const auto window : windows)
    queries.push_back(ask(reader, window));
  std::vector<EwmhClient> clients;
  clients.reserve(queries.size());
  for (const auto& query : queries)
    clients.push_back(collect(reader, query));
  return clients;
}

std::vector<std::string> readEwmhTitles(std::int32_t process) {
  std::vector<std::string> titles;
  for (auto& client : readEwmhClients()) {
    if (client.process == process) titles.push_back(std::move(client.title));
  }
  return titles;
}

} // namespace velmor
