#pragma once

#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace velmor {

/// What an installed application says of itself in its desktop entry file.
struct DesktopEntry {
  /// The file's name without its extension, such as "org.mixxx.Mixxx".
  std::string identifier;
  std::string name;
  /// The base name of the program that it starts.
  std::string program;
  /// The class of its windows; "" when it does not say.
  std::string windowClass;
};

class Environment;

/// The applications that are installed. The files are parsed again only after one of their folders
/// has changed. Not safe to use from several threads at once.
class DesktopEntries {
public:
  explicit DesktopEntries(const Environment& environment);

  /// Looks for new and removed applications.
  void refresh();

  /// The application whose windows have this class, in any letter case.
  [[nodiscard]] std::optional<DesktopEntry> forWindowClass(const std::string& windowClass) const;

  /// The application that starts this program.
  [[nodiscard]] std::optional<DesktopEntry> forProgram(const std::string& program) const;

  [[nodiscard]] std::optional<DesktopEntry> forIdentifier(const std::string& identifier) const;

private:
  using FolderTimes = std::map<std::filesystem::path, std::filesystem::file_time_type>;

  void readFolder(const std::filesystem::path& folder, const std::string& identifierPrefix);
  [[nodiscard]] bool foldersChanged() const;
  template <typename Matches>
  [[nodiscard]] std::optional<DesktopEntry> first(const Matches& matches) const;

  /// In the order in which they count.
  std::vector<std::filesystem::path> roots;
  FolderTimes folders;
  std::vector<DesktopEntry> entries;
};

} // namespace velmor
