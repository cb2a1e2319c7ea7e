// Every public operation that allocates, of every kind, with its first, second, third ... allocation refused: once, and
// with all that follow. The result tells of it, what was there is as the operation says, nothing is lost, and the same
// succeeds as soon as nothing is refused.
#include <gtest/gtest.h>

#include <functional>
#include <set>
#include <string>
#include <vector>

#include "Zun/Rtp/Dialect/ZunRtcpCodec.h"
#include "tests/support/Samples.h"

namespace {

using namespace test;

// ---- the table of kinds

// Builds an object in raw storage. False when it was not built, and then owns nothing.
struct Construction {
  const char* name;
  std::function<bool(ZunRtcpSubpacket* p, ZunAllocator* a)> run;
};

// What a change leaves of an object when it is refused memory.
enum class Leaves { kAsItWas, kAnything };

// Changes an object that was read from a sample.
struct Change {
  const char* name;
  Leaves leaves;
  std::function<bool(ZunRtcpSubpacket* p)> run;
};

struct Kind {
  const Row* row;
  std::vector<Construction> constructions;
  std::vector<Change> changes;
};

// Arguments have memory of their own. Lists are longer than those of any sample, so that they must grow.
constexpr int kMany = 9;

const ZunString* LongText() {
  static const Text text(std::string(40, 't'));
  return text.get();
}
const ZunString* Name() {
  static const Text text("name");
  return text.get();
}

template <class List, class PushBack, class Element>
void Fill(List& list, PushBack push_back, const Element& element) {
  for (int i = 0; i < kMany; ++i) EXPECT_TRUE(push_back(list.get(), &element));
}

const ZunVector_ZunRtpSourceId* Sources() {
  static TEST_PART(ZunVector_ZunRtpSourceId) sources;
  if (sources->begin == nullptr) Fill(sources, ZunVector_ZunRtpSourceIdPushBack, ZunRtpSourceId{7});
  return sources.get();
}
const ZunVector_ZunRtcpReportBlock* Blocks() {
  static TEST_PART(ZunVector_ZunRtcpReportBlock) blocks;
  if (blocks->begin == nullptr)
    Fill(blocks, ZunVector_ZunRtcpReportBlockPushBack, ZunRtcpReportBlock{1, 2, 3, 4, 5, 6, 7});
  return blocks.get();
}

// Appends many of an element, one by one.
template <class List, class PushBack, class Element>
bool AppendMany(List* list, PushBack push_back, const Element& element) {
  for (int i = 0; i < kMany; ++i) {
    if (!push_back(list, &element)) return false;
  }
  return true;
}

bool SetLongText(ZunRtcpSdesItem* item) { return ZunRtcpSdesItemSetText(item, "a text that needs memory") != 0; }

// Appends a chunk with an item, whose memory is the system's.
bool AppendChunk(ZunRtcpSdes* sdes) {
  TEST_PART(ZunRtcpSdesItem) item;
  TEST_PART(ZunRtcpSdesChunk) chunk;
  EXPECT_TRUE(SetLongText(item.get()));
  EXPECT_TRUE(ZunVector_ZunRtcpSdesItemPushBack(&chunk->items, item.get()));
  return AppendMany(&sdes->chunks, ZunVector_ZunRtcpSdesChunkPushBack, *chunk.get());
}

ZunAllocator* AllocatorOf(ZunRtcpSubpacket* p) {
  ZunRtcpSdes* const sdes = &p->sdes;
  return sdes->chunks.allocator;
}

// An item, a PRIV item and a chunk of the allocator of the SDES, which meets all that they allocate.
bool BuildParts(ZunRtcpSubpacket* p) {
  TEST_PART(ZunRtcpSdesItem) item(AllocatorOf(p));
  TEST_PART(ZunRtcpSdesItemPriv) priv(AllocatorOf(p));
  TEST_PART(ZunRtcpSdesChunk) chunk(AllocatorOf(p));
  return ZunRtcpSdesItemPrivSetPrefix(priv.get(), Name()) && ZunRtcpSdesItemPrivSetText(priv.get(), LongText()) &&
         ZunRtcpSdesItemPrivWriteToItem(priv.get(), item.get()) &&
         ZunVector_ZunRtcpSdesItemPushBack(&chunk->items, item.get()) &&
         ZunRtcpSdesChunkSetItems(chunk.get(), &chunk->items) &&
         ZunVector_ZunRtcpSdesChunkPushBack(&p->sdes.chunks, chunk.get());
}

bool AddStream(ZunRtcpRtpfbCcfb* ccfb) {
  ZunRtcpRtpfbCcfbStream stream;
  ZunRtcpRtpfbCcfbStreamConstructDefault(&stream, 5, ccfb->streams.allocator);
  bool added = true;
  for (ZunUint16 seq = 0; seq < kMany && added; ++seq) {
    added = ZunRtcpRtpfbCcfbStreamAddPacket(&stream, seq, 1, 1, 2) != 0;
  }
  for (int i = 0; i < kMany && added; ++i) added = ZunRtcpRtpfbCcfbAddStream(ccfb, &stream) != 0;
  ZunRtcpRtpfbCcfbStreamDestruct(&stream);
  return added;
}

bool AddPackets(ZunRtcpRtpfbTransportCc* p) {
  for (ZunUint16 seq = 0; seq < 30; ++seq) {
    if (!ZunRtcpRtpfbTransportCcAddPacket(p, seq % 3 != 0, seq, ZunTime{64000000} + seq * 250000)) return false;
  }
  return true;
}

bool AddNumbers(ZunRtcpRtpfbNack* p) {
  for (ZunUint16 i = 0; i < kMany; ++i) {
    if (!ZunRtcpRtpfbNackAddSeqNumber(p, static_cast<ZunUint16>(20000 + 40 * i))) return false;
  }
  return true;
}

bool AppendLayers(ZunRtcpPsfbAfbLir* p) {
  ZunRtcpPsfbAfbLirEntry entry;
  if (ZunRtcpPsfbAfbLirEntryConstructFull(&entry, 1, 2, 3, LongText(), p->fci.allocator) == nullptr) return false;
  const bool appended = ZunRtcpPsfbAfbLirEntrySetLayerData(&entry, Name()) &&
                        AppendMany(&p->fci, ZunVector_ZunRtcpPsfbAfbLirEntryPushBack, entry);
  ZunRtcpPsfbAfbLirEntryDestruct(&entry);
  return appended;
}

// These take the allocator of what they copy.
bool ConstructRemb(ZunRtcpPsfbAfbRemb* p, ZunAllocator* a) {
  TEST_PART(ZunVector_ZunRtpSourceId) sources(a);
  return AppendMany(sources.get(), ZunVector_ZunRtpSourceIdPushBack, ZunRtpSourceId{7}) &&
         ZunRtcpPsfbAfbRembConstructFull(p, 1, 2.0F, sources.get(), nullptr) != nullptr;
}

bool ConstructAfbUnknown(ZunRtcpPsfbAfbUnknown* p, ZunAllocator* a) {
  Text data(a);
  return ZunStringAssign(data, LongText()) != nullptr &&
         ZunRtcpPsfbAfbUnknownConstructFull(p, 1, 2, data.get(), nullptr) != nullptr;
}

bool ConstructShow(ZunRtcpPsfbAfbShow* p, ZunAllocator* a) {
  TEST_PART(ZunVector_ZunRtcpPsfbAfbShowParameter) parameters(a);
  const ZunRtcpPsfbAfbShowParameter parameter = {3, 4};
  return AppendMany(parameters.get(), ZunVector_ZunRtcpPsfbAfbShowParameterPushBack, parameter) &&
         ZunRtcpPsfbAfbShowConstructFull(p, 1, 2, 3, parameters.get()) != nullptr;
}

constexpr Leaves kAsItWas = Leaves::kAsItWas;
constexpr Leaves kAnything = Leaves::kAnything;

// NOLINTNEXTLINE(readability-function-size): a table
const std::vector<Kind>& Kinds() {
  using P = ZunRtcpSubpacket*;
  using A = ZunAllocator*;
  static const std::vector<Kind> kinds = {
      {&kRowOf<ZunRtcpSr>,
       {},
       {{"SetReportBlocks", kAnything, [](P p) { return ZunRtcpSrSetReportBlocks(&p->sr, Blocks()) != 0; }},
        {"SetProfileSpecificExt", kAsItWas,
         [](P p) { return ZunRtcpSrSetProfileSpecificExt(&p->sr, LongText()) != 0; }}}},
      {&kRowOf<ZunRtcpRr>,
       {},
       {{"SetReportBlocks", kAnything, [](P p) { return ZunRtcpRrSetReportBlocks(&p->rr, Blocks()) != 0; }},
        {"SetProfileSpecificExt", kAsItWas,
         [](P p) { return ZunRtcpRrSetProfileSpecificExt(&p->rr, LongText()) != 0; }}}},
      {&kRowOf<ZunRtcpSdes>,
       {},
       {{"BuildParts", kAsItWas, BuildParts},
        {"AppendChunk", kAnything, [](P p) { return AppendChunk(&p->sdes); }},
        {"SetItemText", kAsItWas, [](P p) { return SetLongText(p->sdes.chunks.begin->items.begin); }}}},
      {&kRowOf<ZunRtcpBye>,
       {{"ConstructFull",
         [](P p, A a) { return ZunRtcpByeConstructFull(&p->bye, Sources(), LongText(), a) != nullptr; }}},
       {{"SetSources", kAnything, [](P p) { return ZunRtcpByeSetSources(&p->bye, Sources()) != 0; }},
        {"SetReason", kAsItWas, [](P p) { return ZunRtcpByeSetReason(&p->bye, LongText()) != 0; }}}},
      {&kRowOf<ZunRtcpApp>,
       {},
       {{"SetName", kAsItWas, [](P p) { return ZunRtcpAppSetName(&p->app, Name()) != 0; }},
        {"SetData", kAsItWas, [](P p) { return ZunRtcpAppSetData(&p->app, LongText()) != 0; }}}},
      {&kRowOf<ZunRtcpUnknown>,
       {{"ConstructFull",
         [](P p, A a) { return ZunRtcpUnknownConstructFull(&p->unk, 210, 1, LongText(), a) != nullptr; }}},
       {{"SetData", kAsItWas, [](P p) { return ZunRtcpUnknownSetData(&p->unk, LongText()) != 0; }}}},
      {&kRowOf<ZunRtcpRtpfbNack>,
       {},
       {{"AddSeqNumber", kAnything, [](P p) { return AddNumbers(&p->rtpfb.nack); }},
        {"AppendSeqMaps", kAnything,
         [](P p) {
           return AppendMany(&p->rtpfb.nack.seqMaps, ZunVector_ZunRtcpRtpfbNackSeqMapPushBack,
                             ZunRtcpRtpfbNackSeqMap{1, 2});
         }}}},
      {&kRowOf<ZunRtcpRtpfbTmmbr>,
       {},
       {{"AppendEntries", kAnything,
         [](P p) {
           return AppendMany(&p->rtpfb.tmmbr.fci, ZunVector_ZunRtcpRtpfbTmmbrEntryPushBack,
                             ZunRtcpRtpfbTmmbrEntry{1, 0, 3});
         }}}},
      {&kRowOf<ZunRtcpRtpfbCcfb>, {}, {{"AddStream", kAnything, [](P p) { return AddStream(&p->rtpfb.ccfb); }}}},
      {&kRowOf<ZunRtcpRtpfbTransportCc>,
       {},
       {{"AddPacket", kAnything, [](P p) { return AddPackets(&p->rtpfb.transportCc); }}}},
      {&kRowOf<ZunRtcpRtpfbUnknown>,
       {{"ConstructFull",
         [](P p, A a) { return ZunRtcpRtpfbUnknownConstructFull(&p->rtpfb.unk, 20, 1, 2, LongText(), a) != nullptr; }}},
       {{"SetData", kAsItWas, [](P p) { return ZunRtcpRtpfbUnknownSetData(&p->rtpfb.unk, LongText()) != 0; }}}},
      {&kRowOf<ZunRtcpPsfbPli>,
       {},
       {{"SetProfileSpecificExt", kAsItWas,
         [](P p) { return ZunRtcpPsfbPliSetProfileSpecificExt(&p->psfb.pli, LongText()) != 0; }}}},
      {&kRowOf<ZunRtcpPsfbSli>,
       {},
       {{"AppendItems", kAnything,
         [](P p) {
           return AppendMany(&p->psfb.sli.items, ZunVector_ZunRtcpPsfbSliItemPushBack, ZunRtcpPsfbSliItem{1, 2, 3});
         }}}},
      {&kRowOf<ZunRtcpPsfbRpsi>,
       {},
       {{"SetRpsi", kAsItWas, [](P p) { return ZunRtcpPsfbRpsiSetRpsi(&p->psfb.rpsi, LongText()) != 0; }}}},
      {&kRowOf<ZunRtcpPsfbFir>,
       {},
       {{"AppendEntries", kAnything,
         [](P p) {
           return AppendMany(&p->psfb.fir.fci, ZunVector_ZunRtcpPsfbFirEntryPushBack, ZunRtcpPsfbFirEntry{1, 2});
         }}}},
      {&kRowOf<ZunRtcpPsfbTstr>,
       {},
       {{"AppendEntries", kAnything,
         [](P p) {
           return AppendMany(&p->psfb.tstr.fci, ZunVector_ZunRtcpPsfbTstrEntryPushBack, ZunRtcpPsfbTstrEntry{1, 2, 3});
         }}}},
      {&kRowOf<ZunRtcpPsfbTsta>,
       {},
       {{"AppendEntries", kAnything,
         [](P p) {
           return AppendMany(&p->psfb.tsta.fci, ZunVector_ZunRtcpPsfbTstaEntryPushBack, ZunRtcpPsfbTstaEntry{1, 2, 3});
         }}}},
      {&kRowOf<ZunRtcpPsfbUnknown>,
       {{"ConstructFull",
         [](P p, A a) { return ZunRtcpPsfbUnknownConstructFull(&p->psfb.unk, 20, 1, 2, LongText(), a) != nullptr; }}},
       {{"SetData", kAsItWas, [](P p) { return ZunRtcpPsfbUnknownSetData(&p->psfb.unk, LongText()) != 0; }}}},
      {&kRowOf<ZunRtcpPsfbAfbShow>,
       {{"ConstructFull", [](P p, A a) { return ConstructShow(&p->psfb.afb.show, a); }}},
       {}},
      {&kRowOf<ZunRtcpPsfbAfbLir>,
       {},
       {{"AppendLayers", kAnything, [](P p) { return AppendLayers(&p->psfb.afb.lir); }}}},
      {&kRowOf<ZunRtcpPsfbAfbRemb>,
       {{"ConstructFull", [](P p, A a) { return ConstructRemb(&p->psfb.afb.remb, a); }}},
       {{"SetFeedbackSources", kAnything,
         [](P p) { return ZunRtcpPsfbAfbRembSetFeedbackSources(&p->psfb.afb.remb, Sources()) != 0; }}}},
      {&kRowOf<ZunRtcpPsfbAfbUnknown>,
       {{"ConstructFull", [](P p, A a) { return ConstructAfbUnknown(&p->psfb.afb.unk, a); }}},
       {{"SetData", kAsItWas, [](P p) { return ZunRtcpPsfbAfbUnknownSetData(&p->psfb.afb.unk, LongText()) != 0; }}}},
      // These own no memory.
      {&kRowOf<ZunRtcpRtpfbTmmbn>, {}, {}},
      {&kRowOf<ZunRtcpRtpfbAbafb>, {}, {}},
      {&kRowOf<ZunRtcpPsfbAfbAbafb>, {}, {}},
      {&kRowOf<ZunRtcpPsfbAfbAlbr>, {}, {}},
      {&kRowOf<ZunRtcpPsfbAfbShowAck>, {}, {}},
  };
  return kinds;
}

bool IsEnvelope(const Row& row) {
  return &row == &kRowOf<ZunRtcpRtpfb> || &row == &kRowOf<ZunRtcpPsfb> || &row == &kRowOf<ZunRtcpPsfbAfb>;
}

TEST(AllocationSweepTest, EveryKindThatOwnsMemoryHasALineWithOperations) {
  std::set<const Row*> listed;
  for (const Kind& kind : Kinds()) {
    SCOPED_TRACE(kind.row->kind);
    EXPECT_TRUE(listed.insert(kind.row).second) << "it has two lines";
    ReceivedSample p(SamplesOf(*kind.row).front());
    EXPECT_EQ(p.allocator() == nullptr, kind.constructions.empty() && kind.changes.empty());
  }
  for (const Row* const row : AllRows()) {
    EXPECT_TRUE(listed.count(row) != 0 || IsEnvelope(*row)) << row->kind << " has no line in the allocation sweep";
  }
}

TEST(AllocationSweepTest, ARefusedConstructionOwnsNothing) {
  for (const Kind& kind : Kinds()) {
    for (const Construction& construction : kind.constructions) {
      SCOPED_TRACE(std::string(kind.row->kind) + " " + construction.name);
      ZunRtcpSubpacket expected;
      ASSERT_TRUE(construction.run(&expected, ZunAllocatorGetSystem()));
      const std::size_t allocations = ForEveryRefusal([&](TestAllocator& refusing) {
        ZunRtcpSubpacket p;
        if (construction.run(&p, refusing)) {
          EXPECT_EQ(Seen(*kind.row, p), Seen(*kind.row, expected));
          EXPECT_EQ(kind.row->get_allocator(&p), refusing.get());
          kind.row->destruct(&p);
        } else {
          EXPECT_GT(refusing.refused(), 0U);
        }
        EXPECT_EQ(refusing.live_blocks(), 0U);
      });
      EXPECT_GT(allocations, 0U) << "it takes no memory";
      kind.row->destruct(&expected);
    }
  }
}

// Whether an object read from `sample` is changed, whatever allocation is refused, as it says.
void SweepChange(const Row& row, const Sample& sample, const Change& change) {
  ReceivedSample expected(sample);
  const std::string before = expected.seen();
  ASSERT_TRUE(change.run(expected.sp()));
  ForEveryRefusalAfter([&](TestAllocator& refusing, const std::function<void()>& begin) {
    ReceivedSample p(sample, refusing);
    begin();
    const bool changed = change.run(p.sp());
    EXPECT_TRUE(changed || refusing.refused() > 0);
    EXPECT_TRUE(IsOfKind(row, *p.sp()));
    if (changed) {
      EXPECT_EQ(p.seen(), expected.seen());
    } else if (change.leaves == Leaves::kAsItWas) {
      EXPECT_EQ(p.seen(), before);
    }
    refusing.RefuseNothing();
    // Whatever is left can be copied, and made what it was again.
    ZunRtcpSubpacket copy;
    ASSERT_NE(row.construct_copy_allocator(&copy, p.sp(), refusing), nullptr);
    EXPECT_EQ(Seen(row, copy), p.seen());
    row.destruct(&copy);
    ASSERT_TRUE(p.Read(sample.wire, {.buffer_allocator = refusing}));
    EXPECT_EQ(p.seen(), before);
    EXPECT_TRUE(change.run(p.sp()));
    EXPECT_EQ(p.seen(), expected.seen());
  });
}

TEST(AllocationSweepTest, ARefusedChangeLeavesWhatItSays) {
  for (const Kind& kind : Kinds()) {
    for (const Change& change : kind.changes) {
      const Sample sample = SamplesOf(*kind.row).front();
      SCOPED_TRACE(std::string(kind.row->kind) + " " + change.name + " of " + sample.name);
      SweepChange(*kind.row, sample, change);
    }
  }
}

// ---- packets of every kind

std::string SeenOfAll(const ZunRtcpPacket& packet) {
  std::string seen;
  for (ZunSizeT i = 0; i < ZunRtcpPacketGetSubpacketCount(&packet); ++i) {
    seen += SeenOf(*ZunRtcpPacketGetSubpacket(&packet, i)) + "\n";
  }
  return seen;
}

struct OwnedPacket {
  explicit OwnedPacket(ZunAllocator* a) : owned(a) {}
  OwnedPacket(const OwnedPacket&) = delete;
  OwnedPacket& operator=(const OwnedPacket&) = delete;
  bool Decode(const std::string& wire, ZunRtcpDecodeReport* report = nullptr) {
    return ZunRtcpPacketDecode(&packet, wire.data(), wire.size(), ZUN_RTCP_DIALECT_HOUSE, nullptr, report) != 0;
  }
  std::string seen() const { return SeenOfAll(packet); }

  zun::rtcp::Packet owned;
  ZunRtcpPacket& packet = *owned.get();
};

struct PacketOperation {
  const char* name;
  Leaves leaves;
  std::function<bool(ZunRtcpPacket* p, const ZunRtcpPacket& source)> run;
};

const PacketOperation kPacketOperations[] = {
    {"AppendSubpacket", kAsItWas,
     [](ZunRtcpPacket* p, const ZunRtcpPacket& source) {
       return ZunRtcpPacketAppendSubpacket(p, source.subpackets.begin) != 0;
     }},
    {"AppendSubpackets", kAsItWas,
     [](ZunRtcpPacket* p, const ZunRtcpPacket& source) {
       return ZunRtcpPacketAppendSubpackets(p, &source.subpackets) != 0;
     }},
    {"AppendOwnSubpackets", kAsItWas,
     [](ZunRtcpPacket* p, const ZunRtcpPacket&) { return ZunRtcpPacketAppendSubpackets(p, &p->subpackets) != 0; }},
    {"SetSubpacket", kAnything,
     [](ZunRtcpPacket* p, const ZunRtcpPacket& source) {
       return ZunRtcpPacketSetSubpacket(p, 0, source.subpackets.begin) != 0;
     }},
    {"SetSubpackets", kAnything,
     [](ZunRtcpPacket* p, const ZunRtcpPacket& source) {
       return ZunRtcpPacketSetSubpackets(p, &source.subpackets) != 0;
     }},
    {"SetSubpacketCount", kAsItWas,
     [](ZunRtcpPacket* p, const ZunRtcpPacket&) { return ZunRtcpPacketSetSubpacketCount(p, 20) != 0; }},
    {"Assign", kAnything,
     [](ZunRtcpPacket* p, const ZunRtcpPacket& source) { return ZunRtcpPacketAssign(p, &source) != nullptr; }},
    {"Copy", kAsItWas,
     [](ZunRtcpPacket* p, const ZunRtcpPacket&) {
       ZunRtcpPacket copy;
       if (ZunRtcpPacketConstructCopy(&copy, p) == nullptr) return false;
       EXPECT_EQ(SeenOfAll(copy), SeenOfAll(*p));
       ZunRtcpPacketDestruct(&copy);
       return true;
     }},
    {"ConstructFromSubpackets", kAsItWas,
     [](ZunRtcpPacket* p, const ZunRtcpPacket&) {
       ZunRtcpPacket built;
       if (!ZunRtcpPacketConstructFromSubpackets(&built, &p->subpackets, p->subpackets.allocator)) return false;
       EXPECT_EQ(SeenOfAll(built), SeenOfAll(*p));
       ZunRtcpPacketDestruct(&built);
       return true;
     }},
};

// Every sample's packet is operated on with a packet of another kind as the source.
TEST(AllocationSweepTest, ARefusedPacketOperationLeavesWhatItSays) {
  const std::string other = Golden("SdesTwoChunks");
  for (const Sample& sample : Samples()) {
    for (const PacketOperation& operation : kPacketOperations) {
      SCOPED_TRACE(sample.name + " " + operation.name);
      for (const bool swapped : {false, true}) {
        const std::string& held = swapped ? other : sample.wire;
        const std::string& taken = swapped ? sample.wire : other;
        ForEveryRefusalAfter([&](TestAllocator& refusing, const std::function<void()>& begin) {
          OwnedPacket p(refusing);
          OwnedPacket source(refusing);
          ASSERT_TRUE(p.Decode(held) && source.Decode(taken));
          const std::string before = p.seen();
          begin();
          const bool done = operation.run(&p.packet, source.packet);
          EXPECT_TRUE(done || refusing.refused() > 0);
          if (!done && operation.leaves == Leaves::kAsItWas) {
            EXPECT_EQ(p.seen(), before);
          }
          refusing.RefuseNothing();
          EXPECT_TRUE(ZunRtcpPacketAssign(&p.packet, &source.packet) != nullptr);
          EXPECT_EQ(p.seen(), source.seen());
        });
      }
    }
  }
}

TEST(AllocationSweepTest, ARefusedDecodeSaysSoAndKeepsWhatWasRead) {
  for (const Sample& sample : Samples()) {
    const std::string datagram = Golden("SrOneBlock") + sample.wire + Golden("ByeWithReason");
    for (const std::string& held : {std::string(), Golden("SdesTwoChunks") + Golden("Pli")}) {
      SCOPED_TRACE(sample.name + (held.empty() ? " fresh" : " in place"));
      OwnedPacket expected(ZunAllocatorGetSystem());
      ASSERT_TRUE(expected.Decode(datagram));
      ForEveryRefusalAfter([&](TestAllocator& refusing, const std::function<void()>& begin) {
        OwnedPacket p(refusing);
        if (!held.empty()) {
          ASSERT_TRUE(p.Decode(held));
        }
        begin();
        ZunRtcpDecodeReport report;
        const bool decoded = p.Decode(datagram, &report);
        EXPECT_EQ(report.read, ZunRtcpPacketGetSubpacketCount(&p.packet));
        EXPECT_EQ(expected.seen().substr(0, p.seen().size()), p.seen());
        EXPECT_EQ(decoded, report.read == 3U);
        if (!decoded) {
          EXPECT_EQ(report.first.reason, ZUN_RTCP_DECODE_REASON_ALLOCATION);
          EXPECT_GT(refusing.refused(), 0U);
        }
        refusing.RefuseNothing();
        EXPECT_TRUE(p.Decode(datagram));
        EXPECT_EQ(p.seen(), expected.seen());
      });
    }
  }
}

}  // namespace
