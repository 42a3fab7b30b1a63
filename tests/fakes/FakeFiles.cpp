#include "tests/fakes/FakeFiles.h"

namespace velmor {

void FakeFiles::createFolder(const std::filesystem::path& path, unsigned permissions) {
  if (!writeFailure.empty()) throw FileError(writeFailure);
  folders.emplace(path, permissions);
}

std::optional<std::string> FakeFiles::read(const std::filesystem::path& path) const {
  const auto found = files.find(path);
  if (found == files.end()) return std::nullopt;
  return found->second.bytes;
}

void FakeFiles::writeAtomically(const std::filesystem::path& path, std::string_view bytes) {
  if (!writeFailure.empty()) throw FileError(writeFailure);
  files[path].bytes = bytes;
}

void FakeFiles::setPermissions(const std::filesystem::path& path, unsigned permissions) {
  if (!permissionFailure.empty()) throw FileError(permissionFailure);
  files[path].permissions = permissions;
}

void FakeFiles::remove(const std::filesystem::path& path) {
  const auto isInside = [&](const auto& item) {
    const auto relative = item.first.lexically_relative(path);
    return !relative.empty() && *relative.begin() != "..";
  };
  std::erase_if(files, isInside);
  std::erase_if(folders, isInside);
}

bool FakeFiles::exists(const std::filesystem::path& path) const {
  return files.contains(path) || folders.contains(path);
}

bool FakeFiles::isExecutable(const std::filesystem::path& path) const {
  const auto found = files.find(path);
  return found != files.end() && (found->second.permissions & 0100U) != 0;
}

std::optional<std::uint64_t> FakeFiles::size(const std::filesystem::path& path) const {
  const auto found = files.find(path);
  if (found == files.end()) return std::nullopt;
  return found->second.bytes.size();
}

std::vector<FolderEntry> FakeFiles::list(const std::filesystem::path& folder) const {
  std::vector<FolderEntry> entries;
  for (const auto& [path, file] : files) {
    if (path.parent_path() == folder) entries.push_back({path, file.modified});
  }
  return entries;
}

} // namespace velmor
