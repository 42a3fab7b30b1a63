#include "ReleaseAnswer.h"

#include <nlohmann/json.hpp>

namespace velmor::tools {

nlohmann::json ReleaseAnswer::of(const std::string& version) {
  // The reserved name reaches nobody, should a page ever open these addresses.
  const std::string site = "https://velmor.invalid/";
  return {{"ok", true},
          {"platform", "macos"},
          {"version", version},
          {"download_url", site + "download/" + version},
          {"release_notes_url", site + "notes/" + version}};
}

} // namespace velmor::tools
