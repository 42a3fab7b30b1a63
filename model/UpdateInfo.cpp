#include "model/UpdateInfo.h"

#include "model/RecordReader.h"

namespace velmor {

void to_json(nlohmann::json& json, const UpdateInfo& info) {
  json = {
      {"current", info.current},
      {"latest", info.latest},
      {"updateAvailable", info.updateAvailable},
      {"downloadUrl", info.downloadUrl},
      {"releaseNotesUrl", info.releaseNotesUrl},
      {"offline", info.offline},
  };
}

void from_json(const nlohmann::json& json, UpdateInfo& info) {
  const RecordReader members(json);
  info.current = members.text("current");
  info.latest = members.text("latest");
  info.updateAvailable = members.boolean("updateAvailable");
  info.downloadUrl = members.text("downloadUrl");
  info.releaseNotesUrl = members.text("releaseNotesUrl");
  info.offline = members.boolean("offline");
}

} // namespace velmor
