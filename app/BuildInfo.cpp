#include "app/BuildInfo.h"

#include "platform/Bundle.h"
#include "platform/Clock.h"

#include <unicode/smpdtfmt.h>

#include <chrono>

namespace velmor {

namespace {

std::string formatted(Clock::TimePoint moment) {
  UErrorCode status = U_ZERO_ERROR;
  const icu::SimpleDateFormat format("dd.MM.yyyy", icu::Locale::getDefault(), status);
  const auto milliseconds =
      std::chrono::duration<double, std::milli>(moment.time_since_epoch()).count();
  icu::UnicodeString text;
  if (U_SUCCESS(status)) format.format(milliseconds, text);
  std::string result;
  return text.toUTF8String(result);
}

} // namespace

const std::string& BuildInfo::version() {
  if (!knownVersion) {
    knownVersion = platform.bundle.informationEntry("CFBundleShortVersionString").value_or("1.0.0");
  }
  return *knownVersion;
}

const std::string& BuildInfo::buildDate() {
  if (!knownDate) {
    const auto entry = platform.bundle.informationEntry("VelmorBuildDate").value_or("");
    knownDate = entry.empty() ? formatted(platform.clock.now()) : entry;
  }
  return *knownDate;
}

} // namespace velmor
