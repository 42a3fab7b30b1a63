#pragma once

#include "platform/LocalService.h"
#include "platform/MainLoop.h"

#include <memory>
#include <utility>
#include <vector>

namespace velmor {

/// Two ends in memory. Lines arrive through the loop, as they do in truth; one that is `mute` says
/// nothing any more, like a program that hangs.
class FakeLocalService : public LocalService {
public:
  explicit FakeLocalService(MainLoop& mainLoop) : loop(mainLoop) {}

  bool offer(std::function<void(std::shared_ptr<LocalConnection>)> onConnection) override {
    handler = std::move(onConnection);
    return true;
  }
  std::shared_ptr<LocalConnection> connect() override {
    if (!handler) return nullptr;
    ++connections;
    const auto near = std::make_shared<End>(*this);
    const auto far = std::make_shared<End>(*this);
    near->other = far;
    far->other = near;
    loop.post(MainLoop::Lane::Actor, [this, far] {
      if (handler) handler(far);
    });
    return near;
  }

  std::function<void(std::shared_ptr<LocalConnection>)> handler;
  bool mute = false;
  int connections = 0;

private:
  struct End : LocalConnection, std::enable_shared_from_this<End> {
    explicit End(FakeLocalService& theService) : service(theService) {}
    ~End() override {
      service.loop.post(MainLoop::Lane::Actor, [weak = other] {
        const auto left = weak.lock();
        if (left && left->ended) std::exchange(left->ended, nullptr)();
      });
    }
    void read(std::function<void(const std::string&)> onLine,
              std::function<void()> onEnd) override {
      heard = std::move(onLine);
      ended = std::move(onEnd);
    }
    void send(const std::string& line) override {
      if (service.mute) return;
      service.loop.post(MainLoop::Lane::Actor, [weak = other, line] {
        const auto to = weak.lock();
        if (to && to->heard) to->heard(line);
      });
    }
    FakeLocalService& service;
    std::weak_ptr<End> other;
    std::function<void(const std::string&)> heard;
    std::function<void()> ended;
  };

  MainLoop& loop;
};

} // namespace velmor
