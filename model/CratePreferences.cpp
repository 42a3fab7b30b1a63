#include "model/CratePreferences.h"

#include "base/Json.h"
#include "platform/Environment.h"
#include "platform/FileManager.h"

namespace velmor {

/// The file's content.
struct StoredCratePreferences {
  bool keys = true;

  static constexpr auto fields() {
    return std::tuple{Field{"keys", &StoredCratePreferences::keys}};
  }
};

namespace {

constexpr unsigned ownerOnly = 0700;

} // namespace

CratePreferences::CratePreferences(const Platform& platform)
    : files(platform.files)
    , path(platform.environment.applicationSupportDirectory() / "Velmor" / "crate.json") {
  const auto text = files.read(path);
  if (!text) return;
  try {
    useKeys = jsonDecoder().decode<StoredCratePreferences>(*text).keys;
  } catch (const DecodingError&) {
    // The next change replaces the file.
  }
}

void CratePreferences::setKeys(bool count) {
  if (count == useKeys) return;
  files.createFolder(path.parent_path(), ownerOnly);
  files.writeAtomically(path, jsonEncoder().encodeIndented(StoredCratePreferences{count}));
  useKeys = count;
}

} // namespace velmor
