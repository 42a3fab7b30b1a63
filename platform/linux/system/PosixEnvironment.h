#pragma once

#include "platform/Environment.h"

#include <filesystem>
#include <functional>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>

namespace velmor {

/// The environment of this process. Making it takes the secrets out, so that no child can inherit
/// them; they are answered from memory from then on. Make it before there is any other thread.
class PosixEnvironment final : public Environment {
public:
  PosixEnvironment();

  [[nodiscard]] std::optional<std::string> variable(std::string_view name) const override;
  [[nodiscard]] std::filesystem::path homeDirectory() const override;
  [[nodiscard]] std::filesystem::path applicationSupportDirectory() const override;
  [[nodiscard]] std::filesystem::path cacheDirectory() const override;
  /// As the file user-dirs.dirs names it, else ~/Music.
  [[nodiscard]] std::optional<std::filesystem::path> musicDirectory() const override;
  [[nodiscard]] std::filesystem::path temporaryDirectory() const override;

private:
  mutable std::mutex lock;
  std::map<std::string, std::string, std::less<>> secrets;
};

} // namespace velmor
