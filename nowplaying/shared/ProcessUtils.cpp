#include "nowplaying/shared/ProcessUtils.h"

#include "base/Number.h"
#include "base/Text.h"
#include "platform/ProcessLauncher.h"

#include <algorithm>

namespace velmor {

namespace {

/// Asks pgrep about one name; nothing when it cannot be started.
std::optional<ChildResult> pgrep(const Platform& platform, const std::string& name) {
  try {
    return platform.processes.run({"/usr/bin/pgrep", {"-xi", ProcessUtils::normalize(name)}});
  } catch (const LaunchError&) {
    return std::nullopt;
  }
}

bool matches(const RunningApplication& application, const ApplicationIdentity& identity) {
  if (application.bundleIdentifier == identity.bundleIdentifier) return true;
  if (!identity.identifierFragment.empty() &&
      application.bundleIdentifier.find(identity.identifierFragment) != std::string::npos) {
    return true;
  }
  const auto name = ProcessUtils::normalize(application.localizedName);
  return std::ranges::find(identity.names, name) != identity.names.end();
}

} // namespace

bool ProcessUtils::isRunning(const Platform& platform, const std::vector<std::string>& names) {
  return std::ranges::any_of(names, [&](const std::string& name) {
    const auto result = pgrep(platform, name);
    return result && result->exitStatus == 0;
  });
}

std::string ProcessUtils::normalize(std::string_view name) {
  constexpr std::string_view suffix = ".app";
  auto result = text::lowercased(text::trimmed(name));
  if (result.ends_with(suffix)) result.resize(result.size() - suffix.size());
  return result;
}

std::vector<std::int32_t> ProcessUtils::processIDs(const Platform& platform,
                                                   const std::string& name) {
  std::vector<std::int32_t> identifiers;
  const auto result = pgrep(platform, name);
  if (!result || !text::isValidUtf8(result->output)) return identifiers;
  for (const auto line : text::split(result->output, '\n')) {
    const auto identifier = number::parseInteger<std::int32_t>(text::trimmed(line));
    if (identifier) identifiers.push_back(*identifier);
  }
  return identifiers;
}

std::vector<RunningApplication> ProcessUtils::applications(const Platform& platform,
                                                           const ApplicationIdentity& identity) {
  auto found = platform.applications.list();
  std::erase_if(found, [&](const auto& application) {
    const bool isPassedOver = identity.skipsTerminated && application.terminated;
    return isPassedOver || !matches(application, identity);
  });
  return found;
}

std::optional<RunningApplication> ProcessUtils::application(const Platform& platform,
                                                            const ApplicationIdentity& identity) {
  const auto found = applications(platform, identity);
  return found.empty() ? std::nullopt : std::optional(found.front());
}

} // namespace velmor
