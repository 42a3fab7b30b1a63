#pragma once

#include "model/Records.h"
#include "platform/async/TaskGroup.h"
#include "tests/fakes/FakeMainLoop.h"

#include <optional>
#include <stdexcept>
#include <string>
#include <utility>

namespace velmor {

/// What a reader of tables compares: "Title / Artist / Album", "none", or what the failure says.
template <typename Reader, typename... Arguments>
std::string outcome(Reader reader, const Arguments&... arguments) {
  try {
    const std::optional<NowPlayingTrack> track = reader(arguments...);
    return track ? track->title + " / " + track->artist + " / " + track->album : "none";
  } catch (const std::exception& failure) {
    return failure.what();
  }
}

/// Runs the task as far as it goes at once: "ok" with its result in `value`, or what the failure
/// says.
template <typename Value>
std::string taskOutcome(FakeMainLoop& loop, Task<Value> task, Value& value) {
  std::string outcome = "unfinished";
  const auto run = [](Task<Value> awaited, Value& result, std::string& text) -> Task<void> {
    try {
      result = co_await awaited;
      text = "ok";
    } catch (const std::exception& error) {
      text = error.what();
    }
  };
  TaskGroup tasks(loop);
  tasks.start(run(std::move(task), value, outcome));
  loop.runPending();
  return outcome;
}

inline const std::string noSession = "No active media session found. Start playback in a "
                                     "supported DJ app, then try again.";

} // namespace velmor
