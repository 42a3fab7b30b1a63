#include "RefusalAnswer.h"

#include <nlohmann/json.hpp>

namespace velmor::tools {
namespace {

using nlohmann::json;

json bodyFor(std::optional<Protocol> protocol, const Refusal& refusal) {
  const auto message = RefusalAnswer::message(refusal);
  const char* type = refusal.status == 401 ? "authentication_error" : "invalid_request_error";
  if (protocol == Protocol::messages)
    return {{"type", "error"}, {"error", {{"type", type}, {"message", message}}}};
  if (protocol == Protocol::release)
    return {{"ok", false}, {"error", "invalid_request"}, {"message", message}};
  return {{"error",
           {{"message", message},
            {"type", type},
            {"param", refusal.difference.path},
            {"code", nullptr}}}};
}

} // namespace

Answer RefusalAnswer::of(std::optional<Protocol> protocol, const Refusal& refusal) {
  // What is quoted from the request may be no valid text.
  return {refusal.status,
          bodyFor(protocol, refusal).dump(-1, ' ', false, json::error_handler_t::replace)};
}

std::string RefusalAnswer::message(const Refusal& refusal) {
  return refusal.difference.path + ": " + refusal.difference.message;
}

} // namespace velmor::tools
