#pragma once

namespace velmor {

class Application;
class WindowServer;

/// What a program with a window asks for beside a Platform. A plain record of references, like it.
struct Desktop {
  WindowServer& windows;
  Application& application;
};

} // namespace velmor
