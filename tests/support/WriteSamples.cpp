// Prints the golden wire forms, each as its name and its octets in hex on a line: what seeds are made of.
#include <cstdio>

#include "tests/support/Samples.h"

int main() {
  for (const test::Sample& sample : test::Samples()) {
    std::printf("%s %s\n", sample.name.c_str(), test::ToHex(sample.wire).c_str());
  }
  return 0;
}
