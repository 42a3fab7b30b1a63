#include "platform/linux/system/RememberingLauncher.h"

#include <sys/stat.h>

#include <utility>

namespace velmor {

namespace {

/// Far more than are ever asked; the numbers of processes in some of them change.
constexpr std::size_t mostAnswers = 64;

std::string questionOf(const ChildProcess& child) {
  std::string question = child.executable;
  for (const auto& argument : child.arguments) {
    question += '\0';
    question += argument;
  }
  return question;
}

/// Differs when the program was replaced; nothing when there is none.
std::optional<std::string> identityOf(const std::string& executable) {
  struct stat file {};
  if (::stat(executable.c_str(), &file) != 0) return std::nullopt;
  std::string identity;
  for (const auto part :
       {static_cast<long long>(file.st_dev), static_cast<long long>(file.st_ino),
        static_cast<long long>(file.st_size), static_cast<long long>(file.st_mode),
        static_cast<long long>(file.st_ctim.tv_sec),
        static_cast<long long>(file.st_ctim.tv_nsec)}) {
    identity += std::to_string(part) + ' ';
  }
  return identity;
}

} // namespace

ChildResult RememberingLauncher::run(const ChildProcess& child) {
  const auto grounds = groundsOf(child);
  if (!grounds) return real.run(child);
  const auto question = questionOf(child);
  if (auto answer = known(question, grounds->text)) return *std::move(answer);
  auto result = real.run(child);
  if (grounds->lead(result)) remember(question, {grounds->text, result});
  return result;
}

std::optional<AnswerGrounds> RememberingLauncher::groundsOf(const ChildProcess& child) {
  if (child.input || child.mergeErrorOutput) return std::nullopt;
  auto grounds = pgrepGrounds(child, table);
  if (!grounds) grounds = lsofGrounds(child);
  if (!grounds) grounds = whichGrounds(child);
  if (!grounds) return std::nullopt;
  const auto identity = identityOf(child.executable);
  if (!identity) return std::nullopt;
  grounds->text += *identity;
  return grounds;
}

std::optional<ChildResult> RememberingLauncher::known(const std::string& question,
                                                      const std::string& grounds) {
  const std::lock_guard guard(mutex);
  const auto answer = answers.find(question);
  if (answer == answers.end() || answer->second.grounds != grounds) return std::nullopt;
  return answer->second.result;
}

void RememberingLauncher::remember(const std::string& question, Answer answer) {
  const std::lock_guard guard(mutex);
  if (answers.size() >= mostAnswers) answers.clear();
  answers.insert_or_assign(question, std::move(answer));
}

} // namespace velmor
