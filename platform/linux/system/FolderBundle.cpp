#include "platform/linux/system/FolderBundle.h"

#include "platform/linux/system/FileDescriptor.h"

#include <nlohmann/json.hpp>

namespace velmor {

namespace fs = std::filesystem;

namespace {

constexpr std::size_t longestInformation = std::size_t{1} << 20;

std::map<std::string, std::string, std::less<>> readInformation(const fs::path& path) {
  std::map<std::string, std::string, std::less<>> entries;
  const auto json =
      nlohmann::json::parse(readRegularFile(path, longestInformation).value_or(""), nullptr, false);
  if (!json.is_object()) return entries;
  for (const auto& [key, value] : json.items()) {
    if (value.is_string()) entries.emplace(key, value.get<std::string>());
  }
  return entries;
}

} // namespace

FolderBundle::FolderBundle(fs::path folder)
    : root(std::move(folder)), information(readInformation(root / "Info.json")) {}

fs::path FolderBundle::folderOfExecutable(const fs::path& executable) {
  const auto place = executable.parent_path();
  auto inBuildTree = place / "share" / "velmor";
  std::error_code ignored;
  if (fs::is_directory(inBuildTree, ignored)) return inBuildTree;
  return place.parent_path() / "share" / "velmor";
}

fs::path FolderBundle::runningExecutable() {
  std::error_code ignored;
  return fs::read_symlink("/proc/self/exe", ignored);
}

std::optional<fs::path> FolderBundle::resource(std::string_view name, std::string_view extension,
                                               std::string_view subdirectory) const {
  std::string fileName(name);
  if (!extension.empty()) fileName.append(".").append(extension);
  const auto path = root / subdirectory / fileName;
  std::error_code ignored;
  if (!fs::is_regular_file(path, ignored)) return std::nullopt;
  return path;
}

std::optional<std::string> FolderBundle::informationEntry(std::string_view key) const {
  const auto entry = information.find(key);
  if (entry == information.end()) return std::nullopt;
  return entry->second;
}

} // namespace velmor
