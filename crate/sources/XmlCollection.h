#pragma once

#include "crate/sources/XmlStream.h"
#include "crate/tracks/CrateTrack.h"

#include <functional>

namespace velmor {

/// Makes tracks of the elements of one kind of collection file, in the order of the file.
class XmlCollection {
public:
  using Take = std::function<void(CrateTrack track)>;

  virtual ~XmlCollection() = default;

  /// "Traktor", say.
  [[nodiscard]] virtual const char* name() const = 0;

  /// Reads the element at which the stream stands, and gives a track once all of it is known.
  virtual void element(const XmlStream& xml, const Take& take) = 0;

  /// There are no more elements.
  virtual void end(const Take&) {}
};

} // namespace velmor
