#pragma once

#include "platform/linux/system/FileDescriptor.h"

#include <filesystem>
#include <string_view>

namespace velmor {

/// A private file beside another one, made to take its place. Until it has, destroying it removes
/// it again. Every operation throws FileError.
class ReplacementFile {
public:
  /// Creates the file, empty, in the folder of `original`.
  explicit ReplacementFile(const std::filesystem::path& original);
  ReplacementFile(const ReplacementFile&) = delete;
  ReplacementFile& operator=(const ReplacementFile&) = delete;
  ~ReplacementFile();

  void write(std::string_view bytes);

  /// Stores what was written safely, then puts the file in the original's place.
  void replaceOriginal();

  /// Removes what writers of `original` that no longer run have left behind. Never throws.
  static void removeAbandoned(const std::filesystem::path& original);

private:
  [[noreturn]] void fail(int error) const;

  std::filesystem::path target;
  std::filesystem::path path;
  FileDescriptor file;
};

} // namespace velmor
