// Golden wire forms: at least two of every kind. What every kind must do is checked on all of them, and each kind's
// own tests take theirs from here, so that a wire form stands in one place. Who adds a kind adds its samples.
#ifndef TESTS_SUPPORT_SAMPLES_H
#define TESTS_SUPPORT_SAMPLES_H

#include <iosfwd>
#include <string>
#include <utility>
#include <vector>

#include "tests/support/Kinds.h"

namespace test {

// One whole RTCP packet of a kind.
struct Sample {
  const Row* row;
  std::string name;
  std::string wire;
  // Whether it is written as it was read.
  bool comes_back = true;
  // The octets [first, last) of what is written that are appended in one piece: all of them or none find room.
  std::vector<std::pair<ZunSizeT, ZunSizeT>> pieces = {};
  // The ways in which a kind differs from most: the elements of its list own memory, with allocators of their own; it
  // is taken for read where a field found no storage; it is taken for written where a field found no room.
  bool elements_own_memory = false;
  bool reads_despite_refusals = false;
  bool writes_despite_refusals = false;
};

const std::vector<Sample>& Samples();

// Those of one kind, or of all kinds that an envelope holds.
std::vector<Sample> SamplesOf(const Row& row);
std::vector<Sample> SamplesAt(Level level);

// The wire form of that name.
const std::string& Golden(const std::string& name);

// The object that a row reads from a sample.
class ReceivedSample : public Received {
 public:
  explicit ReceivedSample(const Sample& sample, ZunAllocator* a = ZunAllocatorGetSystem())
      : Received(*sample.row, sample.wire, a) {
    EXPECT_TRUE(ok) << sample.name;
  }
};

// All that can be seen of it.
std::string Seen(const Sample& sample);

// Why a sample, or the samples of a row, cannot stand in the list; empty when they can.
std::string WhatIsWrongWith(const Sample& sample);
std::string WhatIsWrongWith(const Row& row, const std::vector<Sample>& samples);

// For messages.
void PrintTo(const Sample& sample, std::ostream* out);

}  // namespace test

#endif
