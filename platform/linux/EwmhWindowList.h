#pragma once

#include "platform/WindowList.h"

namespace velmor {

/// The window list of an X server's window manager: what is not minimised and no part of the
/// desktop itself.
class EwmhWindowList : public WindowList {
public:
  std::vector<WindowDescription> onScreen() override;
};

} // namespace velmor
