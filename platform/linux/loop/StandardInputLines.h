#pragma once

#include "platform/LineInput.h"
#include "platform/MainLoop.h"
#include "platform/linux/loop/LineBuffer.h"

#include <memory>

namespace velmor {

/// The lines of an open file, pipe or terminal: as a rule, standard input.
class StandardInputLines final : public LineInput {
public:
  static constexpr int standardInput = 0;

  /// Neither closes the descriptor nor changes its flags, which other programs may share.
  explicit StandardInputLines(MainLoop& mainLoop, int openDescriptor = standardInput);
  StandardInputLines(const StandardInputLines&) = delete;
  StandardInputLines& operator=(const StandardInputLines&) = delete;
  ~StandardInputLines() override;

  void read(std::function<void(std::string)> onLine, std::function<void()> onEnd) override;

private:
  /// Reads what is there; false when the input has ended.
  bool takeChunk();
  void deliver(std::string text);
  void end();

  MainLoop& loop;
  int descriptor;
  unsigned source = 0;
  LineBuffer lines;
  std::shared_ptr<const std::function<void(std::string)>> lineHandler;
  std::function<void()> endHandler;
};

} // namespace velmor
