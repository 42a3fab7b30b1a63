#pragma once

#include "platform/Bundle.h"
#include "streams/EventBoard.h"
#include "streams/TrackFeed.h"

#include <memory>

namespace velmor {

/// A web server for stream overlays on this computer alone (127.0.0.1):
///
///     /now          the track, a JSON object, or null
///     /suggestions  the last ranking, a JSON object, or null
///     /events       server-sent events "track" and "suggestions", the present state first
///     /overlay      a page that shows the track
///
/// Nothing can be changed over it, and it knows neither settings nor keys. A page of another origin
/// cannot read it: requests must name this computer as their host, and no answer allows another
/// origin. Main thread only; requests are answered on threads of its own.
class StreamServer {
public:
  /// Waits for nobody yet. What the feed says from now on is served.
  StreamServer(const Bundle& bundle, TrackFeed& feed);
  StreamServer(const StreamServer&) = delete;
  StreamServer& operator=(const StreamServer&) = delete;
  /// Ends all answers that are under way.
  ~StreamServer();

  /// Begins to answer at the port; 0 stands for any that is free. Gives the port. Throws
  /// VelmorError when it is taken.
  int start(int port);

private:
  class Routes;
  std::shared_ptr<EventBoard> board;
  std::unique_ptr<Routes> routes;
};

} // namespace velmor
