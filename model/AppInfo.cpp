#include "model/AppInfo.h"

#include "model/RecordReader.h"

namespace velmor {

void to_json(nlohmann::json& json, const AppInfo& info) {
  json = {
      {"version", info.version},
      {"buildDate", info.buildDate},
  };
}

void from_json(const nlohmann::json& json, AppInfo& info) {
  const RecordReader members(json);
  info.version = members.text("version");
  info.buildDate = members.text("buildDate");
}

} // namespace velmor
