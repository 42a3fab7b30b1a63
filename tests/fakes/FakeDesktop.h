#pragma once

#include "platform/Application.h"
#include "platform/Desktop.h"
#include "platform/WindowServer.h"
#include "tests/fakes/FakeWindow.h"

namespace velmor {

/// One screen, unless a test attaches more.
class FakeWindowServer : public WindowServer {
public:
  std::shared_ptr<Window> makeWindow(const Rect& content, unsigned styleMask) override {
    return windows.emplace_back(std::make_shared<FakeWindow>(content, styleMask));
  }
  std::shared_ptr<Window> window(const std::string& title) const override {
    for (const auto& window : windows) {
      if (window->name == title) return window;
    }
    return nullptr;
  }
  std::vector<Screen> screens() const override { return attached; }
  Point mouseLocation() const override { return {}; }
  std::unique_ptr<DesktopObservation> observe(DesktopNotification, MainLoop::Work) override {
    return nullptr;
  }

  std::vector<std::shared_ptr<FakeWindow>> windows;
  std::vector<Screen> attached{
      {.frame = {{0, 0}, {1440, 900}}, .visibleFrame = {{0, 0}, {1440, 875}}}};
};

/// An application whose messages to the user a test reads.
class FakeApplication : public Application {
public:
  bool handOverToRunningInstance() override { return false; }
  void setDelegate(std::weak_ptr<ApplicationDelegate>) override {}
  void setMainMenu(std::vector<MenuItem>) override {}
  void activateIgnoringOtherApps() override {}
  void runAlert(const std::string& message) override { alerts.push_back(message); }

  std::vector<std::string> alerts;
};

struct FakeDesktop {
  FakeWindowServer windows;
  FakeApplication application;
  Desktop desktop{windows, application};
};

} // namespace velmor
