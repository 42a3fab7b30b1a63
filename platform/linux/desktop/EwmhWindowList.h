#pragma once

#include "platform/WindowList.h"
#include "platform/linux/desktop/WindowProperties.h"

#include <cstdint>
#include <string>
#include <vector>

namespace velmor {

/// The clients in the order of a `WindowList`, given the lowest first.
[[nodiscard]] std::vector<WindowDescription> frontFirst(std::vector<EwmhClient> stack);

/// The window list of an X server's window manager. A minimised program still plays: its window
/// counts.
class EwmhWindowList final : public WindowList {
public:
  /// The properties must outlive the list.
  explicit EwmhWindowList(const WindowProperties& windowProperties)
      : properties(windowProperties) {}

  [[nodiscard]] std::vector<WindowDescription> list() override;

private:
  const WindowProperties& properties;
};

} // namespace velmor
