#include "analysis/WorkingFolder.h"

#include "platform/Environment.h"
#include "platform/FileManager.h"

#include <array>
#include <random>
#include <string>

namespace velmor {

namespace {

/// A random (version 4) UUID in upper case.
std::string freshUuid() {
  constexpr std::string_view pattern = "xxxxxxxx-xxxx-4xxx-Vxxx-xxxxxxxxxxxx";
  constexpr std::string_view digits = "0123456789ABCDEF";
  std::random_device random;
  std::string uuid(pattern);
  for (char& place : uuid) {
    if (place == 'x') place = digits[random() % 16];
    if (place == 'V') place = digits[8 + random() % 4];
  }
  return uuid;
}

} // namespace

WorkingFolder::WorkingFolder(const Platform& thePlatform)
    : platform(thePlatform)
    , path(platform.environment.temporaryDirectory() / ("velmor-audio-" + freshUuid())) {
  platform.files.createFolder(path, 0700);
}

WorkingFolder::~WorkingFolder() {
  platform.files.remove(path);
}

} // namespace velmor
