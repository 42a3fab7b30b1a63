#include "app/DoctorTrials.h"

#include "ai/ProviderProbe.h"
#include "analysis/AudioAnalysisService.h"
#include "analysis/ExtractorReport.h"
#include "analysis/SoundLevel.h"
#include "analysis/WorkingFolder.h"
#include "base/Number.h"
#include "base/Text.h"
#include "base/VelmorError.h"
#include "model/ConfigStore.h"
#include "model/ModelProvider.h"

namespace velmor {

namespace {

using State = DoctorFinding::State;

constexpr int seconds = 5;
/// Below this nothing that a tempo could be measured from is heard.
constexpr double quietest = -60;
constexpr auto recording = "Recording";
constexpr auto measurement = "Measurement";

std::string adviceFor(ProviderProbe::Fault fault) {
  switch (fault) {
  case ProviderProbe::Fault::none:
    return "";
  case ProviderProbe::Fault::reachability:
    return "Check the network, and VELMOR_OPENAI_URL or VELMOR_TINKER_URL when one is set.";
  case ProviderProbe::Fault::key:
    return "Enter the key anew in the settings. A key in OPENAI_API_KEY or TINKER_API_KEY goes "
           "before it.";
  case ProviderProbe::Fault::model:
    return "Choose another model in the settings.";
  case ProviderProbe::Fault::service:
    return "Try again later, and look at your account with the provider.";
  }
  return "";
}

/// One line of what a tool printed, and not too much of it.
std::string shortWords(const std::string& output) {
  constexpr std::size_t most = 400;
  const auto words = std::string(text::trimmed(text::printable(output)));
  return words.size() <= most ? words : text::withValidUtf8(words.substr(0, most)) + " …";
}

DoctorFinding levelOf(const Platform& platform, const WorkingFolder& folder,
                      const std::string& device) {
  const auto level = SoundLevel::of(platform.files.read(folder.sample()).value_or(""));
  if (!level) {
    return {recording, State::faulty, device + " gives no sound file that Velmor can read",
            "Set VELMOR_AUDIO_DEVICE to another source of the sound server."};
  }
  const auto heard = device + ", loudest " + number::formatFixed(level->peak, 1) + " dB, average " +
                     number::formatFixed(level->average, 1) + " dB";
  if (level->peak >= quietest) return {recording, State::ready, heard, ""};
  return {recording, State::faulty, heard + ": silence",
          "Play a track, and check that the computer plays it on the output that is recorded. Or "
          "set VELMOR_AUDIO_DEVICE to the source of the sound server that carries it."};
}

DoctorFinding measurementOf(const Platform& platform, const WorkingFolder& folder,
                            const std::string& extractor) {
  const auto result =
      AudioAnalysisService::runExtractor(platform, extractor, folder.sample(), folder.report(), {});
  const auto words = shortWords(result.output);
  if (result.exitStatus != 0) {
    return {measurement, State::faulty,
            extractor + ": exit " + std::to_string(result.exitStatus) + " (" + words + ")",
            "Install the tool anew: scripts/bootstrap --with-essentia."};
  }
  const auto report = platform.files.read(folder.report());
  if (!report) return {measurement, State::faulty, "the tool wrote no report (" + words + ")", ""};
  const auto features = ExtractorReport::features(*report);
  return {measurement, State::ready,
          number::formatFixed(features.bpm, 1) + " BPM, " + shortWords(features.key) + " " +
              shortWords(features.scale) + (words.empty() ? "" : " (" + words + ")"),
          ""};
}

std::vector<DoctorFinding> heard(const Platform& platform) {
  const WorkingFolder folder(platform);
  const auto capture = AudioAnalysisService::capture(platform, folder.sample(), seconds);
  if (capture.device.empty()) {
    return {{recording, State::faulty, shortWords(text::joined(capture.failures, "; ")),
             "Play a track, and check that the sound server runs. Or set VELMOR_AUDIO_DEVICE to "
             "another of its sources."}};
  }
  std::vector<DoctorFinding> findings{levelOf(platform, folder, capture.device)};
  if (const auto extractor = AudioAnalysisService::extractorPath(platform))
    findings.push_back(measurementOf(platform, folder, *extractor));
  return findings;
}

} // namespace

std::string DoctorTrials::announcementOfAsking(const Platform& platform) {
  const ConfigStore settings(platform);
  const auto model = settings.current().aiModel;
  if (settings.apiKey(model).empty()) return "";
  return "Sending " + providerName(model) + " one small request for the model \"" +
         text::printable(model) + "\". It may cost a fraction of a cent.\n";
}

std::vector<DoctorFinding> DoctorTrials::ask(const Platform& platform) {
  constexpr auto name = "Question";
  try {
    const ConfigStore settings(platform);
    const auto model = settings.current().aiModel;
    const auto key = settings.apiKey(model);
    if (key.empty()) {
      return {{name, State::faulty, "not asked, since there is no key for " + providerName(model),
               adviceFor(ProviderProbe::Fault::key)}};
    }
    const auto probe = ProviderProbe::ask(platform, key, model);
    const bool fine = probe.fault == ProviderProbe::Fault::none;
    return {{name, fine ? State::ready : State::faulty, shortWords(probe.detail),
             adviceFor(probe.fault)}};
  } catch (const std::exception& error) {
    return {{name, State::faulty, shortWords(messageOf(error)), ""}};
  }
}

std::vector<DoctorFinding> DoctorTrials::listen(const Platform& platform) {
  try {
    return heard(platform);
  } catch (const std::exception& error) {
    return {{recording, State::faulty, shortWords(messageOf(error)),
             "Suggestions work without listening."}};
  }
}

} // namespace velmor
