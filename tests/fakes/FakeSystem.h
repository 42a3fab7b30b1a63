#pragma once

#include "platform/Accessibility.h"
#include "platform/Bundle.h"
#include "platform/Environment.h"
#include "platform/RunningApplications.h"
#include "platform/SystemLog.h"
#include "platform/WindowList.h"
#include "platform/Workspace.h"

#include <map>
#include <string>
#include <vector>

namespace velmor {

/// The smaller system services, each a plain list or map that a test fills and reads.

class FakeEnvironment : public Environment {
public:
  std::optional<std::string> variable(std::string_view name) const override {
    const auto found = variables.find(name);
    return found == variables.end() ? std::nullopt : std::optional(found->second);
  }
  std::filesystem::path homeDirectory() const override { return home; }
  std::filesystem::path applicationSupportDirectory() const override { return "/home/dj/.config"; }
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
    const auto found = resources.find(path);
    return found == resources.end() ? std::nullopt : std::optional(found->second);
  }
  std::optional<std::string> informationEntry(std::string_view key) const override {
    const auto found = information.find(key);
    return found == information.end() ? std::nullopt : std::optional(found->second);
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
  std::vector<RunningApplication> list() override { return running; }
  std::vector<RunningApplication> running;
};

class FakeWindowList : public WindowList {
public:
  std::vector<WindowDescription> onScreen() override { return windows; }
  std::vector<WindowDescription> windows;
};

class FakeWorkspace : public Workspace {
public:
  void openURL(const std::string& url) override { opened.push_back(url); }
  void terminate() override { ++terminations; }
  bool isTerminating() const override { return terminations > 0; }
  std::vector<std::string> opened;
  int terminations = 0;
};

/// Elements are maps of attributes; a process without an element answers every read with
/// `errorCode`.
class FakeAccessibility : public Accessibility {
public:
  class Element : public AccessibilityElement {
  public:
    AccessibilityResult attribute(const std::string& name) override {
      const auto found = attributes.find(name);
      if (found == attributes.end()) return {errorCode, {}};
      return {accessibilityError::success, found->second};
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
    const auto found = applications.find(processIdentifier);
    if (found != applications.end()) return found->second;
    auto refusing = std::make_shared<Element>();
    refusing->errorCode = errorCode;
    return refusing;
  }

  std::map<std::int32_t, std::shared_ptr<Element>> applications;
  int errorCode = accessibilityError::noValue;
};

} // namespace velmor
