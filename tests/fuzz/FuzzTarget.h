#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

/// What a fuzzer calls with bytes of its own making. Targets return 0.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace velmor::fuzz {

inline std::string_view text(const std::uint8_t* data, std::size_t size) {
  return {reinterpret_cast<const char*>(data), size};
}

/// Ends the program, and with it the run, when a promise is broken.
inline void require(bool promise) {
  if (!promise) std::abort();
}

} // namespace velmor::fuzz
