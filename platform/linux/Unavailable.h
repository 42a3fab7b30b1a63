#pragma once

#include "platform/Accessibility.h"
#include "platform/RunningApplications.h"
#include "platform/ScriptHost.h"
#include "platform/WindowList.h"

/// What a system without a desktop answers.
namespace velmor::unavailable {

class Applications final : public RunningApplications {
public:
  [[nodiscard]] std::vector<RunningApplication> list() override { return {}; }
};

class AccessibleElement final : public AccessibilityElement {
public:
  [[nodiscard]] AccessibilityResult attribute(const std::string&) override {
    return {.error = accessibilityError::apiDisabled};
  }
  int setAttribute(const std::string&, const AccessibilityValue&) override {
    return accessibilityError::apiDisabled;
  }
};

class AccessibleApplications final : public Accessibility {
public:
  [[nodiscard]] AccessibilityElementPtr application(std::int32_t) override {
    return std::make_shared<AccessibleElement>();
  }
};

class Windows final : public WindowList {
public:
  [[nodiscard]] std::vector<WindowDescription> onScreen() override { return {}; }
};

class Scripts final : public ScriptHost {
public:
  [[nodiscard]] ChildResult run(const std::string&, const std::string&) override {
    throw LaunchError("No media player can be asked by a script");
  }
};

} // namespace velmor::unavailable
