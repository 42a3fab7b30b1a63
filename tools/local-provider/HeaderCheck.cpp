#include "HeaderCheck.h"

#include <algorithm>
#include <array>
#include <set>
#include <vector>

namespace velmor::tools {
namespace {

constexpr std::string_view bearer = "Bearer ";
constexpr std::array<std::string_view, 6> transportHeaders{
    "host", "user-agent", "accept", "accept-encoding", "connection", "content-length"};

struct WantedHeader {
  std::string_view name;
  std::string_view value; ///< empty for a header that carries the key
};

std::vector<WantedHeader> wantedHeaders(Protocol protocol) {
  switch (protocol) {
  case Protocol::responses:
    return {{"content-type", "application/json"}, {"authorization", ""}};
  case Protocol::messages:
    return {{"content-type", "application/json"},
            {"anthropic-version", "2023-06-01"},
            {"x-api-key", ""}};
  case Protocol::release:
    return {{"accept", "application/json"}};
  }
  return {};
}

Refusal refuse(int status, std::string_view name, std::string message) {
  return {status, {"/headers/" + std::string(name), std::move(message)}};
}

std::optional<Refusal> unwanted(const std::vector<WantedHeader>& wanted,
                                const ReceivedRequest& request) {
  std::set<std::string_view> seen;
  for (const auto& [name, value] : request.headers) {
    if (!seen.insert(name).second) return refuse(400, name, "header is sent twice");
    const bool known = std::ranges::find(transportHeaders, name) != transportHeaders.end() ||
                       std::ranges::find(wanted, name, &WantedHeader::name) != wanted.end();
    if (!known) return refuse(400, name, "unexpected header");
  }
  return std::nullopt;
}

std::optional<Refusal> missingOrWrong(const WantedHeader& wanted, const ReceivedRequest& request,
                                      const std::string& expectedKey) {
  const bool isKey = wanted.value.empty();
  const auto found =
      std::ranges::find(request.headers, wanted.name, &ReceivedRequest::Header::first);
  if (found == request.headers.end())
    return refuse(isKey ? 401 : 400, wanted.name, "missing header");
  if (!isKey && found->second != wanted.value)
    return refuse(400, wanted.name, "must be " + std::string(wanted.value));
  if (!isKey) return std::nullopt;

  const auto key = HeaderCheck::keyIn(wanted.name, found->second);
  if (!key) return refuse(401, wanted.name, "holds no well-formed key");
  if (*key != expectedKey) return refuse(401, wanted.name, "holds another key than the expected");
  return std::nullopt;
}

} // namespace

std::optional<Refusal> HeaderCheck::refusal(Protocol protocol, const ReceivedRequest& request,
                                            const std::string& expectedKey) {
  const auto wanted = wantedHeaders(protocol);
  if (auto found = unwanted(wanted, request)) return found;
  for (const auto& header : wanted)
    if (auto found = missingOrWrong(header, request, expectedKey)) return found;
  return std::nullopt;
}

std::optional<std::string_view> HeaderCheck::keyIn(std::string_view name, std::string_view value) {
  if (name == "authorization") {
    if (!value.starts_with(bearer)) return std::nullopt;
    value.remove_prefix(bearer.size());
  } else if (name != "x-api-key") {
    return std::nullopt;
  }
  if (value.empty()) return std::nullopt;
  return value;
}

} // namespace velmor::tools
