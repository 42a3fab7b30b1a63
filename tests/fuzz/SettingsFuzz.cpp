#include "base/Json.h"
#include "model/AppConfig.h"
#include "tests/fuzz/FuzzTarget.h"

using namespace velmor;

/// The input is a settings file. What can be read is right after one normalisation, and comes back
/// as it was written.
int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  AppConfig config;
  try {
    config = jsonDecoder().decode<AppConfig>(fuzz::text(data, size));
  } catch (const DecodingError&) {
    return 0;
  }
  config.normalise();
  auto again = config;
  again.normalise();
  fuzz::require(again == config);
  fuzz::require(config.bpmTolerance >= 1 && config.bpmTolerance <= 30);
  fuzz::require(config.window.width >= WindowSettings::minimumWidth);
  fuzz::require(jsonDecoder().decode<AppConfig>(jsonEncoder().encodeIndented(config)) == config);
  return 0;
}
