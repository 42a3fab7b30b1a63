#pragma once

namespace velmor {

class Environment;

/// What has to hold for the whole process before anything else runs in it: the user's locale, open
/// standard descriptors, the usual handling of ended children, and no session bus that a library
/// would start behind our back.
class ProcessSetup {
public:
  explicit ProcessSetup(const Environment& environment);
};

} // namespace velmor
