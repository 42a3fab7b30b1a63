#pragma once

#include "platform/WindowList.h"

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

struct xcb_connection_t;

namespace velmor {

/// A top-level window that the window manager looks after.
struct EwmhClient {
  /// 0 when the window does not tell.
  std::int32_t process = 0;
  /// The title in UTF-8; "" when there is none.
  std::string title;
  /// The class of WM_CLASS; "" when there is none.
  std::string windowClass;
  /// Minimised, or hidden in another way. It keeps its title.
  bool hidden = false;
  /// A desktop background, a panel or the like.
  bool belongsToDesktop = false;
};

/// All windows of the window manager's client list, oldest first; empty, at once, without an X
/// server. Every call makes its own connection, so any thread may call.
[[nodiscard]] std::vector<EwmhClient> readEwmhClients();

/// The titles of a process's windows, oldest first, minimised or not.
[[nodiscard]] std::vector<std::string> readEwmhTitles(std::int32_t process);

/// A property that has been asked for. It must be read exactly once: a second read of an answer
/// that was already taken waits for ever.
struct XcbPropertyRequest {
  unsigned sequence = 0;
};

/// Reads window properties from the X server of the environment, on a connection of its own.
/// Requests go out without waiting; only reading one waits.
class XcbPropertyReader {
public:
  /// Connects and looks up the atoms of these names; requests may name only these.
  explicit XcbPropertyReader(const std::vector<std::string>& atomNames);

  /// False when there is no X server; nothing else may be called then.
  [[nodiscard]] bool isConnected() const;

  [[nodiscard]] std::uint32_t rootWindow() const;

  [[nodiscard]] XcbPropertyRequest request(std::uint32_t window, std::string_view property) const;

  /// The property's 32-bit numbers; empty when it is missing or of another kind.
  [[nodiscard]] std::vector<std::uint32_t> numbers(XcbPropertyRequest request) const;

  /// The property's text as UTF-8; "" when it is missing or in no encoding that we know.
  [[nodiscard]] std::string text(XcbPropertyRequest request) const;

  /// Whether a property's numbers hold the atom of this name.
  [[nodiscard]] bool holdsAtom(const std::vector<std::uint32_t>& atomList,
                               std::string_view atomName) const;

private:
  void lookUpAtoms(const std::vector<std::string>& atomNames);

  std::unique_ptr<xcb_connection_t, void (*)(xcb_connection_t*)> connection;
  std::uint32_t root = 0;
  std::map<std::string, std::uint32_t, std::less<>> atoms;
};

/// The window list of an X server's window manager: what is not minimised and no part of the
/// desktop itself.
class EwmhWindowList : public WindowList {
public:
  std::vector<WindowDescription> onScreen() override;
};

} // namespace velmor
