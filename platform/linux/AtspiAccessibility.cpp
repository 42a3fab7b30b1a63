#include "platform/linux/AtspiAccessibility.h"

#include "platform/linux/AtspiApplicationElement.h"
#include "platform/linux/AtspiBus.h"
#include "platform/linux/SessionBusAddress.h"

namespace velmor {

namespace {

/// Stands for a program of which nothing can be read.
class UnreadableElement : public AccessibilityElement {
public:
  explicit UnreadableElement(int errorCode) : error(errorCode) {}
  AccessibilityResult attribute(const std::string&) override { return {error}; }
  int setAttribute(const std::string&, const AccessibilityValue&) override { return error; }

private:
  int error;
};

} // namespace

AtspiAccessibility::AtspiAccessibility(const Environment& theEnvironment, std::stop_token quitToken)
    : environment(theEnvironment), quit(std::move(quitToken)) {}

AtspiAccessibility::~AtspiAccessibility() = default;

AccessibilityElementPtr AtspiAccessibility::application(std::int32_t processIdentifier) {
  const auto opened = openBus();
  if (!opened) return std::make_shared<UnreadableElement>(accessibilityError::apiDisabled);
  const auto name = opened->nameOf(processIdentifier);
  if (name) {
    return std::make_shared<AtspiApplicationElement>(
        std::make_shared<AtspiConversation>(opened, *name), processIdentifier);
  }
  // Where it is switched off, programs offer nothing.
  return std::make_shared<UnreadableElement>(opened->isSwitchedOn()
                                                 ? accessibilityError::cannotComplete
                                                 : accessibilityError::apiDisabled);
}

std::shared_ptr<AtspiBus> AtspiAccessibility::openBus() {
  const std::lock_guard lock(mutex);
  if (bus && bus->isOpen()) return bus;
  const auto address = sessionBusAddress(environment);
  bus = address ? AtspiBus::open(*address, quit) : nullptr;
  return bus;
}

} // namespace velmor
