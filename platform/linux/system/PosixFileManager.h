#pragma once

#include "platform/FileManager.h"

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace velmor {

/// The file system.
class PosixFileManager final : public FileManager {
public:
  void createFolder(const std::filesystem::path& path, unsigned permissions) override;
  [[nodiscard]] std::optional<std::string> read(const std::filesystem::path& path) const override;
  void writeAtomically(const std::filesystem::path& path, std::string_view bytes) override;
  void setPermissions(const std::filesystem::path& path, unsigned permissions) override;
  void move(const std::filesystem::path& from, const std::filesystem::path& to) override;
  void remove(const std::filesystem::path& path) override;
  [[nodiscard]] std::unique_ptr<FolderHold> hold(const std::filesystem::path& folder) override;
  [[nodiscard]] bool exists(const std::filesystem::path& path) const override;
  [[nodiscard]] bool isExecutable(const std::filesystem::path& path) const override;
  [[nodiscard]] std::optional<std::uint64_t> size(const std::filesystem::path& path) const override;
  [[nodiscard]] std::vector<FolderEntry> list(const std::filesystem::path& folder) const override;
};

} // namespace velmor
