#include "analysis/SoundLevel.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdlib>

namespace velmor {

namespace {

/// `count` bytes from `offset` on, the lowest first; 0 when they are not there.
std::uint32_t littleEndian(std::string_view bytes, std::size_t offset, std::size_t count) {
  std::uint32_t value = 0;
  for (std::size_t place = 0; place < count && offset + place < bytes.size(); ++place)
    value |= std::uint32_t{static_cast<unsigned char>(bytes[offset + place])} << (8U * place);
  return value;
}

/// The samples' bytes; "" when they are not of 16 bits or are missing.
std::string_view samplesIn(std::string_view wav) {
  constexpr std::size_t headSize = 12;
  constexpr std::size_t chunkHeadSize = 8;
  constexpr std::size_t bitsOffset = 14;
  if (wav.size() < headSize || !wav.starts_with("RIFF") || wav.substr(8, 4) != "WAVE") return {};
  auto rest = wav.substr(headSize);
  std::uint32_t bits = 0;
  while (rest.size() >= chunkHeadSize) {
    const auto name = rest.substr(0, 4);
    const std::size_t size = littleEndian(rest, 4, 4);
    const auto content = rest.substr(chunkHeadSize, size);
    if (name == "fmt ") bits = littleEndian(content, bitsOffset, 2);
    if (name == "data") return bits == 16 ? content : std::string_view{};
    // Chunks begin at even places.
    rest.remove_prefix(std::min(rest.size(), chunkHeadSize + size + size % 2));
  }
  return {};
}

double decibels(double amplitude) {
  constexpr double fullScale = 32768;
  constexpr double decade = 20;
  if (amplitude <= 0) return SoundLevel::silence;
  return std::max(SoundLevel::silence, decade * std::log10(amplitude / fullScale));
}

} // namespace

std::optional<SoundLevel> SoundLevel::of(std::string_view wav) {
  const auto samples = samplesIn(wav);
  const auto count = samples.size() / 2;
  if (count == 0) return std::nullopt;
  double loudest = 0;
  double squares = 0;
  for (std::size_t index = 0; index < count; ++index) {
    const auto sample = static_cast<std::int16_t>(littleEndian(samples, index * 2, 2));
    const double amplitude = std::abs(static_cast<double>(sample));
    loudest = std::max(loudest, amplitude);
    squares += amplitude * amplitude;
  }
  return SoundLevel{.peak = decibels(loudest),
                    .average = decibels(std::sqrt(squares / static_cast<double>(count)))};
}

} // namespace velmor
