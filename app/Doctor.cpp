#include "app/Doctor.h"

#include "analysis/AudioAnalysisService.h"
#include "analysis/LastMeasurement.h"
#include "app/DoctorSources.h"
#include "app/crate/MusicPlaces.h"
#include "base/Json.h"
#include "base/Text.h"
#include "model/ConfigStore.h"
#include "model/ModelProvider.h"
#include "platform/FileManager.h"
#include "platform/PlatformRecord.h"
#include "platform/SystemStatus.h"

#include <algorithm>

namespace velmor {

namespace {

using State = DoctorFinding::State;

constexpr std::size_t nameWidth = 20;
constexpr auto providerLabel = "Model provider";

const char* nameOf(State state) {
  switch (state) {
  case State::ready:
    return "ready";
  case State::absent:
    return "absent";
  case State::faulty:
    return "faulty";
  }
  return "";
}

const char* environmentName(ModelProvider provider) {
  return provider == ModelProvider::OpenAI ? "OPENAI_API_KEY" : "TINKER_API_KEY";
}

std::string line(const DoctorFinding& finding) {
  auto name = finding.name;
  name.resize(std::max(name.size(), nameWidth), ' ');
  auto state = std::string(nameOf(finding.state));
  state.resize(8, ' ');
  auto result = "  " + name + state + finding.detail + "\n";
  if (!finding.advice.empty()) result += std::string(nameWidth + 10, ' ') + finding.advice + "\n";
  return result;
}

std::string lines(const char* heading, const std::vector<DoctorFinding>& findings) {
  std::string result = std::string(heading) + "\n";
  for (const auto& finding : findings)
    result += line(finding);
  return result + "\n";
}

nlohmann::json list(const std::vector<DoctorFinding>& findings) {
  auto result = nlohmann::json::array();
  for (const auto& finding : findings) {
    result.push_back({{"name", finding.name},
                      {"state", nameOf(finding.state)},
                      {"detail", finding.detail},
                      {"advice", finding.advice}});
  }
  return result;
}

} // namespace

bool DoctorReport::isReady() const {
  const bool triedWell = std::ranges::all_of(
      trials, [](const auto& finding) { return finding.state == State::ready; });
  return trackCanBeFound && suggestionCanBeAsked && triedWell;
}

std::string DoctorReport::readable() const {
  return lines("Sources of tracks, in the order in which Velmor asks them", sources) +
         lines("This machine", surroundings) + (trials.empty() ? "" : lines("Tried out", trials)) +
         (trackCanBeFound ? "A track can be found" : "No track can be found") +
         (trackCanBeFound == suggestionCanBeAsked ? ", and " : ", but ") +
         (suggestionCanBeAsked ? "suggestions can be asked for.\n"
                               : "no suggestion can be asked for.\n");
}

std::string DoctorReport::json() const {
  return jsonEncoder().encode(nlohmann::json{{"sources", list(sources)},
                                             {"surroundings", list(surroundings)},
                                             {"trials", list(trials)},
                                             {"trackCanBeFound", trackCanBeFound},
                                             {"suggestionCanBeAsked", suggestionCanBeAsked}}) +
         "\n";
}

DoctorReport Doctor::examine() const {
  auto sources = DoctorSources::examine(platform);
  DoctorReport report;
  report.sources = std::move(sources.findings);
  report.trackCanBeFound = sources.trackCanBeFound;
  report.surroundings = services();
  report.surroundings.push_back(ffmpeg());
  report.surroundings.push_back(extractor());
  report.surroundings.push_back(portLister());
  report.surroundings.push_back(music());
  report.surroundings.push_back(provider());
  report.suggestionCanBeAsked = report.surroundings.back().state == State::ready;
  return report;
}

std::vector<DoctorFinding> Doctor::services() const {
  std::vector<DoctorFinding> findings;
  for (auto& service : status.services()) {
    findings.push_back({std::move(service.name), service.available ? State::ready : State::absent,
                        std::move(service.detail), std::move(service.advice)});
  }
  return findings;
}

DoctorFinding Doctor::ffmpeg() const {
  constexpr auto name = "ffmpeg";
  if (const auto path = AudioAnalysisService::ffmpegPath(platform)) {
    return {name, State::ready, *path, ""};
  }
  return {name, State::absent, "not installed",
          "To measure tempo and key from the sound, install ffmpeg. Suggestions work without it."};
}

DoctorFinding Doctor::extractor() const {
  constexpr auto name = "Extractor";
  if (const auto path = AudioAnalysisService::extractorPath(platform)) {
    const auto version = AudioAnalysisService::extractorVersion(platform, *path);
    const auto last = LastMeasurement::read(platform);
    return {name, State::ready,
            *path + ", " + (version.empty() ? "which does not tell its version" : version) + "; " +
                (last.empty() ? "nothing measured yet" : "last measurement " + last),
            ""};
  }
  return {name, State::absent, "essentia_streaming_extractor_music is not found",
          "To measure tempo and key from the sound, run scripts/bootstrap --with-essentia, or set "
          "ESSENTIA_EXTRACTOR to the path of the tool. Suggestions work without it."};
}

DoctorFinding Doctor::portLister() const {
  constexpr auto name = "lsof";
  if (platform.files.isExecutable(platform.record.lsof)) {
    return {name, State::ready, platform.record.lsof, ""};
  }
  return {name, State::absent, "not at " + platform.record.lsof,
          "To reach VirtualDJ's Network Control, install lsof. Without it Velmor reads the play "
          "history."};
}

DoctorFinding Doctor::music() const {
  constexpr auto name = "Your music";
  const auto places = placesOfMusic(platform);
  std::vector<std::string> found;
  for (const auto& path : places.files())
    found.push_back(path.string());
  for (const auto& path : places.musicFolders)
    found.push_back(path.string());
  if (!found.empty()) return {name, State::ready, text::joined(found, ", "), ""};
  return {name, State::absent, "there is no Mixxx library and no music folder",
          "To get suggestions from your own music, name its folders or collection files in "
          "VELMOR_CRATE. Velmor's other suggestions work without it."};
}

DoctorFinding Doctor::provider() const {
  try {
    const ConfigStore settings(platform);
    const auto model = settings.current().aiModel;
    if (modelProvider(model) == ModelProvider::Crate) {
      return {providerLabel, State::ready, "your own music; velmor crate tells what is known", ""};
    }
    const auto who = providerName(model) + " with " + model;
    const auto* const variable = environmentName(modelProvider(model));
    switch (settings.keyOrigin(model)) {
    case ConfigStore::KeyOrigin::environment:
      return {providerLabel, State::ready, who + ", key from " + variable, ""};
    case ConfigStore::KeyOrigin::settings:
      return {providerLabel, State::ready, who + ", key from " + settings.location().string(), ""};
    case ConfigStore::KeyOrigin::none:
      return {providerLabel, State::faulty, who + ", but there is no key",
              std::string("Enter a key in the settings, or set ") + variable + "."};
    }
  } catch (const FileError& error) {
    return {providerLabel, State::faulty, "the settings cannot be read", error.what()};
  }
  return {providerLabel, State::faulty, "", ""};
}

} // namespace velmor
