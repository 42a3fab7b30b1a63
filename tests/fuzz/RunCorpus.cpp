#include "tests/fuzz/FuzzTarget.h"

#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <vector>

/// Feeds every file of a folder to the target, where there is no fuzzer to do it.
int main(int argumentCount, char** arguments) {
  std::size_t runs = 0;
  for (int index = 1; index < argumentCount; ++index) {
    for (const auto& seed : std::filesystem::directory_iterator(arguments[index])) {
      std::ifstream file(seed.path(), std::ios::binary);
      const std::vector<char> bytes{std::istreambuf_iterator<char>(file), {}};
      LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
      ++runs;
    }
  }
  std::cout << runs << " seeds\n";
  return runs > 0 ? 0 : 1;
}
