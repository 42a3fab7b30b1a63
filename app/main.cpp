#include "app/Program.h"
#include "platform/Host.h"

#include <iostream>

int main(int argc, char** argv) {
  const auto host = velmor::makeHost();
  velmor::Program program(*host, std::cout, std::cerr);
  return program.run({argv + 1, argv + argc});
}
