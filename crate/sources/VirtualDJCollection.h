#pragma once

#include "crate/sources/XmlCollection.h"

namespace velmor {

/// VirtualDJ's database.xml.
class VirtualDJCollection final : public XmlCollection {
public:
  static constexpr auto root = "VirtualDJ_Database";

  [[nodiscard]] const char* name() const override { return "VirtualDJ"; }
  void element(const XmlStream& xml, const Take& take) override;
  void end(const Take& take) override;

private:
  bool isInSong = false;
  CrateTrack track;
};

} // namespace velmor
