#include "streams/TrackFile.h"

namespace velmor {

TrackFile::TrackFile(MainLoop& mainLoop, FileManager& fileManager, SystemLog& systemLog,
                     std::filesystem::path file)
    : loop(mainLoop), files(fileManager), log(systemLog), path(std::move(file)) {}

void TrackFile::write(std::string line) {
  waiting = std::move(line);
  attempt();
}

void TrackFile::attempt() {
  if (!waiting) return;
  try {
    files.writeAtomically(path, *waiting);
    waiting.reset();
    hasFailed = false;
  } catch (const FileError& error) {
    if (!hasFailed) log.write("Velmor: " + std::string(error.what()) + " Trying again.");
    hasFailed = true;
    // A timer must not be destroyed while it calls: the next one takes its place afterwards.
    const auto again = [this] { loop.post(MainLoop::Lane::Actor, [this] { attempt(); }); };
    retry = loop.callLater(MainLoop::Lane::Actor, retryInterval, again);
  }
}

} // namespace velmor
