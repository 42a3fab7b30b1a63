#include "platform/linux/desktop/EwmhWindowList.h"

#include <glib.h>
#include <xcb/xcb.h>

#include <algorithm>
#include <cstdlib>

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

namespace {

struct FreeReply {
  void operator()(void* reply) const { std::free(reply); } // NOLINT: xcb replies are malloc'ed
};
template <typename Reply>
using ReplyPointer = std::unique_ptr<Reply, FreeReply>;

using PropertyReply = ReplyPointer<xcb_get_property_reply_t>;

/// In 32-bit units, as the protocol counts; longer properties are cut.
constexpr std::uint32_t propertyLimit = 64 * 1024;

/// Every Latin-1 byte is the code point of its number.
std::string fromLatin1(std::string_view bytes) {
  std::string text;
  for (const auto character : bytes) {
    const auto byte = static_cast<unsigned char>(character);
    if (byte < 0x80) {
      text += character;
    } else {
      text += static_cast<char>(0xc0 | (byte >> 6));
      text += static_cast<char>(0x80 | (byte & 0x3f));
    }
  }
  return text;
}

PropertyReply reply(xcb_connection_t* connection, XcbPropertyRequest request) {
  // A window that has gone meanwhile answers with an error, which counts as no answer.
  xcb_generic_error_t* error = nullptr;
  PropertyReply answer(xcb_get_property_reply(connection, {request.sequence}, &error));
  std::free(error); // NOLINT: xcb errors are malloc'ed
  return answer;
}

} // namespace

XcbPropertyReader::XcbPropertyReader(const std::vector<std::string>& atomNames)
    : connection(xcb_connect(nullptr, nullptr), xcb_disconnect) {
  if (!isConnected()) return;
  root = xcb_setup_roots_iterator(xcb_get_setup(connection.get())).data->root;
  lookUpAtoms(atomNames);
}

bool XcbPropertyReader::isConnected() const {
  return xcb_connection_has_error(connection.get()) == 0;
}

std::uint32_t XcbPropertyReader::rootWindow() const {
  return root;
}

void XcbPropertyReader::lookUpAtoms(const std::vector<std::string>& atomNames) {
  std::vector<xcb_intern_atom_cookie_t> cookies;
  cookies.reserve(atomNames.size());
  for (const auto& name : atomNames) {
    cookies.push_back(xcb_intern_atom(connection.get(), 1, static_cast<std::uint16_t>(name.size()),
                                      name.c_str()));
  }
  for (std::size_t index = 0; index < cookies.size(); ++index) {
    const ReplyPointer<xcb_intern_atom_reply_t> answer(
        xcb_intern_atom_reply(connection.get(), cookies[index], nullptr));
    atoms[atomNames[index]] = answer ? answer->atom : xcb_atom_t{XCB_ATOM_NONE};
  }
}

XcbPropertyRequest XcbPropertyReader::request(std::uint32_t window,
                                              std::string_view property) const {
  const auto cookie = xcb_get_property(connection.get(), 0, window, atoms.find(property)->second,
                                       XCB_GET_PROPERTY_TYPE_ANY, 0, propertyLimit);
  return {cookie.sequence};
}

std::vector<std::uint32_t> XcbPropertyReader::numbers(XcbPropertyRequest request) const {
  const auto answer = reply(connection.get(), request);
  if (!answer || answer->format != 32) return {};
  const auto* first = static_cast<const std::uint32_t*>(xcb_get_property_value(answer.get()));
  return {first, first + answer->value_len};
}

std::string XcbPropertyReader::text(XcbPropertyRequest request) const {
  const auto answer = reply(connection.get(), request);
  if (!answer || answer->format != 8) return "";
  std::string bytes(static_cast<const char*>(xcb_get_property_value(answer.get())),
                    answer->value_len);
  if (answer->type == XCB_ATOM_STRING) return fromLatin1(bytes);
  if (g_utf8_validate_len(bytes.data(), bytes.size(), nullptr)) return bytes;
  // Compound text switches its encoding with escape sequences; without any it is Latin-1 too.
  return bytes.find('\x1b') == std::string::npos ? fromLatin1(bytes) : "";
}

bool XcbPropertyReader::holdsAtom(const std::vector<std::uint32_t>& atomList,
                                  std::string_view atomName) const {
  const auto atom = atoms.find(atomName)->second;
  return atom != XCB_ATOM_NONE && std::ranges::find(atomList, atom) != atomList.end();
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
