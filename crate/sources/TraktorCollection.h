#pragma once

#include "crate/sources/XmlCollection.h"

namespace velmor {

/// Traktor's collection.nml.
class TraktorCollection final : public XmlCollection {
public:
  static constexpr auto root = "NML";

  [[nodiscard]] const char* name() const override { return "Traktor"; }
  void element(const XmlStream& xml, const Take& take) override;
  void end(const Take& take) override;

private:
  bool isInCollection = false;
  bool isInEntry = false;
  CrateTrack track;
};

} // namespace velmor
