#include "platform/linux/desktop/DesktopApplications.h"

#include "platform/linux/glib/GlibHandles.h"
#include "platform/linux/media/MprisBus.h"
#include "platform/linux/system/ProcessTable.h"

#include <glib.h>

#include <algorithm>
#include <initializer_list>
#include <optional>
#include <string>
#include <vector>

namespace velmor {

namespace {

constexpr Seconds playersDeadline{2};

using Evidence = ApplicationEvidence;

void add(const EwmhClient& window, std::vector<Evidence>& all) {
  const auto found = std::ranges::find_if(all, [&](const Evidence& evidence) {
    return evidence.process == window.process &&
           (evidence.windowClass == window.windowClass || evidence.windowClass.empty() ||
            window.windowClass.empty());
  });
  if (found == all.end()) {
    all.push_back({window.process, window.windowClass, {}});
  } else if (found->windowClass.empty()) {
    found->windowClass = window.windowClass;
  }
}

void add(const MprisPlayer& player, std::vector<Evidence>& all) {
  const auto sharesProcess = [&](const Evidence& evidence) {
    return evidence.process == player.process;
  };
  auto owner = std::ranges::find_if(all, [&](const Evidence& evidence) {
    return sharesProcess(evidence) && goesByName(player, evidence.windowClass);
  });
  if (owner == all.end() && std::ranges::count_if(all, sharesProcess) == 1) {
    owner = std::ranges::find_if(all, sharesProcess);
  }
  if (owner == all.end()) {
    all.push_back({player.process, "", player});
  } else {
    owner->player = player;
  }
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

std::vector<ApplicationEvidence> collectEvidence(const std::vector<EwmhClient>& windows,
                                                 const std::vector<MprisPlayer>& players) {
  std::vector<Evidence> all;
  for (const auto& window : windows) {
    if (window.process > 0 && !window.belongsToDesktop) add(window, all);
  }
  for (const auto& player : players) {
    if (player.process > 0) add(player, all);
  }
  return all;
}

DesktopApplications::DesktopApplications(const Environment& environment,
                                         const WindowProperties& windowProperties,
                                         MprisBusSource& mprisBuses)
    : properties(windowProperties), buses(mprisBuses), entries(environment) {}

std::vector<RunningApplication> DesktopApplications::list() {
  const auto bus = buses.current();
  auto players = bus ? bus->players(playersDeadline) : std::nullopt;
  const auto all = collectEvidence(properties.describe(properties.clients()),
                                   players.value_or(std::vector<MprisPlayer>()));

  const std::lock_guard guard(mutex);
  entries.refresh();
  std::vector<RunningApplication> applications;
  for (const auto& evidence : all) {
    const auto known = ProcessNames::of(evidence.process);
    // A sandbox counts its processes by itself: nobody outside may have that number.
    if (!known && evidence.windowClass.empty()) continue;
    const auto names = known.value_or(ProcessNames());
    const auto entry = entryFor(evidence, names, entries).value_or(DesktopEntry());
    applications.push_back(describe(evidence, names, entry));
  }
  return applications;
}

} // namespace velmor
