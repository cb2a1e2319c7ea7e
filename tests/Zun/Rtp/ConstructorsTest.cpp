// Constructors begin with raw memory: nothing of what was there before may be seen in what they make.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <functional>
#include <set>
#include <string>
#include <vector>

#include "tests/support/Kinds.h"
#include "tests/support/TestAllocator.h"

namespace {

using test::kRowOf;
using test::Row;
using Make = std::function<ZunRtcpSubpacket*(ZunRtcpSubpacket* p, ZunAllocator* a)>;

// One that makes an object of a kind.
struct Constructor {
  std::string name;
  const Row* row;
  Make make;
};

void PrintTo(const Constructor& constructor, std::ostream* out) { *out << constructor.name; }

template <class Kind, class Construct>
Constructor Of(const std::string& name, Construct construct) {
  return {name, &kRowOf<Kind>, [construct](ZunRtcpSubpacket* p, ZunAllocator* a) {
            return test::AsSubpacket(construct(static_cast<Kind*>(static_cast<void*>(p)), a));
          }};
}
#define DEFAULT(Kind) Of<Kind>(#Kind "ConstructDefault", Kind##ConstructDefault)
#define FULL(Kind, Name, ...) \
  Of<Kind>(#Kind #Name, [](Kind* p, ZunAllocator* a) { return Kind##Name(p, __VA_ARGS__, a); })

// What they are given.
struct Arguments {
  Arguments() {
    const ZunRtpSourceId source = 0x01020304;
    EXPECT_TRUE(ZunVector_ZunRtpSourceIdPushBack(sources, &source));
    EXPECT_NE(ZunStringAssignCStr(text, "text"), nullptr);
  }

  TEST_PART(ZunString) text;
  TEST_PART(ZunVector_ZunRtpSourceId) sources;
  TEST_PART(ZunVector_ZunRtcpPsfbAfbShowParameter) parameters;
};

std::vector<Constructor> Constructors() {
  static Arguments with;
  return {
      DEFAULT(ZunRtcpSr),
      DEFAULT(ZunRtcpRr),
      DEFAULT(ZunRtcpSdes),
      DEFAULT(ZunRtcpBye),
      FULL(ZunRtcpBye, ConstructFull, with.sources.get(), with.text.get()),
      DEFAULT(ZunRtcpApp),
      // ZunRtcpAppConstructFull always gives null; ZunRtcpAppTest holds it to that.
      DEFAULT(ZunRtcpUnknown),
      FULL(ZunRtcpUnknown, ConstructFull, 192, 3, with.text.get()),
      DEFAULT(ZunRtcpRtpfbNack),
      FULL(ZunRtcpRtpfbNack, Construct, 7, 8),
      DEFAULT(ZunRtcpRtpfbTmmbr),
      DEFAULT(ZunRtcpRtpfbTmmbn),
      FULL(ZunRtcpRtpfbTmmbn, ConstructFull, 7, 8, 9),
      DEFAULT(ZunRtcpRtpfbCcfb),
      FULL(ZunRtcpRtpfbCcfb, ConstructFullWithMonotonic, 7, 1500000000),
      DEFAULT(ZunRtcpRtpfbTransportCc),
      FULL(ZunRtcpRtpfbTransportCc, ConstructFull, 7, 8, 9),
      DEFAULT(ZunRtcpRtpfbAbafb),
      FULL(ZunRtcpRtpfbAbafb, ConstructFull, 1, 2, 3, 4, 5, 6),
      FULL(ZunRtcpRtpfbAbafb, ConstructWithCalculatedDelay, 1, 2, 3, 4, 5, 6),
      DEFAULT(ZunRtcpRtpfbUnknown),
      FULL(ZunRtcpRtpfbUnknown, ConstructFull, 9, 7, 8, with.text.get()),
      DEFAULT(ZunRtcpPsfbPli),
      FULL(ZunRtcpPsfbPli, ConstructFull, 7, 8),
      DEFAULT(ZunRtcpPsfbSli),
      DEFAULT(ZunRtcpPsfbRpsi),
      DEFAULT(ZunRtcpPsfbFir),
      DEFAULT(ZunRtcpPsfbTstr),
      DEFAULT(ZunRtcpPsfbTsta),
      DEFAULT(ZunRtcpPsfbUnknown),
      FULL(ZunRtcpPsfbUnknown, ConstructFull, 9, 7, 8, with.text.get()),
      DEFAULT(ZunRtcpPsfbAfbRemb),
      FULL(ZunRtcpPsfbAfbRemb, ConstructFull, 7, 1000, with.sources.get()),
      DEFAULT(ZunRtcpPsfbAfbLir),
      DEFAULT(ZunRtcpPsfbAfbShow),
      Of<ZunRtcpPsfbAfbShow>("ZunRtcpPsfbAfbShowConstructFull",
                             [](ZunRtcpPsfbAfbShow* p, ZunAllocator*) {
                               return ZunRtcpPsfbAfbShowConstructFull(p, 7, 8, 9, with.parameters.get());
                             }),
      DEFAULT(ZunRtcpPsfbAfbShowAck),
      Of<ZunRtcpPsfbAfbShowAck>(
          "ZunRtcpPsfbAfbShowAckConstructFull",
          [](ZunRtcpPsfbAfbShowAck* p, ZunAllocator*) { return ZunRtcpPsfbAfbShowAckConstructFull(p, 7, 8, 9); }),
      DEFAULT(ZunRtcpPsfbAfbAlbr),
      FULL(ZunRtcpPsfbAfbAlbr, ConstructFull, 7, 8),
      DEFAULT(ZunRtcpPsfbAfbAbafb),
      FULL(ZunRtcpPsfbAfbAbafb, ConstructFull, 1, 2, 3, 4, 5, 6, 7, 8),
      FULL(ZunRtcpPsfbAfbAbafb, ConstructWithCalculatedDelay, 1, 2, 3, 4, 5, 6, 7, 8),
      DEFAULT(ZunRtcpPsfbAfbUnknown),
      FULL(ZunRtcpPsfbAfbUnknown, ConstructFull, 7, 8, with.text.get()),
  };
}

// A subpacket that is made in memory full of `fill`.
class Made {
 public:
  Made(const Row& row, unsigned char fill, const Make& make, ZunAllocator* a) : row_(row) {
    std::memset(bytes(), fill, sizeof sp_);
    EXPECT_EQ(make(&sp_, a), &sp_);
  }
  ~Made() {
    row_.destruct(&sp_);
    row_.destruct(&sp_);
  }
  Made(const Made&) = delete;
  Made& operator=(const Made&) = delete;

  unsigned char* bytes() { return reinterpret_cast<unsigned char*>(&sp_); }
  ZunRtcpSubpacket* sp() { return &sp_; }
  std::string seen() const { return test::Seen(row_, sp_); }

 private:
  const Row& row_;
  ZunRtcpSubpacket sp_;
};

constexpr unsigned char kFills[] = {0x5A, 0xA5};

// The places of the octets that `make` leaves as they were.
std::set<std::size_t> Untouched(const Row& row, const Make& make) {
  test::TestAllocator mine;
  Made made(row, kFills[0], make, mine.get());
  Made again(row, kFills[1], make, mine.get());
  std::set<std::size_t> places;
  for (std::size_t i = 0; i < sizeof(ZunRtcpSubpacket); ++i) {
    if (made.bytes()[i] == kFills[0] && again.bytes()[i] == kFills[1]) places.insert(i);
  }
  return places;
}

class EveryConstructor : public testing::TestWithParam<Constructor> {};

TEST_P(EveryConstructor, SetsWhatTheDefaultOneSets) {
  const std::vector<Constructor> constructors = Constructors();
  const auto of_default = std::find_if(constructors.begin(), constructors.end(),
                                       [](const Constructor& c) { return c.row == GetParam().row; });
  const std::set<std::size_t> of_no_field = Untouched(*of_default->row, of_default->make);
  for (const std::size_t place : Untouched(*GetParam().row, GetParam().make))
    EXPECT_TRUE(of_no_field.count(place) != 0) << "the octet at " << place << " is as it was";
}

TEST_P(EveryConstructor, MakesTheSameWhateverWasThere) {
  const Row& row = *GetParam().row;
  test::TestAllocator mine;
  Made made(row, kFills[0], GetParam().make, mine.get());
  Made again(row, kFills[1], GetParam().make, mine.get());
  EXPECT_EQ(row.get_allocator(made.sp()), row.get_allocator(again.sp()));
  EXPECT_TRUE(test::IsOfKind(row, *made.sp()));
  if (GetParam().name.find("CalculatedDelay") == std::string::npos) {  // it tells how late it is written
    EXPECT_EQ(made.seen(), again.seen());
  }
}

INSTANTIATE_TEST_SUITE_P(All, EveryConstructor, testing::ValuesIn(Constructors()),
                         [](const auto& line) { return line.param.name; });

TEST(Constructors, EveryKindHasALine) {
  const std::vector<Constructor> constructors = Constructors();
  for (const Row* row : test::AllRows()) {
    const bool is_envelope = std::any_of(test::AllRows().begin(), test::AllRows().end(),
                                         [row](const Row* other) { return test::EnvelopeOf(*other) == row; });
    if (is_envelope) continue;
    EXPECT_TRUE(std::any_of(constructors.begin(), constructors.end(), [row](const Constructor& c) {
      return c.row == row;
    })) << row->kind;
  }
}

}  // namespace
