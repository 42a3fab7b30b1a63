#include "app/crate/CrateText.h"

#include "app/TrackText.h"
#include "base/Json.h"
#include "base/Text.h"

#include <algorithm>

namespace velmor {

namespace {

/// More would only push what matters off the screen; the JSON form has all.
constexpr std::size_t mostSkipped = 20;

} // namespace

std::string CrateText::readable(const CrateContents& crate) {
  auto lines = crate.status() + "\n";
  for (const auto& source : crate.sources) {
    lines += "  " + source.name + ": " + std::to_string(source.tracks) + " (" +
             text::printable(source.place) + ")\n";
  }
  if (!crate.tracks.empty()) {
    lines += "Without tempo: " + std::to_string(crate.withoutTempo()) + "\n";
    lines += "Without key: " + std::to_string(crate.withoutKey()) + "\n";
  }
  if (!crate.skipped.empty()) lines += "Skipped: " + std::to_string(crate.skipped.size()) + "\n";
  for (std::size_t index = 0; index < std::min(crate.skipped.size(), mostSkipped); ++index) {
    const auto& skip = crate.skipped[index];
    lines += "  " + text::printable(skip.file + ": " + skip.reason) + "\n";
  }
  if (crate.skipped.size() > mostSkipped) lines += "  and more; --json names all\n";
  return lines;
}

std::string CrateText::json(const CrateContents& crate) {
  auto sources = nlohmann::json::array();
  for (const auto& source : crate.sources) {
    sources.push_back({{"name", source.name}, {"place", source.place}, {"tracks", source.tracks}});
  }
  auto skipped = nlohmann::json::array();
  for (const auto& skip : crate.skipped)
    skipped.push_back({{"file", skip.file}, {"reason", skip.reason}});
  return jsonEncoder().encode(nlohmann::json{{"tracks", crate.tracks.size()},
                                             {"withoutTempo", crate.withoutTempo()},
                                             {"withoutKey", crate.withoutKey()},
                                             {"sources", sources},
                                             {"skipped", skipped}}) +
         "\n";
}

} // namespace velmor
