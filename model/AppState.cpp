#include "model/AppState.h"

#include "model/RecordReader.h"

namespace velmor {

void to_json(nlohmann::json& json, const AppState& state) {
  json = {
      {"aiAvailable", state.aiAvailable},
      {"essentiaAvailable", state.essentiaAvailable},
      {"provider", state.provider},
  };
}

void from_json(const nlohmann::json& json, AppState& state) {
  const RecordReader members(json);
  state.aiAvailable = members.boolean("aiAvailable");
  state.essentiaAvailable = members.boolean("essentiaAvailable");
  state.provider = members.text("provider");
}

} // namespace velmor
