#pragma once

#include <dirent.h>

#include <chrono>
#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

namespace velmor {

/// A running process and the name that it goes by, as the kernel keeps it: 15 bytes at most, unless
/// it is one of the kernel's own.
struct NamedProcess {
  std::int32_t number = 0;
  std::string name;
};

/// The names of all running processes, read in one look that serves all who ask shortly after one
/// another. Any thread.
class ProcessTable {
public:
  using Names = std::vector<NamedProcess>;

  /// For how long after its end a look may serve once more; as long as the look itself lasted when
  /// that is more, as with thousands of processes or on a busy machine. A poll without news asks
  /// all its questions within this time. What pgrep answers is older when it arrives: it reads ten
  /// times as much of each process, and starting and ending it takes as long again.
  static constexpr std::chrono::milliseconds usualFreshness{5};

  /// With a freshness of zero every question has a look of its own.
  explicit ProcessTable(std::chrono::milliseconds lookFreshness = usualFreshness)
      : freshness(lookFreshness) {}

  /// In ascending order of their numbers; a null pointer when not all of them could be read.
  [[nodiscard]] std::shared_ptr<const Names> names();

private:
  struct CloseFolder {
    void operator()(DIR* folder) const { ::closedir(folder); }
  };

  [[nodiscard]] bool isFresh() const;
  [[nodiscard]] std::shared_ptr<const Names> look();

  const std::chrono::milliseconds freshness;
  std::mutex mutex;
  /// The folder /proc, opened by the first look and kept.
  std::unique_ptr<DIR, CloseFolder> folder;
  std::shared_ptr<const Names> last;
  std::chrono::steady_clock::time_point lastStart;
  std::chrono::steady_clock::time_point lastEnd;
};

/// What tells a process from an earlier one of the same number.
struct ProcessStart {
  std::string name;
  /// In the kernel's clock ticks since the system started.
  std::string time;
};

/// Nothing when the process has ended.
[[nodiscard]] std::optional<ProcessStart> startOfProcess(std::int32_t number);

/// A process's entry in an answer's grounds: number, start and name.
[[nodiscard]] std::string describe(std::int32_t number, const ProcessStart& start);

/// The names of a running process.
struct ProcessNames {
  /// The base name of the executable file; "" when it is not ours to see.
  std::string program;
  /// The name that the process goes by, at most 15 bytes: the start of the program's name, unless
  /// it is a script or has chosen another.
  std::string shown;

  /// Whether the process goes by another name than its program's, as scripts do.
  [[nodiscard]] bool areDifferent() const;

  /// Nothing when the process does not run any more.
  [[nodiscard]] static std::optional<ProcessNames> of(std::int32_t process);
};

} // namespace velmor
