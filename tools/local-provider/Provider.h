#pragma once

#include "Answer.h"
#include "Protocol.h"
#include "ReceivedRequest.h"
#include "Refusal.h"
#include "RequestCheck.h"
#include "Song.h"

#include <cstdint>
#include <functional>
#include <string>
#include <variant>
#include <vector>

namespace velmor::tools {

/// The whole provider but for its sockets: a request in, an answer out. Immutable, so that
/// several threads may ask at once.
class Provider {
public:
  struct Setup {
    std::vector<Song> songs;
    std::string key;     ///< the one key that is accepted
    std::string version; ///< the release that the version server names
  };

  /// `now` gives seconds since 1970 and is called from any thread.
  Provider(Setup setup, std::function<int64_t()> now);

  /// A right request's answer, or why there is none.
  std::variant<Answer, Refusal> answer(const ReceivedRequest& request) const;

private:
  std::variant<Answer, Refusal> modelAnswer(Protocol protocol,
                                            const ReceivedRequest& request) const;

  std::vector<Song> songs;
  std::string version;
  RequestCheck check;
  std::function<int64_t()> clock;
};

} // namespace velmor::tools
