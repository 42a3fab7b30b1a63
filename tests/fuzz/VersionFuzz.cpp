#include "tests/fakes/FakePlatform.h"
#include "tests/fuzz/FuzzTarget.h"
#include "update/UpdateService.h"

using namespace velmor;

/// The input is the version server's address up to the first line feed, then its answer.
int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const auto input = fuzz::text(data, size);
  const auto end = std::min(input.find('\n'), input.size());
  FakePlatform system;
  system.environment.variables["VELMORDJ_VERSION_URL"] = input.substr(0, end);
  const std::string body(input.substr(std::min(end + 1, input.size())));
  system.http.handler = [&](const HttpRequest&) { return HttpResponse{200, body}; };
  const auto info = UpdateService(system.platform, "macos", "1.3.2").check();
  fuzz::require(info.current == "1.3.2");
  fuzz::require(!info.updateAvailable || UpdateService::compareVersions(info.latest, "1.3.2") > 0);
  (void)UpdateService::compareVersions(input, body);
  return 0;
}
