#pragma once

#include "platform/Geometry.h"

#include <cstdint>
#include <memory>
#include <string>
#include <variant>
#include <vector>

namespace velmor {

class AccessibilityElement;
using AccessibilityElementPtr = std::shared_ptr<AccessibilityElement>;
using AccessibilityValue = std::variant<std::string, bool, Point, Size, AccessibilityElementPtr,
                                        std::vector<AccessibilityElementPtr>>;

namespace accessibilityError {
inline constexpr int success = 0;
inline constexpr int failure = -25200;
inline constexpr int cannotComplete = -25204;
inline constexpr int attributeUnsupported = -25205;
/// The Accessibility interface is switched off for this process.
inline constexpr int apiDisabled = -25211;
inline constexpr int noValue = -25212;
} // namespace accessibilityError

/// An answer to a read; `value` counts only when `error` is `accessibilityError::success`.
struct AccessibilityResult {
  int error = accessibilityError::failure;
  AccessibilityValue value{};
};

/// An application, or something in one of its windows.
class AccessibilityElement {
public:
  virtual ~AccessibilityElement() = default;

  /// Reads "AXTitle", "AXChildren", "AXPosition" and the like. Positions are screen coordinates
  /// with the origin at the top left of the main screen.
  [[nodiscard]] virtual AccessibilityResult attribute(const std::string& name) = 0;

  /// Sets an attribute; gives an error code.
  virtual int setAttribute(const std::string& name, const AccessibilityValue& value) = 0;
};

/// Reading other applications' windows. Any thread; an element stays on the thread that made it.
class Accessibility {
public:
  virtual ~Accessibility() = default;
  [[nodiscard]] virtual AccessibilityElementPtr application(std::int32_t processIdentifier) = 0;
};

} // namespace velmor
