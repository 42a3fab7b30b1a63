#pragma once

#include "analysis/AudioAnalysisService.h"

#include <string>

namespace velmor {

/// How the last measurement of any run of Velmor ended, kept in the cache for doctor. It holds
/// figures, never what was playing. Any thread.
struct LastMeasurement {
  /// The figures in a few words.
  [[nodiscard]] static std::string outcomeOf(const AudioAnalysisService::Features& features);

  /// Keeps a line on the outcome and the present moment. A full disk is no reason to complain.
  static void keep(const Platform& platform, const std::string& outcome);

  /// "2026-11-23 19:40 UTC: 174.0 BPM, F minor"; "" when nothing was kept.
  [[nodiscard]] static std::string read(const Platform& platform);
};

} // namespace velmor
