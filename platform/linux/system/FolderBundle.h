#pragma once

#include "platform/Bundle.h"

#include <filesystem>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace velmor {

/// A bundle in a folder: resources are files in it, information entries the texts in its
/// "Info.json".
class FolderBundle final : public Bundle {
public:
  explicit FolderBundle(std::filesystem::path folder);

  /// Where the resources of an executable lie: beside it in the build tree, else installed.
  [[nodiscard]] static std::filesystem::path
  folderOfExecutable(const std::filesystem::path& executable);

  /// The file that this process runs.
  [[nodiscard]] static std::filesystem::path runningExecutable();

  [[nodiscard]] std::optional<std::filesystem::path>
  resource(std::string_view name, std::string_view extension,
           std::string_view subdirectory) const override;
  [[nodiscard]] std::optional<std::string> informationEntry(std::string_view key) const override;

private:
  std::filesystem::path root;
  std::map<std::string, std::string, std::less<>> information;
};

} // namespace velmor
