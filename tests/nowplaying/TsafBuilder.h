#pragma once

#include <bit>
#include <cstdint>
#include <string>
#include <vector>

namespace velmor {

/// Writes archives the way djay Pro does.
class TsafBuilder {
public:
  TsafBuilder() { blob = std::string("TSAF\x03\0\x03\0\x12\0\0\0\0\0\0\0\x0A\0\0\0", 20); }

  TsafBuilder& object(const std::string& className) {
    blob += '\x2B';
    return name(className);
  }

  TsafBuilder& string(const std::string& key, const std::string& value) {
    return name(value).name(key);
  }

  /// Eight bytes, aligned from the archive's start.
  TsafBuilder& number(const std::string& key, double value) {
    blob += '\x30';
    while (blob.size() % sizeof(value) != 0)
      blob += '\xEE';
    return littleEndian(std::bit_cast<std::uint64_t>(value), sizeof(value)).name(key);
  }

  TsafBuilder& shortNumber(const std::string& key, float value) {
    blob += '\x13';
    return littleEndian(std::bit_cast<std::uint32_t>(value), sizeof(value)).name(key);
  }

  TsafBuilder& raw(const std::string& bytes) {
    blob += bytes;
    return *this;
  }

  [[nodiscard]] std::vector<std::uint8_t> bytes() const { return {blob.begin(), blob.end()}; }

private:
  TsafBuilder& name(const std::string& text) {
    blob += '\x08' + text + '\0';
    return *this;
  }

  TsafBuilder& littleEndian(std::uint64_t bits, std::size_t size) {
    for (std::size_t byte = 0; byte < size; ++byte) {
      blob += static_cast<char>(bits >> (8 * byte) & 0xFFU);
    }
    return *this;
  }

  std::string blob;
};

} // namespace velmor
