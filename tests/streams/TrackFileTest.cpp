#include "streams/TrackFile.h"

#include "tests/fakes/FakePlatform.h"

#include <gtest/gtest.h>

using namespace velmor;

TEST(TrackFile, WaitsForItsFolderAndThenHoldsTheLastLine) {
  FakePlatform system;
  TrackFile file(system.loop, system.files, system.log, "/media/stick/track.txt");
  const auto content = [&] { return system.files.files["/media/stick/track.txt"].bytes; };
  file.write("A\n");
  system.files.writeFailure = "The folder is gone.";
  file.write("B\n");
  system.loop.advance(Seconds{10});
  file.write("C\n");
  EXPECT_EQ(content(), "A\n");
  EXPECT_EQ(system.log.lines.size(), 1U) << "not once for each attempt";
  system.files.writeFailure = "";
  system.loop.advance(TrackFile::retryInterval);
  EXPECT_EQ(content(), "C\n");
}
