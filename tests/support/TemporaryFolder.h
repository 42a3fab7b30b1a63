#pragma once

#include <cstdlib>
#include <filesystem>
#include <string>

namespace velmor {

/// A new folder, removed with everything in it when destroyed.
class TemporaryFolder {
public:
  TemporaryFolder() {
    std::string name = (std::filesystem::temp_directory_path() / "velmor-test-XXXXXX").string();
    path = ::mkdtemp(name.data());
  }
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;
  ~TemporaryFolder() { std::filesystem::remove_all(path); }

  std::filesystem::path path;
};

} // namespace velmor
