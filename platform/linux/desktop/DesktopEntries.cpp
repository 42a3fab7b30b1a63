#include "platform/linux/desktop/DesktopEntries.h"

#include "platform/Environment.h"
#include "platform/linux/glib/GlibHandles.h"
#include "platform/linux/system/FileDescriptor.h"

#include <glib.h>

#include <algorithm>
#include <sstream>

namespace velmor {

namespace {

namespace fs = std::filesystem;

constexpr std::size_t longestEntry = std::size_t{1} << 20;
constexpr auto group = G_KEY_FILE_DESKTOP_GROUP;

std::string value(GKeyFile& file, const char* key) {
  return takeText(g_key_file_get_string(&file, group, key, nullptr));
}

std::string programOf(const std::string& commandLine) {
  char** words = nullptr;
  if (!g_shell_parse_argv(commandLine.c_str(), nullptr, &words, nullptr)) return "";
  const GlibPtr<char*> owner(words);
  return fs::path(words[0]).filename();
}

std::optional<DesktopEntry> readEntry(const fs::path& path, const std::string& identifier) {
  const GlibPtr<GKeyFile> file(g_key_file_new());
  const auto text = readRegularFile(path, longestEntry);
  if (!text || !g_key_file_load_from_data(file.get(), text->data(), text->size(), G_KEY_FILE_NONE,
                                          nullptr)) {
    return std::nullopt;
  }
  if (value(*file, G_KEY_FILE_DESKTOP_KEY_TYPE) != "Application") return std::nullopt;
  return DesktopEntry{identifier, value(*file, G_KEY_FILE_DESKTOP_KEY_NAME),
                      programOf(value(*file, G_KEY_FILE_DESKTOP_KEY_EXEC)),
                      value(*file, G_KEY_FILE_DESKTOP_KEY_STARTUP_WM_CLASS)};
}

bool equalInAnyCase(const std::string& left, const std::string& right) {
  return g_ascii_strcasecmp(left.c_str(), right.c_str()) == 0;
}

fs::file_time_type timeOf(const fs::path& folder) {
  std::error_code error;
  const auto time = fs::last_write_time(folder, error);
  return error ? fs::file_time_type::min() : time;
}

} // namespace

DesktopEntries::DesktopEntries(const Environment& environment) {
  const auto set = [&](const char* name, const std::string& otherwise) {
    const auto value = environment.variable(name).value_or("");
    return value.empty() ? otherwise : value;
  };
  roots.push_back(fs::path(set("XDG_DATA_HOME", environment.homeDirectory() / ".local/share")) /
                  "applications");
  std::istringstream shared(set("XDG_DATA_DIRS", "/usr/local/share:/usr/share"));
  for (std::string folder; std::getline(shared, folder, ':');) {
    if (!folder.empty()) roots.push_back(fs::path(folder) / "applications");
  }
}

void DesktopEntries::refresh() {
  if (!folders.empty() && !foldersChanged()) return;
  folders.clear();
  entries.clear();
  for (const auto& root : roots)
    readFolder(root, "");
}

bool DesktopEntries::foldersChanged() const {
  return std::ranges::any_of(
      folders, [](const auto& folder) { return timeOf(folder.first) != folder.second; });
}

/// A subfolder's name becomes part of the identifiers, joined by a dash.
void DesktopEntries::readFolder(const fs::path& folder, const std::string& identifierPrefix) {
  folders[folder] = timeOf(folder);
  std::error_code error;
  for (fs::directory_iterator file(folder, error), end; file != end; file.increment(error)) {
    const auto& path = file->path();
    if (file->is_directory(error)) {
      // A link to a folder could lead round in a circle.
      if (!file->is_symlink(error)) {
        readFolder(path, identifierPrefix + path.filename().string() + "-");
      }
    } else if (path.extension() == ".desktop") {
      const auto identifier = identifierPrefix + path.stem().string();
      // The user's own folder comes first and replaces what others have installed.
      if (forIdentifier(identifier)) continue;
      if (auto entry = readEntry(path, identifier)) entries.push_back(std::move(*entry));
    }
  }
}

template <typename Matches>
std::optional<DesktopEntry> DesktopEntries::first(const Matches& matches) const {
  const auto found = std::ranges::find_if(entries, matches);
  return found == entries.end() ? std::nullopt : std::optional(*found);
}

std::optional<DesktopEntry> DesktopEntries::forWindowClass(const std::string& windowClass) const {
  if (windowClass.empty()) return std::nullopt;
  auto stated =
      first([&](const auto& entry) { return equalInAnyCase(entry.windowClass, windowClass); });
  if (stated) return stated;
  // Most programs that do not state their class use their own name.
  return first([&](const auto& entry) {
    return entry.windowClass.empty() && (equalInAnyCase(entry.program, windowClass) ||
                                         equalInAnyCase(entry.identifier, windowClass));
  });
}

std::optional<DesktopEntry> DesktopEntries::forProgram(const std::string& program) const {
  if (program.empty()) return std::nullopt;
  return first([&](const auto& entry) { return entry.program == program; });
}

std::optional<DesktopEntry> DesktopEntries::forIdentifier(const std::string& identifier) const {
  if (identifier.empty()) return std::nullopt;
  return first([&](const auto& entry) { return entry.identifier == identifier; });
}

} // namespace velmor
