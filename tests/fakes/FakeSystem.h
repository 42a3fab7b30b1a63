#pragma once

#include "platform/Accessibility.h"
#include "platform/Bundle.h"
#include "platform/Environment.h"
#include "platform/FileWatcher.h"
#include "platform/RunningApplications.h"
#include "platform/SystemLog.h"
#include "platform/WindowList.h"
#include "platform/Workspace.h"

#include <map>
#include <string>
#include <vector>

namespace velmor {

/// The value of a key, if the map has one.
template <typename Map, typename Key>
std::optional<typename Map::mapped_type> valueIn(const Map& map, const Key& key) {
  const auto found = map.find(key);
  return found == map.end() ? std::nullopt : std::optional(found->second);
}

/// The smaller system services, each a plain list or map that a test fills and reads.

class FakeEnvironment : public Environment {
public:
  std::optional<std::string> variable(std::string_view name) const override {
    return valueIn(variables, name);
  }
  std::filesystem::path homeDirectory() const override { return home; }
  std::filesystem::path applicationSupportDirectory() const override { return "/home/dj/.config"; }
  std::filesystem::path cacheDirectory() const override { return home / ".cache"; }
  std::optional<std::filesystem::path> musicDirectory() const override { return home / "Music"; }
  std::filesystem::path temporaryDirectory() const override { return "/tmp"; }

  std::map<std::string, std::string, std::less<>> variables;
  std::filesystem::path home = "/home/dj";
};

class FakeBundle : public Bundle {
public:
  std::optional<std::filesystem::path> resource(std::string_view name, std::string_view extension,
                                                std::string_view subdirectory) const override {
    auto path = std::filesystem::path(subdirectory) / name;
    path += "." + std::string(extension);
    return valueIn(resources, path);
  }
  std::optional<std::string> informationEntry(std::string_view key) const override {
    return valueIn(information, key);
  }

  /// From "Web/index.html" to where it lies.
  std::map<std::filesystem::path, std::filesystem::path> resources;
  std::map<std::string, std::string, std::less<>> information;
};

class FakeLog : public SystemLog {
public:
  void write(std::string_view line) override { lines.emplace_back(line); }
  std::vector<std::string> lines;
};

class FakeApplications : public RunningApplications {
public:
  std::vector<RunningApplication> list() override {
    ++listings;
    return running;
  }
  std::vector<RunningApplication> running;
  int listings = 0;
};

class FakeWindowList : public WindowList {
public:
  std::vector<WindowDescription> list() override { return windows; }
  std::vector<WindowDescription> windows;
};

/// Watches nothing; the test says when something has changed.
class FakeFileWatcher : public FileWatcher {
public:
  std::unique_ptr<FileWatch> watch(const WatchedPlaces& places,
                                   std::function<void()> changed) override {
    watched = places;
    notice = std::move(changed);
    return std::make_unique<FileWatch>();
  }
  WatchedPlaces watched;
  std::function<void()> notice;
};

class FakeWorkspace : public Workspace {
public:
  void openURL(const std::string&) override {}
  void showInFileManager(const std::filesystem::path& file) override { shown.push_back(file); }
  void willTerminate() override { ++announcements; }
  void terminate() override { ++terminations; }
  bool isTerminating() const override { return terminations > 0; }
  int announcements = 0;
  int terminations = 0;
  std::vector<std::filesystem::path> shown;
};

/// Elements are maps of attributes; a process without an element answers every read with
/// `errorCode`.
class FakeAccessibility : public Accessibility {
public:
  class Element : public AccessibilityElement {
  public:
    AccessibilityResult attribute(const std::string& name) override {
      const auto value = valueIn(attributes, name);
      if (!value) return {errorCode, {}};
      return {accessibilityError::success, *value};
    }
    int setAttribute(const std::string& name, const AccessibilityValue& value) override {
      written[name] = value;
      return accessibilityError::success;
    }

    std::map<std::string, AccessibilityValue> attributes;
    std::map<std::string, AccessibilityValue> written;
    int errorCode = accessibilityError::noValue;
  };

  AccessibilityElementPtr application(std::int32_t processIdentifier) override {
    if (const auto found = valueIn(applications, processIdentifier)) return *found;
    auto refusing = std::make_shared<Element>();
    refusing->errorCode = errorCode;
    return refusing;
  }

  std::map<std::int32_t, std::shared_ptr<Element>> applications;
  int errorCode = accessibilityError::noValue;
};

} // namespace velmor
