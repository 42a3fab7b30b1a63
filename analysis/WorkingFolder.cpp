#include "analysis/WorkingFolder.h"

#include "platform/Environment.h"

#include <random>
#include <string>
#include <string_view>

namespace velmor {

namespace {

constexpr std::string_view namePrefix = "velmor-audio-";

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

WorkingFolder::WorkingFolder(const Platform& thePlatform) : platform(thePlatform) {
  removeAbandoned(platform);
  // Another run that tidies up may take a folder in the moment before it is held.
  constexpr int attempts = 5;
  for (int attempt = 0; attempt < attempts && !hold; ++attempt) {
    path = platform.environment.temporaryDirectory() / (std::string(namePrefix) + freshUuid());
    platform.files.createFolder(path, 0700);
    hold = platform.files.hold(path);
  }
  if (!hold) throw FileError("The folder \"" + path.string() + "\" could not be held.");
}

WorkingFolder::~WorkingFolder() {
  platform.files.remove(path);
}

void WorkingFolder::removeAbandoned(const Platform& platform) {
  for (const auto& entry : platform.files.list(platform.environment.temporaryDirectory())) {
    if (!entry.path.filename().string().starts_with(namePrefix)) continue;
    const auto hold = platform.files.hold(entry.path);
    if (hold) platform.files.remove(entry.path);
  }
}

} // namespace velmor
