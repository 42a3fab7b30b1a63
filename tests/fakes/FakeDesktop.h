#pragma once

#include "platform/Application.h"
#include "platform/Desktop.h"
#include "platform/WindowServer.h"
#include "tests/fakes/FakeWindow.h"

namespace velmor {

/// One screen, and a mouse that a test moves.
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
  std::unique_ptr<DesktopObservation> observe(DesktopNotification notification,
                                              MainLoop::Work work) override {
    const auto position = observers.emplace(notification, std::move(work));
    return std::make_unique<Observation>(*this, position);
  }
  void notify(DesktopNotification notification) {
    const auto [begin, end] = observers.equal_range(notification);
    for (auto observer = begin; observer != end; ++observer)
      observer->second();
  }

  std::vector<std::shared_ptr<FakeWindow>> windows;
  std::vector<Screen> attached{
      {.frame = {{0, 0}, {1440, 900}}, .visibleFrame = {{0, 0}, {1440, 875}}}};
  Point mouse;
  std::multimap<DesktopNotification, MainLoop::Work> observers;

private:
  class Observation : public DesktopObservation {
  public:
    Observation(FakeWindowServer& observed, decltype(observers)::iterator registered)
        : server(observed), position(registered) {}
    Observation(const Observation&) = delete;
    Observation& operator=(const Observation&) = delete;
    ~Observation() override { server.observers.erase(position); }

  private:
    FakeWindowServer& server;
    decltype(observers)::iterator position;
  };
};

class FakeApplication : public Application {
public:
  bool handOverToRunningInstance() override { return runsAlready; }
  void setDelegate(std::weak_ptr<ApplicationDelegate> heard) override {
    delegate = std::move(heard);
  }
  void setMainMenu(std::vector<MenuItem> items) override { menu = std::move(items); }
  void activateIgnoringOtherApps() override { ++activations; }
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
