#include "RequestRecord.h"

#include "HeaderCheck.h"

#include <nlohmann/json.hpp>

namespace velmor::tools {
namespace {

using nlohmann::json;

std::string shownValue(const ReceivedRequest::Header& header, const std::string& expectedKey) {
  const auto& [name, value] = header;
  if (name != "authorization" && name != "x-api-key") return value;
  const auto key = HeaderCheck::keyIn(name, value);
  if (!key) return "malformed";
  return *key == expectedKey ? "expected key" : "other key";
}

/// A header that was sent repeatedly becomes an array of its values.
json headersOf(const ReceivedRequest& request, const std::string& expectedKey) {
  json headers = json::object();
  for (const auto& header : request.headers) {
    const auto value = shownValue(header, expectedKey);
    auto& shown = headers[header.first];
    if (shown.is_null())
      shown = value;
    else if (shown.is_array())
      shown.push_back(value);
    else
      shown = json::array({shown, value});
  }
  return headers;
}

/// The body as JSON where it is, else as the text it is; null when there is none.
json bodyOf(const std::string& text) {
  if (text.empty()) return nullptr;
  auto body = json::parse(text, nullptr, /*allow_exceptions=*/false);
  return body.is_discarded() ? json(text) : body;
}

} // namespace

std::string RequestRecord::line(const ReceivedRequest& request, const std::string& expectedKey) {
  const json record = {{"path", request.target},
                       {"headers", headersOf(request, expectedKey)},
                       {"body", bodyOf(request.body)}};
  return record.dump(-1, ' ', false, json::error_handler_t::replace);
}

} // namespace velmor::tools
