#pragma once

#include "platform/Workspace.h"

#include <stop_token>
#include <string>
#include <vector>

namespace velmor {

class EndDeadline;
class Environment;
class GlibMainLoop;
class SystemLog;

/// The desktop as GIO knows it.
class GioWorkspace final : public Workspace {
public:
  /// `terminate` requests `quitSource` to stop and ends the loop. What is opened does not inherit
  /// the environment variables named in `ownVariables`.
  GioWorkspace(GlibMainLoop& mainLoop, const Environment& environment, std::stop_source quitSource,
               EndDeadline& endDeadline, SystemLog& systemLog,
               std::vector<std::string> ownVariables);

  void openURL(const std::string& url) override;
  void showInFileManager(const std::filesystem::path& file) override;
  void willTerminate() override;
  void terminate() override;
  [[nodiscard]] bool isTerminating() const override { return quit.stop_requested(); }

private:
  GlibMainLoop& loop;
  const Environment& environment;
  std::stop_source quit;
  EndDeadline& deadline;
  SystemLog& log;
  std::vector<std::string> hidden;
};

} // namespace velmor
