#pragma once

#include "platform/Workspace.h"
#include "platform/linux/loop/GlibMainLoop.h"

#include <stop_token>

namespace velmor {

class SystemLog;

/// The desktop as GIO knows it.
class GioWorkspace final : public Workspace {
public:
  /// `terminate` requests `quitSource` to stop and ends the loop.
  GioWorkspace(GlibMainLoop& mainLoop, std::stop_source quitSource, SystemLog& systemLog);

  void openURL(const std::string& url) override;
  void terminate() override;
  [[nodiscard]] bool isTerminating() const override { return quit.stop_requested(); }

private:
  GlibMainLoop& loop;
  std::stop_source quit;
  SystemLog& log;
};

/// True for a text that begins with a scheme and a colon.
[[nodiscard]] bool hasScheme(const std::string& url);

} // namespace velmor
