#pragma once

#include "ai/ProviderEndpoint.h"
#include "model/Records.h"
#include "platform/HttpSession.h"
#include "platform/Platform.h"
#include "platform/async/Task.h"

#include <nlohmann/json_fwd.hpp>

#include <memory>
#include <string>
#include <vector>

namespace velmor {

/// Asks a model provider for songs to play next. Each call sends one request; nothing is tried
/// twice or remembered. One object serves the whole program. Main thread.
class AIClient {
public:
  AIClient(const Platform& platform, ProviderEndpoint tinker, ProviderEndpoint openAI);

  /// What plays now, and what is wanted after it.
  struct Request {
    /// The provider's key, sent as it is; it must not be blank.
    std::string apiKey;
    /// Decides which provider is asked (ModelProvider.h); sent as it is.
    std::string model;
    /// Song and artist must not be empty.
    TrackMetadata current;
    /// Display name of the application that plays the track.
    std::string source;
    /// How far the tempo may be from the current one, in BPM; cut to a whole number.
    double bpmTolerance = 0;
    /// How many songs are wanted, 1 or more. Another number of songs in the answer is an error.
    std::int64_t recommendationCount = 0;
  };

  /// Throws VelmorError when the request could not be sent: without a key that can be used, an
  /// address, or a song and an artist.
  void check(const Request& request) const;

  /// Throws VelmorError for a key that is blank or cannot stand in a header.
  static void requireUsableKey(const std::string& apiKey);

  /// The checked answer (AnalysisValidation.h). Its current track is the one that was given,
  /// whatever the model says. Throws VelmorError with a sentence for the user (with the HTTP status
  /// as its code for a refused request), TransportError when the connection fails, nothing arrives
  /// for 45 seconds or the answer is not complete after 170, DecodingError when it is not the JSON
  /// asked for. Cancelling the task ends the exchange.
  [[nodiscard]] Task<Analysis> recommend(Request request);

private:
  using Headers = std::vector<std::pair<std::string, std::string>>;

  [[nodiscard]] Task<Analysis> requestOpenAI(const Request& request, const std::string& prompt);
  [[nodiscard]] Task<Analysis> requestTinker(const Request& request, const std::string& prompt);
  /// The response's bytes. Throws VelmorError with the status as its code, or TransportError.
  [[nodiscard]] Task<std::string> postJSON(const std::string& url, const Headers& headers,
                                           const nlohmann::json& body);

  MainLoop& loop;
  const ProviderEndpoint tinkerEndpoint;
  const ProviderEndpoint openAIEndpoint;
  /// Shared with the requests under way, which may outlive the client.
  const std::shared_ptr<const HttpSession> session;
};

} // namespace velmor
