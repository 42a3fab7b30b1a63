#include "RightRequests.h"

#include <regex>

namespace velmor::tests {

using nlohmann::json;
using tools::Protocol;

namespace {

constexpr const char* responsesBody = R"JSON({
  "model": "gpt-5-mini",
  "instructions": "You are an expert DJ and music-metadata analyst. Always finish by calling the required result tool.",
  "input": [{"role": "user", "content": [{"type": "input_text", "text": "PROMPT"}]}],
  "tools": [{"type": "function", "name": "submit_dj_analysis", "description": DESCRIPTION,
    "parameters": {"type": "object", "additionalProperties": false,
      "properties": {
        "playbackDetected": {"type": "boolean"}, "playbackEvidence": {"type": "string"},
        "currentTrack": {"type": "object", "additionalProperties": false, TRACK},
        "recommendations": {"type": "array", "minItems": 0, "maxItems": COUNT,
          "items": {"type": "object", "additionalProperties": false, RECOMMENDATION}}},
      "required": ["playbackDetected", "playbackEvidence", "currentTrack", "recommendations"]},
    "strict": true}],
  "tool_choice": {"type": "function", "name": "submit_dj_analysis"},
  "max_output_tokens": 3000})JSON";

constexpr const char* messagesBody = R"JSON({
  "model": "thinkingmachines/Inkling-Small", "max_tokens": 3000, "temperature": 0.1,
  "system": "You are an expert DJ and music-metadata analyst. Always finish by calling the required result tool.",
  "thinking": {"type": "disabled"},
  "tools": [{"name": "submit_dj_analysis", "description": DESCRIPTION,
    "input_schema": {"type": "object",
      "properties": {
        "playbackDetected": {"type": "boolean"}, "playbackEvidence": {"type": "string"},
        "currentTrack": {"type": "object", TRACK},
        "recommendations": {"type": "array", "minItems": 0, "maxItems": COUNT,
          "items": {"type": "object", RECOMMENDATION}}},
      "required": ["playbackDetected", "playbackEvidence", "currentTrack", "recommendations"]}}],
  "tool_choice": {"type": "tool", "name": "submit_dj_analysis"},
  "messages": [{"role": "user", "content": [{"type": "text", "text": "PROMPT"}]}]})JSON";

constexpr const char* description =
    R"("Report whether active playback is confirmed. Return no recommendations when false; otherwise submit current-track metadata and exactly COUNT ranked recommendations.")";

constexpr const char* track = R"JSON("properties": {
  "song": {"type": "string"}, "artist": {"type": "string"}, "album": {"type": "string"},
  "key": {"type": "string"}, "genre": {"type": "string"}, "other": {"type": "string"},
  "bpm": {"type": "number"}, "energy": {"type": "integer"}, "confidence": {"type": "integer"}},
  "required": ["album", "artist", "bpm", "confidence", "energy", "genre", "key", "other", "song"])JSON";

constexpr const char* recommendation = R"JSON("properties": {
  "song": {"type": "string"}, "artist": {"type": "string"}, "album": {"type": "string"},
  "key": {"type": "string"}, "genre": {"type": "string"}, "explanation": {"type": "string"},
  "bpm": {"type": "number"}, "energy": {"type": "integer"}, "compatibilityScore": {"type": "integer"}},
  "required": ["album", "artist", "bpm", "compatibilityScore", "energy", "explanation", "genre", "key", "song"])JSON";

constexpr const char* promptText =
    R"(The currently playing track was verified through the macOS system media session.

Current track:
- Song: Night "Drive"
- Artist: Nobody & Co
- Album: 
TEMPO
KEY
GENRE
- Energy: 70/100
- Audio/source notes: Verified by a test
- Source application: mpv

Recommend exactly COUNT real songs for the next DJ mix. Never recommend the current track. Prioritize similar BPM (normally within +/- 10 BPM unless half/double time is appropriate), compatible Camelot key, related genre and mood, suitable energy progression, phrasing, and overall set flow. Do not invent facts about the current track when a field is empty or zero.

Submit playbackDetected=true, playbackEvidence="macOS system media session reports Playing", the supplied current track, and exactly COUNT ranked recommendations through the required tool.)";

std::string replaced(const std::string& text, const char* mark, const std::string& value) {
  return std::regex_replace(text, std::regex(mark), value);
}

} // namespace

std::string RightRequests::prompt(const std::string& tempoLine, const std::string& keyLine,
                                  const std::string& genreLine, const std::string& count) {
  auto text = replaced(promptText, "TEMPO", tempoLine);
  text = replaced(text, "KEY", keyLine);
  return replaced(replaced(text, "GENRE", genreLine), "COUNT", count);
}

json RightRequests::body(Protocol protocol, const std::string& prompt, const std::string& count) {
  const bool isResponses = protocol == Protocol::responses;
  std::string text = isResponses ? responsesBody : messagesBody;
  text = replaced(replaced(text, "DESCRIPTION", description), "TRACK", track);
  text = replaced(replaced(text, "RECOMMENDATION", recommendation), "COUNT", count);
  auto body = json::parse(text);
  body.at(isResponses ? "input" : "messages").at(0).at("content").at(0).at("text") = prompt;
  return body;
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
