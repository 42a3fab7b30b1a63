#include "RightRequests.h"

#include "WantedRequest.h"

#include <regex>

namespace velmor::tests {

using tools::Protocol;
using tools::WantedRequest;

namespace {

constexpr const char* promptText =
    R"(The currently playing track was verified through the macOS system media session.

Current track:
- Song: Night "Drive"
- Artist: Nobody & Co
- Album: 
- BPM: 128.00
- Key: 8A
- Genre: House
- Energy: 70/100
- Audio/source notes: Verified by a test
- Source application: mpv

Recommend exactly COUNT real songs for the next DJ mix. Never recommend the current track. Prioritize similar BPM (normally within +/- 10 BPM unless half/double time is appropriate), compatible Camelot key, related genre and mood, suitable energy progression, phrasing, and overall set flow. Do not invent facts about the current track when a field is empty or zero.

Submit playbackDetected=true, playbackEvidence="macOS system media session reports Playing", the supplied current track, and exactly COUNT ranked recommendations through the required tool.)";

} // namespace

std::string RightRequests::prompt(int count) {
  return std::regex_replace(promptText, std::regex("COUNT"), std::to_string(count));
}

nlohmann::json RightRequests::body(Protocol protocol, const std::string& prompt, int count) {
  return protocol == Protocol::responses
             ? WantedRequest::responses("gpt-5-mini", prompt, count)
             : WantedRequest::messages("thinkingmachines/Inkling-Small", prompt, count);
}

tools::ReceivedRequest RightRequests::request(Protocol protocol, const std::string& body) {
  tools::ReceivedRequest request{"POST", "/v1/responses", {}, body};
  request.headers = {
      {"host", "127.0.0.1"}, {"accept", "*/*"}, {"content-type", "application/json"}};
  if (protocol == Protocol::responses) {
    request.headers.emplace_back("authorization", std::string("Bearer ") + key);
  } else if (protocol == Protocol::messages) {
    request.target = "/services/tinker-prod/anthropic/api/v1/messages";
    request.headers.emplace_back("x-api-key", key);
    request.headers.emplace_back("anthropic-version", "2023-06-01");
  } else {
    request = {"GET", "/v1/macos", {{"host", "127.0.0.1"}, {"accept", "application/json"}}, ""};
  }
  return request;
}

} // namespace velmor::tests
