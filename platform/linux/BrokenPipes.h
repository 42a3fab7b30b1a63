#pragma once

namespace velmor {

/// From here on, writing to a pipe or socket that nobody reads fails instead of ending the
/// process. Children get the default back. May be called any number of times.
void ignoreBrokenPipes();

} // namespace velmor
