#pragma once

#include "model/Records.h"
#include "platform/HttpSession.h"
#include "platform/Platform.h"
#include "platform/async/Task.h"

#include <nlohmann/json_fwd.hpp>

#include <memory>
#include <string>
#include <vector>

namespace velmor {

/// Asks a model provider for songs to play next. One instance serves the whole application; each
/// call is one request, without retry or cache. Main thread.
class AIClient {
public:
  static constexpr auto defaultTinkerEndpoint =
      "https://tinker.thinkingmachines.dev/services/tinker-prod/anthropic/api/v1/messages";
  static constexpr auto defaultOpenAIEndpoint = "https://api.openai.com/v1/responses";

  /// Both endpoints are whole addresses.
  AIClient(const Platform& platform, std::string tinkerEndpoint, std::string openAIEndpoint);

  /// What plays now, and what is wanted after it.
  struct Request {
    std::string apiKey;
    /// Selects the provider; sent as it is.
    std::string model;
    TrackMetadata current;
    /// Display name of the application that plays the track.
    std::string source;
    double bpmTolerance = 0;
    std::int64_t recommendationCount = 0;
  };

  /// The validated answer, with the track that was given in the place of the model's own idea of
  /// it. Throws VelmorError, TransportError or DecodingError.
  [[nodiscard]] Task<Analysis> recommend(Request request);

private:
  using Headers = std::vector<std::pair<std::string, std::string>>;

  [[nodiscard]] Task<Analysis> requestOpenAI(const Request& request, const std::string& prompt);
  [[nodiscard]] Task<Analysis> requestTinker(const Request& request, const std::string& prompt);
  /// The response's bytes. Throws VelmorError with the status as its code, or TransportError.
  [[nodiscard]] Task<std::string> postJSON(const std::string& url, const Headers& headers,
                                           const nlohmann::json& body);

  MainLoop& loop;
  const std::string tinkerEndpoint;
  const std::string openAIEndpoint;
  /// Shared with the requests under way, which may outlive the client.
  const std::shared_ptr<const HttpSession> session;
};

} // namespace velmor
