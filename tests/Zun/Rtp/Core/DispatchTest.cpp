// The dispatch mechanism on a level of its own, whose kinds record what is asked of them.
#include "Zun/Rtp/Core/Dispatch.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "Zun/Rtp/Core/Table.h"
#include "Zun/Rtp/ZunRtcpSubpacket.h"
#include "tests/support/Bytes.h"
#include "tests/support/TestAllocator.h"

namespace {

using namespace test;

using Calls = std::vector<std::string>;

Calls calls;
ZunAllocator* allocator_asked_for;
bool fails;

// The rows' operations for the kind `kName`, whose objects hold no more than the value that chose it.
template <char kName>
struct Recorder {
  static void Record(const char* what) { calls.push_back(std::string(1, kName) + " " + what); }
  static ZunRtcpSubpacket* Copy(ZunRtcpSubpacket* p, const ZunRtcpSubpacket* o, ZunAllocator* a) {
    Record("copies");
    allocator_asked_for = a;
    if (fails) return nullptr;
    p->unk.type = o->unk.type;
    return p;
  }
  static void Destruct(ZunRtcpSubpacket*) { Record("destructs"); }
  static ZunRtcpSubpacket* Assign(ZunRtcpSubpacket* p, const ZunRtcpSubpacket* o) {
    Record("assigns");
    if (fails) return nullptr;
    p->unk.type = o->unk.type;
    return p;
  }
  static ZunAllocator* GetAllocator(ZunRtcpSubpacket* p) {
    return p->unk.subtype == 1 ? nullptr : p->unk.data.allocator;
  }
  static bool Write(const ZunRtcpSubpacket*, zun::Output&, bool pad) {
    Record(pad ? "writes with pad" : "writes");
    return !fails;
  }
  static ZunSizeT Length(const ZunRtcpSubpacket*) { return kName; }
  static ZunSizeT EncodedLength(const ZunRtcpSubpacket*, ZunSizeT begin, ZunRtcpDialect dialect) {
    return kName + begin + static_cast<ZunSizeT>(dialect);
  }
  static ZunRtcpEncodeReason FindUnencodable(const ZunRtcpSubpacket*, ZunRtcpDialect dialect) {
    return dialect == ZUN_RTCP_DIALECT_HOUSE ? ZunRtcpEncodeReason{kName} : ZUN_RTCP_ENCODE_REASON_NONE;
  }
  static bool Construct(ZunRtcpSubpacket* p, const zun::Body& body, ZunAllocator* a) {
    Record("is read anew");
    allocator_asked_for = a;
    EXPECT_EQ(body.begin, 4U);
    p->unk.type = 0;
    return !fails;
  }
  static bool Read(ZunRtcpSubpacket*, const zun::Body& body) {
    Record("is read over");
    EXPECT_EQ(body.begin, 4U);
    return !fails;
  }
  static constexpr RtcpSubpacketFunctions kRow(ZunInt32 value) {
    return {value,   Copy,    Destruct,  Assign, GetAllocator, nullptr,       Length,
            nullptr, nullptr, Construct, Read,   Write,        EncodedLength, FindUnencodable};
  }
};

constexpr RtcpSubpacketFunctions unknown_row = Recorder<'u'>::kRow(0);
constexpr zun::Table<10, 12> table = {Recorder<'c'>::kRow(12), Recorder<'a'>::kRow(10)};

struct Level {
  static ZunInt32 ValueOf(const ZunRtcpSubpacket* p) { return p->unk.type; }
  static const RtcpSubpacketFunctions& RowOf(ZunInt32 value) { return table.Find(value, unknown_row); }
  static void ConstructEmpty(ZunRtcpSubpacket* p, ZunAllocator* a) {
    calls.push_back("made empty");
    ZunRtcpUnknownConstructDefault(&p->unk, a);
  }
};
using TestDispatch = zun::Dispatch<Level>;

class Dispatch : public ::testing::Test {
 protected:
  void SetUp() override {
    calls.clear();
    allocator_asked_for = nullptr;
    fails = false;
  }
  static ZunRtcpSubpacket Object(ZunInt32 value, ZunAllocator* a) {
    ZunRtcpSubpacket sp;
    ZunRtcpUnknownConstructDefault(&sp.unk, a);
    sp.unk.type = value;
    if (a == nullptr) sp.unk.subtype = 1;
    return sp;
  }
  // Reads a body over `p`; an object of another kind is rebuilt with the allocator b_, and is told its own.
  bool Read(ZunInt32 value, ZunRtcpSubpacket* p) {
    zun::Body body = {};
    body.begin = 4;
    return TestDispatch::AssignFromBody(Level::RowOf(value), p, body, [this](const zun::Body&, ZunAllocator* own) {
      own_allocator_ = own;
      return b_.get();
    });
  }
  static Calls Taken() {
    Calls taken;
    taken.swap(calls);
    return taken;
  }

  ZunAllocator* own_allocator_ = nullptr;
  TestAllocator a_;
  TestAllocator b_;
};

TEST_F(Dispatch, RowsAreFoundByValue) {
  EXPECT_EQ(Level::RowOf(10).destruct, Recorder<'a'>::Destruct);
  EXPECT_EQ(Level::RowOf(12).destruct, Recorder<'c'>::Destruct);
  EXPECT_EQ(Level::RowOf(10).type, 10);
  EXPECT_TRUE(table.Has(10));
  EXPECT_FALSE(table.Has(11));
}

TEST_F(Dispatch, ValuesWithoutARowAndEmptyRowsFallToUnknown) {
  for (const ZunInt32 value : {11, 9, 13, 0, -1, 255, INT32_MIN, INT32_MAX}) {
    EXPECT_EQ(&Level::RowOf(value), &unknown_row) << value;
  }
}

TEST_F(Dispatch, EqualValuesAndUnknownOnesAreEquivalent) {
  EXPECT_TRUE(TestDispatch::AreEquivalent(10, 10));
  EXPECT_TRUE(TestDispatch::AreEquivalent(9, 9));
  EXPECT_TRUE(TestDispatch::AreEquivalent(9, 13));
  EXPECT_TRUE(TestDispatch::AreEquivalent(0, -5));
  EXPECT_FALSE(TestDispatch::AreEquivalent(10, 12));
  EXPECT_FALSE(TestDispatch::AreEquivalent(10, 9));
  EXPECT_FALSE(TestDispatch::AreEquivalent(13, 12));
  EXPECT_TRUE(TestDispatch::AreEquivalent(11, 9)) << "a place without a row is as unknown as any other value";
}

TEST_F(Dispatch, OperationsGoToTheRowOfTheObject) {
  ZunRtcpSubpacket p;
  ZunRtcpSubpacket o = Object(12, a_);
  EXPECT_EQ(TestDispatch::ConstructCopy(&p, &o), &p);
  EXPECT_EQ(allocator_asked_for, a_.get());
  EXPECT_EQ(TestDispatch::ConstructCopyAllocator(&p, &o, b_), &p);
  EXPECT_EQ(allocator_asked_for, b_.get());
  Text written;
  zun::Output out(written);
  EXPECT_TRUE(TestDispatch::Write(&o, out, false));
  EXPECT_TRUE(TestDispatch::Write(&o, out, true));
  TestDispatch::Destruct(&o);
  EXPECT_EQ(TestDispatch::GetPacketLength(&o), ZunSizeT{'c'});
  EXPECT_EQ(TestDispatch::EncodedLength(&o, 100, ZUN_RTCP_DIALECT_REGISTERED), ZunSizeT{'c' + 101});
  EXPECT_EQ(TestDispatch::FindUnencodable(&o, ZUN_RTCP_DIALECT_HOUSE), 'c');
  EXPECT_EQ(TestDispatch::FindUnencodable(&o, ZUN_RTCP_DIALECT_REGISTERED), ZUN_RTCP_ENCODE_REASON_NONE);
  EXPECT_EQ(TestDispatch::GetAllocator(&o), a_.get());
  EXPECT_EQ(Taken(), (Calls{"c copies", "c copies", "c writes", "c writes with pad", "c destructs"}));
}

TEST_F(Dispatch, AssignWithinAKindIsInPlace) {
  ZunRtcpSubpacket p = Object(10, a_);
  ZunRtcpSubpacket o = Object(10, b_);
  EXPECT_EQ(TestDispatch::Assign(&p, &o), &p);
  EXPECT_EQ(Taken(), Calls{"a assigns"});
  ZunRtcpSubpacket x = Object(9, a_);
  ZunRtcpSubpacket y = Object(200, b_);
  EXPECT_EQ(TestDispatch::Assign(&x, &y), &x);
  EXPECT_EQ(x.unk.type, 200);
  EXPECT_EQ(Taken(), Calls{"u assigns"});
  fails = true;
  EXPECT_EQ(TestDispatch::Assign(&p, &o), nullptr);
  EXPECT_EQ(Taken(), Calls{"a assigns"}) << "the object stays constructed";
}

TEST_F(Dispatch, AssignAcrossKindsRebuildsWithTheDestinationsAllocator) {
  ZunRtcpSubpacket p = Object(10, a_);
  ZunRtcpSubpacket o = Object(12, b_);
  EXPECT_EQ(TestDispatch::Assign(&p, &o), &p);
  EXPECT_EQ(Taken(), (Calls{"a destructs", "c copies"}));
  EXPECT_EQ(allocator_asked_for, a_.get());
  EXPECT_EQ(p.unk.type, 12);
}

TEST_F(Dispatch, AssignOverAnObjectWithoutAllocatorTakesTheSources) {
  ZunRtcpSubpacket p = Object(10, nullptr);
  ZunRtcpSubpacket o = Object(12, b_);
  EXPECT_EQ(TestDispatch::Assign(&p, &o), &p);
  EXPECT_EQ(allocator_asked_for, b_.get());
}

TEST_F(Dispatch, FailedRebuildLeavesAnEmptyUnknown) {
  ZunRtcpSubpacket p = Object(10, a_);
  ZunRtcpSubpacket o = Object(12, b_);
  fails = true;
  EXPECT_EQ(TestDispatch::Assign(&p, &o), nullptr);
  EXPECT_EQ(Taken(), (Calls{"a destructs", "c copies", "made empty"}));
  EXPECT_EQ(p.unk.type, 0);
  EXPECT_EQ(p.unk.data.allocator, a_.get());
}

TEST_F(Dispatch, ReadWithinAKindIsInPlace) {
  ZunRtcpSubpacket p = Object(12, a_);
  EXPECT_EQ(Read(12, &p), true);
  EXPECT_EQ(Taken(), Calls{"c is read over"});
  ZunRtcpSubpacket u = Object(9, a_);
  EXPECT_EQ(Read(77, &u), true);
  EXPECT_EQ(Taken(), Calls{"u is read over"});
  fails = true;
  EXPECT_EQ(Read(12, &p), false);
  EXPECT_EQ(Taken(), Calls{"c is read over"});
}

TEST_F(Dispatch, ReadOfAnotherKindRebuildsWithTheAllocatorGiven) {
  ZunRtcpSubpacket p = Object(10, a_);
  EXPECT_EQ(Read(12, &p), true);
  EXPECT_EQ(Taken(), (Calls{"a destructs", "c is read anew"}));
  EXPECT_EQ(allocator_asked_for, b_.get());
  EXPECT_EQ(own_allocator_, a_.get());
}

}  // namespace
