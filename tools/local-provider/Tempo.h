#pragma once

namespace velmor::tools {

/// How a song's tempo meets the current one, counted in half or double time where that is nearer.
struct Tempo {
  double difference = 0; ///< beats per minute, after the factor; positive when the song is faster
  double factor = 1;     ///< 0.5, 1 or 2: what the song's tempo is multiplied by

  /// Both in beats per minute, above 0.
  static Tempo match(double current, double song);

  /// 0 for the same tempo to 1 for one that lies three tolerances away or farther.
  double distance(int tolerance) const;
};

} // namespace velmor::tools
