#include "ai/AnalysisValidation.h"
#include "ai/OpenAIResponses.h"
#include "ai/TinkerMessages.h"
#include "base/Json.h"
#include "base/VelmorError.h"
#include "tests/fuzz/FuzzTarget.h"

using namespace velmor;

namespace {

/// What either provider may answer ends as a sentence, or as suggestions within their bounds.
template <typename Parse>
void check(Parse parse, std::string_view bytes) {
  constexpr int expected = 3;
  Analysis analysis;
  try {
    analysis = validateAnalysis(parse(bytes, expected), expected);
  } catch (const VelmorError& error) {
    fuzz::require(!std::string_view(error.what()).empty());
    return;
  } catch (const DecodingError&) {
    return;
  }
  for (const auto& song : analysis.recommendations) {
    fuzz::require(!song.song.empty() && !song.artist.empty());
    fuzz::require(song.compatibilityScore >= 0 && song.compatibilityScore <= 100);
  }
  fuzz::require(validateAnalysis(analysis, expected) == analysis);
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  check(OpenAIResponses::parse, fuzz::text(data, size));
  check(TinkerMessages::parseTinkerResponse, fuzz::text(data, size));
  return 0;
}
