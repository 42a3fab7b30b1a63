#include "PromptReader.h"

#include "Numbers.h"

#include <algorithm>
#include <array>
#include <optional>
#include <string>
#include <vector>

namespace velmor::tools {
namespace {

constexpr size_t lineCount = 16;
constexpr std::array wantedCounts{3, 5, 7, 10};

std::vector<std::string_view> linesOf(std::string_view text) {
  std::vector<std::string_view> lines;
  while (true) {
    const auto end = text.find('\n');
    lines.push_back(text.substr(0, end));
    if (end == std::string_view::npos) return lines;
    text.remove_prefix(end + 1);
  }
}

PromptFault fault(size_t line, std::string_view wanted) {
  return {"line " + std::to_string(line) + " of the prompt must be: " + std::string(wanted)};
}

/// Takes the lines in their order; the first departure stays and later reads give nothing.
class LineCursor {
public:
  explicit LineCursor(std::vector<std::string_view> all) : lines(std::move(all)) {}

  void fixed(std::string_view wanted) {
    if (next() != wanted) report(wanted);
  }

  /// What stands between the line's fixed beginning and its fixed end.
  std::string_view value(std::string_view prefix, std::string_view suffix = {}) {
    const auto line = next();
    const bool fits = line.size() >= prefix.size() + suffix.size() && line.starts_with(prefix) &&
                      line.ends_with(suffix);
    if (!fits) {
      report(std::string(prefix) + "…" + std::string(suffix));
      return {};
    }
    return line.substr(prefix.size(), line.size() - prefix.size() - suffix.size());
  }

  std::string_view filledValue(std::string_view prefix) {
    const auto text = value(prefix);
    if (text.empty()) report(std::string(prefix) + "followed by a text that is not empty");
    return text;
  }

  /// Takes the number read from the current line; none is a departure.
  template <typename Number>
  Number number(std::optional<Number> read, std::string_view wanted) {
    if (!read) report(wanted);
    return read.value_or(Number{});
  }

  void report(std::string_view wanted) {
    if (!first) first = fault(position, wanted);
  }

  const std::optional<PromptFault>& departure() const { return first; }

private:
  std::string_view next() { return lines.at(position++); }

  std::vector<std::string_view> lines;
  size_t position = 0; ///< of the line taken last, counted from 1
  std::optional<PromptFault> first;
};

void readTrack(LineCursor& lines, PromptFacts& facts) {
  facts.song = lines.filledValue("- Song: ");
  facts.artist = lines.filledValue("- Artist: ");
  facts.album = lines.value("- Album: ");
  facts.bpm = lines.number(twoDecimalNumber(lines.value("- BPM: ")),
                           "- BPM: followed by a number with two decimals");
  facts.key = lines.value("- Key: ");
  facts.genre = lines.value("- Genre: ");
  facts.energy = lines.number(wholeNumber(lines.value("- Energy: ", "/100")),
                              "- Energy: followed by a whole number and /100");
  facts.notes = lines.value("- Audio/source notes: ");
  facts.application = lines.value("- Source application: ");
}

void readTask(LineCursor& lines, PromptFacts& facts) {
  constexpr std::string_view middle =
      " real songs for the next DJ mix. Never recommend the current track. Prioritize similar BPM "
      "(normally within +/- ";
  const auto line = lines.value(
      "Recommend exactly ",
      " BPM unless half/double time is appropriate), compatible Camelot key, related genre and "
      "mood, suitable energy progression, phrasing, and overall set flow. Do not invent facts "
      "about the current track when a field is empty or zero.");
  const auto split = line.find(middle);
  if (split == std::string_view::npos) {
    lines.report("Recommend exactly N" + std::string(middle) + "T BPM …");
    return;
  }
  facts.count = lines.number(wholeNumber(line.substr(0, split)), "a whole number of songs");
  if (std::ranges::find(wantedCounts, facts.count) == wantedCounts.end())
    lines.report("3, 5, 7 or 10 songs");
  facts.tolerance = lines.number(wholeNumber(line.substr(split + middle.size())),
                                 "a tolerance that is a whole number");
  if (facts.tolerance < 1 || facts.tolerance > 30) lines.report("a tolerance from 1 to 30");
}

} // namespace

std::variant<PromptFacts, PromptFault> PromptReader::read(std::string_view prompt) {
  auto split = linesOf(prompt);
  if (split.size() != lineCount)
    return PromptFault{"the prompt has " + std::to_string(split.size()) + " lines; it must have " +
                       std::to_string(lineCount)};

  LineCursor lines(std::move(split));
  PromptFacts facts;
  lines.fixed("The currently playing track was verified through the macOS system media session.");
  lines.fixed("");
  lines.fixed("Current track:");
  readTrack(lines, facts);
  lines.fixed("");
  readTask(lines, facts);
  lines.fixed("");
  lines.fixed("Submit playbackDetected=true, playbackEvidence=\"macOS system media session reports "
              "Playing\", the supplied current track, and exactly " +
              std::to_string(facts.count) + " ranked recommendations through the required tool.");
  if (lines.departure()) return *lines.departure();
  return facts;
}

} // namespace velmor::tools
