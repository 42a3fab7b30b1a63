#pragma once

#include "platform/Environment.h"
#include "platform/FileManager.h"

#include <map>
#include <set>

namespace velmor {

/// Files in memory. A test may make any write fail.
class FakeFiles : public FileManager {
public:
  struct File {
    std::string bytes;
    unsigned permissions = 0600;
    std::chrono::system_clock::time_point modified{};
  };

  void createFolder(const std::filesystem::path& path, unsigned permissions) override;
  std::optional<std::string> read(const std::filesystem::path& path) const override;
  void writeAtomically(const std::filesystem::path& path, std::string_view bytes) override;
  void setPermissions(const std::filesystem::path& path, unsigned permissions) override;
  void remove(const std::filesystem::path& path) override;
  bool exists(const std::filesystem::path& path) const override;
  bool isExecutable(const std::filesystem::path& path) const override;
  std::optional<std::uint64_t> size(const std::filesystem::path& path) const override;
  std::vector<FolderEntry> list(const std::filesystem::path& folder) const override;

  std::map<std::filesystem::path, File> files;
  std::map<std::filesystem::path, unsigned> folders;
  /// Every write and every folder creation throws FileError with this text while it is not empty.
  std::string writeFailure;
  std::string permissionFailure;
};

} // namespace velmor
