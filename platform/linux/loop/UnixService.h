#pragma once

#include "platform/Environment.h"
#include "platform/LocalService.h"
#include "platform/MainLoop.h"
#include "platform/linux/system/FileDescriptor.h"

#include <filesystem>

namespace velmor {

/// A socket in the user's runtime folder ($XDG_RUNTIME_DIR/velmor.sock), for this user alone.
/// Without such a folder there is none. Both outlive the service.
class UnixService final : public LocalService {
public:
  UnixService(const Environment& theEnvironment, MainLoop& mainLoop)
      : environment(theEnvironment), loop(mainLoop) {}
  UnixService(const UnixService&) = delete;
  UnixService& operator=(const UnixService&) = delete;
  ~UnixService() override;

  bool offer(std::function<void(std::shared_ptr<LocalConnection>)> onConnection) override;
  [[nodiscard]] std::shared_ptr<LocalConnection> connect() override;

private:
  void accept();

  const Environment& environment;
  MainLoop& loop;
  /// What is offered; no descriptor when nothing is.
  FileDescriptor listening;
  std::filesystem::path path;
  unsigned source = 0;
  std::function<void(std::shared_ptr<LocalConnection>)> handler;
};

} // namespace velmor
