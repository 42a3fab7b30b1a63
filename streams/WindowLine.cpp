#include "streams/WindowLine.h"

#include "base/Json.h"

#include <array>
#include <utility>

namespace velmor {

namespace {

using Kind = WindowQuestion::Kind;
constexpr std::array<std::pair<Kind, const char*>, 3> kinds{
    {{Kind::now, "now"}, {Kind::follow, "follow"}, {Kind::suggest, "suggest"}}};

} // namespace

std::string WindowQuestion::line() const {
  const char* name = "";
  for (const auto& [known, text] : kinds)
    if (known == kind) name = text;
  return nlohmann::json{{"ask", name}, {"crate", fromCrate}}.dump();
}

std::optional<WindowQuestion> WindowQuestion::read(std::string_view line) {
  try {
    const auto json = JsonDecoder::parse(line);
    const auto name = json.at("ask").get<std::string>();
    for (const auto& [kind, text] : kinds)
      if (name == text) return WindowQuestion{kind, json.value("crate", false)};
  } catch (const std::exception&) {
    // No question.
  }
  return std::nullopt;
}

std::string WindowLine::line() const {
  auto json = nlohmann::json::object();
  if (aboutTrack) json["track"] = track ? nlohmann::json(*track) : nlohmann::json();
  if (suggestions) json["suggestions"] = *suggestions;
  if (!error.empty()) json["error"] = error;
  return jsonEncoder().encode(json);
}

std::optional<WindowLine> WindowLine::read(std::string_view line) {
  try {
    const auto json = JsonDecoder::parse(line);
    member::requireObject(json);
    WindowLine answer;
    answer.aboutTrack = json.contains("track");
    if (answer.aboutTrack && !json["track"].is_null())
      answer.track = json["track"].get<NowPlayingTrack>();
    if (json.contains("suggestions")) answer.suggestions = json["suggestions"].get<VisionResult>();
    answer.error = json.value("error", "");
    return answer;
  } catch (const std::exception&) {
    return std::nullopt;
  }
}

} // namespace velmor
