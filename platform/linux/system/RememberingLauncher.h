#pragma once

#include "platform/ProcessLauncher.h"
#include "platform/linux/system/AnswerGrounds.h"
#include "platform/linux/system/ProcessTable.h"

#include <map>
#include <mutex>
#include <optional>
#include <string>

namespace velmor {

/// Passes children on to another launcher, except those whose answer is known: a question to pgrep,
/// lsof or which that was answered once is answered from memory for as long as all that the answer
/// depends on is the same. Whoever asks sees no difference, beyond the time that it takes: starting
/// a program that reads the whole process table costs a hundred times as much as looking whether
/// anything has changed.
class RememberingLauncher final : public ProcessLauncher {
public:
  /// The other launcher must outlive this one.
  explicit RememberingLauncher(ProcessLauncher& launcher,
                               std::chrono::milliseconds freshness = ProcessTable::usualFreshness)
      : real(launcher), table(freshness) {}

  [[nodiscard]] ChildResult run(const ChildProcess& child) override;

private:
  struct Answer {
    std::string grounds;
    ChildResult result;
  };

  [[nodiscard]] std::optional<AnswerGrounds> groundsOf(const ChildProcess& child);
  [[nodiscard]] std::optional<ChildResult> known(const std::string& question,
                                                 const std::string& grounds);
  void remember(const std::string& question, Answer answer);

  ProcessLauncher& real;
  ProcessTable table;
  std::mutex mutex;
  /// By executable and arguments.
  std::map<std::string, Answer> answers;
};

} // namespace velmor
