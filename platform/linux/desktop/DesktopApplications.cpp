#include "platform/linux/desktop/DesktopApplications.h"

#include "platform/linux/desktop/EwmhWindowList.h"
#include "platform/linux/glib/GlibHandles.h"
#include "platform/linux/media/MprisBus.h"
#include "platform/linux/media/MprisPlayer.h"
#include "platform/linux/system/ProcessNames.h"

#include <glib.h>

#include <algorithm>
#include <initializer_list>
#include <optional>
#include <string>
#include <vector>

namespace velmor {

namespace {

constexpr Seconds playersDeadline{2};

/// What is known of a process that counts as an application.
struct Evidence {
  std::int32_t process = 0;
  std::string windowClass;
  std::optional<MprisPlayer> player;
};

Evidence& evidenceOf(std::int32_t process, std::vector<Evidence>& all) {
  const auto found = std::ranges::find(all, process, &Evidence::process);
  return found != all.end() ? *found : all.emplace_back(Evidence{process, "", {}});
}

std::vector<Evidence> collect(const std::vector<EwmhClient>& windows,
                              const std::vector<MprisPlayer>& players) {
  std::vector<Evidence> all;
  for (const auto& window : windows) {
    if (window.process <= 0 || window.belongsToDesktop) continue;
    auto& evidence = evidenceOf(window.process, all);
    if (evidence.windowClass.empty()) evidence.windowClass = window.windowClass;
  }
  for (const auto& player : players) {
    if (player.process > 0) evidenceOf(player.process, all).player = player;
  }
  return all;
}

std::string lowercased(const std::string& text) {
  return takeText(g_ascii_strdown(text.c_str(), -1));
}

std::optional<DesktopEntry> entryFor(const Evidence& evidence, const ProcessNames& names,
                                     const DesktopEntries& entries) {
  if (auto entry = entries.forWindowClass(evidence.windowClass)) return entry;
  const bool namesEntry = evidence.player && evidence.player->desktopEntry;
  if (namesEntry) {
    if (auto entry = entries.forIdentifier(*evidence.player->desktopEntry)) return entry;
  }
  // A script must not be taken for its interpreter, which may well have an entry of its own.
  const bool isHost = !evidence.windowClass.empty() || names.areDifferent();
  return isHost ? std::nullopt : entries.forProgram(names.program);
}

std::string firstGiven(std::initializer_list<std::string> texts) {
  const auto given = std::ranges::find_if(texts, [](const auto& text) { return !text.empty(); });
  return given == texts.end() ? "" : *given;
}

RunningApplication describe(const Evidence& evidence, const ProcessNames& names,
                            const DesktopEntry& entry) {
  const auto identity = evidence.player ? evidence.player->identity.value_or("") : "";
  const auto chosenName = names.areDifferent() ? names.shown : "";
  return {.bundleIdentifier =
              firstGiven({entry.identifier, lowercased(evidence.windowClass), names.program}),
          .localizedName = firstGiven(
              {entry.name, identity, chosenName, evidence.windowClass, names.program, names.shown}),
          .processIdentifier = evidence.process,
          .terminated = false};
}

} // namespace

DesktopApplications::DesktopApplications(const Environment& environment, MprisBusSource& mprisBuses)
    : buses(mprisBuses), entries(environment) {}

std::vector<RunningApplication> DesktopApplications::list() {
  const auto bus = buses.current();
  auto players = bus ? bus->players(playersDeadline) : std::nullopt;
  const auto all = collect(readEwmhClients(), players.value_or(std::vector<MprisPlayer>()));

  const std::lock_guard guard(mutex);
  entries.refresh();
  std::vector<RunningApplication> applications;
  for (const auto& evidence : all) {
    const auto names = ProcessNames::of(evidence.process);
    if (!names) continue;
    const auto entry = entryFor(evidence, *names, entries).value_or(DesktopEntry());
    applications.push_back(describe(evidence, *names, entry));
  }
  return applications;
}

} // namespace velmor
