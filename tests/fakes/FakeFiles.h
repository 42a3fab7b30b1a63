#pragma once

#include "platform/FileManager.h"

#include <map>
#include <set>

namespace velmor {

/// Files in memory. A test may make any write fail.
class FakeFiles : public FileManager {
public:
  using Path = std::filesystem::path;
  struct File {
    std::string bytes;
    unsigned permissions = 0644;
    std::chrono::system_clock::time_point modified{};
  };

  void createFolder(const Path& path, unsigned permissions) override {
    failWith(writeFailure);
    folders.emplace(path, permissions);
  }
  std::optional<std::string> read(const Path& path) const override {
    const auto found = files.find(path);
    if (found == files.end() || (found->second.permissions & 0400U) == 0) return std::nullopt;
    return found->second.bytes;
  }
  void writeAtomically(const Path& path, std::string_view bytes) override {
    failWith(writeFailure);
    files[path] = {std::string(bytes), 0600};
  }
  void setPermissions(const Path& path, unsigned permissions) override {
    failWith(permissionFailure);
    files[path].permissions = permissions;
  }
  void move(const Path& from, const Path& to) override {
    failWith(writeFailure);
    auto moved = files.extract(from);
    moved.key() = to;
    files.erase(to);
    files.insert(std::move(moved));
  }
  void remove(const Path& path) override {
    const auto isInside = [&](const auto& item) {
      const auto relative = item.first.lexically_relative(path);
      return !relative.empty() && *relative.begin() != "..";
    };
    std::erase_if(files, isInside);
    std::erase_if(folders, isInside);
  }
  std::unique_ptr<FolderHold> hold(const Path& folder) override {
    if (!folders.contains(folder) || held.contains(folder)) return nullptr;
    return std::make_unique<FolderHold>();
  }
  bool exists(const Path& path) const override {
    return files.contains(path) || folders.contains(path);
  }
  bool isExecutable(const Path& path) const override {
    const auto found = files.find(path);
    return found != files.end() && (found->second.permissions & 0100U) != 0;
  }
  std::optional<std::uint64_t> size(const Path& path) const override {
    const auto bytes = read(path);
    return bytes ? std::optional(bytes->size()) : std::nullopt;
  }
  std::vector<FolderEntry> list(const Path& folder) const override {
    std::vector<FolderEntry> entries;
    for (const auto& [path, file] : files) {
      if (path.parent_path() == folder) entries.push_back({path, file.modified});
    }
    for (const auto& [path, permissions] : folders) {
      if (path.parent_path() == folder) entries.push_back({path, std::nullopt});
    }
    return entries;
  }

  std::map<Path, File> files;
  std::map<Path, unsigned> folders;
  /// Folders that another run has.
  std::set<Path> held;
  /// Every write and every folder creation throws FileError with this text while it is not empty.
  std::string writeFailure;
  std::string permissionFailure;

private:
  static void failWith(const std::string& failure) {
    if (!failure.empty()) throw FileError(failure);
  }
};

} // namespace velmor
