#pragma once

#include "platform/Application.h"
#include "platform/Desktop.h"
#include "platform/WindowServer.h"
#include "tests/fakes/FakeWindow.h"

#include <string>
#include <utility>
#include <vector>

namespace velmor {

/// One screen, unless a test attaches more, and a mouse that the test moves.
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
  Point mouseLocation() const override { return mouse; }
  std::unique_ptr<DesktopObservation> observe(DesktopNotification heard,
                                              MainLoop::Work work) override {
    auto observation = std::make_unique<Observation>(std::move(work));
    observers.emplace_back(heard, observation->work);
    return observation;
  }

  /// Tells those who observe it.
  void notify(DesktopNotification notification) const {
    for (const auto& [heard, observer] : observers) {
      const auto work = observer.lock();
      if (work && heard == notification) (*work)();
    }
  }

  Point mouse;
  std::vector<std::shared_ptr<FakeWindow>> windows;
  std::vector<Screen> attached{
      {.frame = {{0, 0}, {1440, 900}}, .visibleFrame = {{0, 0}, {1440, 875}}}};

private:
  struct Observation : DesktopObservation {
    explicit Observation(MainLoop::Work wanted)
        : work(std::make_shared<MainLoop::Work>(std::move(wanted))) {}
    const std::shared_ptr<MainLoop::Work> work;
  };

  std::vector<std::pair<DesktopNotification, std::weak_ptr<MainLoop::Work>>> observers;
};

/// An application whose messages to the user a test reads.
class FakeApplication : public Application {
public:
  bool handOverToRunningInstance() override { return runsAlready; }
  void setDelegate(std::weak_ptr<ApplicationDelegate> heard) override {
    delegate = std::move(heard);
  }
  void setMainMenu(std::vector<MenuItem> items) override { menu = std::move(items); }
  void activateIgnoringOtherApps() override { ++activations; }
  void showAlert(const std::string& message) override { alerts.push_back(message); }
  void runAlert(const std::string& message) override { alerts.push_back(message); }

  bool runsAlready = false;
  std::weak_ptr<ApplicationDelegate> delegate;
  std::vector<MenuItem> menu;
  int activations = 0;
  std::vector<std::string> alerts;
};

struct FakeDesktop {
  FakeWindowServer windows;
  FakeApplication application;
  Desktop desktop{windows, application};
};

} // namespace velmor
