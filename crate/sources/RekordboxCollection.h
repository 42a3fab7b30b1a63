#pragma once

#include "crate/sources/XmlCollection.h"

namespace velmor {

/// The collection that rekordbox exports as XML.
class RekordboxCollection final : public XmlCollection {
public:
  static constexpr auto root = "DJ_PLAYLISTS";

  [[nodiscard]] const char* name() const override { return "rekordbox"; }
  void element(const XmlStream& xml, const Take& take) override;

private:
  /// The file's playlists name the tracks once more.
  bool isInCollection = false;
};

} // namespace velmor
