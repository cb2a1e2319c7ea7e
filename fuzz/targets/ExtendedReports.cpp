// Extended reports: a report is walked and every block that is told is added to a builder again; and blocks are built
// of any numbers, with allocations refused, and read as they were built: [flags] body or calls.
#include <vector>

#include "fuzz/Packets.h"

namespace {

using namespace fuzz;

class Builder {
 public:
  Builder(ZunRtpSourceId sender, ZunAllocator* a) {
    Check(ZunRtcpXrBuilderConstruct(&builder_, sender, a) != nullptr, "a report is begun");
  }
  ~Builder() { ZunRtcpXrBuilderDestruct(&builder_); }
  Builder(const Builder&) = delete;
  Builder& operator=(const Builder&) = delete;
  ZunRtcpXrBuilder* get() { return &builder_; }
  std::string body() const { return {ZunStringCStr(&builder_.data), builder_.data.size}; }

 private:
  ZunRtcpXrBuilder builder_;
};

class Subpacket {
 public:
  Subpacket(const Builder& builder, ZunAllocator* a) {
    Check(ZunRtcpXrBuilderMakeSubpacket(const_cast<Builder&>(builder).get(), &sp_, a) != nullptr, "a report is made");
  }
  Subpacket(const Octets& body, ZunAllocator* a) {
    const ZunString view = ViewOf(body);
    Check(ZunRtcpUnknownConstructFull(&sp_.unk, ZUN_RTCPSUBPACKET_TYPE_XR, 0, &view, a) != nullptr, "it is built");
  }
  ~Subpacket() { ZunRtcpSubpacketDestruct(&sp_); }
  Subpacket(const Subpacket&) = delete;
  Subpacket& operator=(const Subpacket&) = delete;
  const ZunRtcpSubpacket* get() const { return &sp_; }

 private:
  ZunRtcpSubpacket sp_;
};

struct Told {
  std::vector<ZunUint16> seqs;
  std::vector<ZunUint32> values;
};

Told PacketsOf(const ZunRtcpXrBlock& block) {
  Told told;
  const ZunSizeT count = ZunRtcpXrBlockGeneratePackets(
      &block,
      [](ZunVoidPtr data, ZunUint16 seq, ZunUint32 value) {
        static_cast<Told*>(data)->seqs.push_back(seq);
        static_cast<Told*>(data)->values.push_back(value);
      },
      &told);
  Check(count == told.seqs.size(), "as many packets are told as were handed out");
  return told;
}

std::vector<ZunRtcpXrBlock> BlocksOf(const Subpacket& sp, ZunRtcpXrReader* reader) {
  std::vector<ZunRtcpXrBlock> blocks;
  if (ZunRtcpXrReaderConstruct(reader, sp.get()) == nullptr) return blocks;
  ZunRtcpXrBlock block;
  while (ZunRtcpXrReaderNext(reader, &block)) blocks.push_back(block);
  Check(!ZunRtcpXrReaderNext(reader, &block), "a walk that has ended stays ended");
  return blocks;
}

// Adds what a block tells to the builder, by the function of its type.
bool AddAgain(Builder& builder, const ZunRtcpXrBlock& block) {
  ZunRtcpXrRrtr rrtr;
  if (ZunRtcpXrBlockGetRrtr(&block, &rrtr)) return ZunRtcpXrBuilderAddRrtr(builder.get(), &rrtr) != 0;
  ZunRtcpXrStatistics statistics;
  if (ZunRtcpXrBlockGetStatistics(&block, &statistics)) {
    return ZunRtcpXrBuilderAddStatistics(builder.get(), &statistics) != 0;
  }
  ZunRtcpXrVoip voip;
  if (ZunRtcpXrBlockGetVoip(&block, &voip)) return ZunRtcpXrBuilderAddVoip(builder.get(), &voip) != 0;
  return ZunRtcpXrBuilderAddBlock(builder.get(), static_cast<ZunUint8>(block.type), block.typeSpecific, block.octets,
                                  block.size) != 0;
}

void CheckWalk(const Octets& body) {
  Allocator allocator;
  const Subpacket sp(body, allocator);
  LookAt(*sp.get());
  ZunRtcpXrReader reader;
  const std::vector<ZunRtcpXrBlock> blocks = BlocksOf(sp, &reader);
  if (ZunRtcpXrReaderConstruct(&reader, sp.get()) == nullptr) {
    Check(reader.reason != ZUN_RTCP_DECODE_REASON_NONE, "a walk that cannot begin has a reason");
    return;
  }
  Builder same(reader.sender, allocator);
  Builder meaning(reader.sender, allocator);
  for (const ZunRtcpXrBlock& block : blocks) {
    Check(ZunRtcpXrBuilderAddBlock(same.get(), static_cast<ZunUint8>(block.type), block.typeSpecific, block.octets,
                                   block.size) != 0,
          "a block that is told can be added");
    (void)AddAgain(meaning, block);
    (void)PacketsOf(block);
  }
  const std::string read(reinterpret_cast<const char*>(body.data()), body.size());
  Check(read.compare(0, same.body().size(), same.body()) == 0, "the blocks together are the body as far as it is told");
}

ZunRtcpXrRange RangeOf(Input& input) {
  const ZunUint16 begin = input.U16();
  return {input.U32(), static_cast<ZunUint8>(input.Below(17)), begin, static_cast<ZunUint16>(begin + input.Below(700))};
}

void CheckRle(Input& input, Builder& builder, ZunAllocator* a, const Allocator& refusing) {
  const ZunRtcpXrBlockType type = static_cast<ZunRtcpXrBlockType>(1 + input.Below(3));
  const ZunRtcpXrRange range = RangeOf(input);
  if (range.thinning > 15) return;
  const ZunSizeT count = ZunRtcpXrRangeGetCount(&range);
  std::vector<ZunBool> told(count);
  std::vector<ZunUint32> times(count);
  for (ZunSizeT i = 0, run = 0; i < count; ++i, --run) {
    if (run == 0) run = 1 + input.U8();
    told[i] = i == 0 ? input.Bool() : run == 1 ? !told[i - 1] : told[i - 1];
    times[i] = input.U32();
  }
  const std::size_t refused = refusing.refused();
  const bool is_rle = type != ZUN_RTCPXR_TYPE_RECEIPT_TIMES;
  const bool added = is_rle ? ZunRtcpXrBuilderAddRle(builder.get(), type, &range, told.data(), count) != 0
                            : ZunRtcpXrBuilderAddReceiptTimes(builder.get(), &range, times.data(), count) != 0;
  Check(added || refusing.refused() != refused, "what a block can tell is added");
  if (!added) return;
  const Subpacket sp(builder, a);
  ZunRtcpXrReader reader;
  const std::vector<ZunRtcpXrBlock> blocks = BlocksOf(sp, &reader);
  Check(!blocks.empty() && reader.reason == ZUN_RTCP_DECODE_REASON_NONE, "what is built can be walked");
  ZunRtcpXrRange read;
  Check(ZunRtcpXrBlockGetRange(&blocks.back(), &read) && read.source == range.source &&
            read.thinning == range.thinning && read.beginSeq == range.beginSeq && read.endSeq == range.endSeq,
        "the range is read as it was built");
  const Told packets = PacketsOf(blocks.back());
  Check(packets.values.size() == count, "as many packets are told as were built");
  for (ZunSizeT i = 0; i < count; ++i) {
    Check(packets.values[i] == (is_rle ? static_cast<ZunUint32>(told[i]) : times[i]),
          "each packet is told as it was built");
  }
}

void CheckSummary(Input& input, Builder& builder, const Allocator& refusing) {
  ZunRtcpXrStatistics statistics = {};
  statistics.range = RangeOf(input);
  const std::uint8_t flags = input.U8();
  statistics.hasLoss = flags & 1;
  statistics.hasDuplicates = flags >> 1 & 1;
  statistics.hasJitter = flags >> 2 & 1;
  statistics.hopKind = flags >> 3 & 7;
  statistics.lostPackets = input.U32();
  statistics.maxJitter = input.U32();
  statistics.meanHops = input.U8();
  const std::size_t refused = refusing.refused();
  const bool added = ZunRtcpXrBuilderAddStatistics(builder.get(), &statistics) != 0;
  if (refusing.refused() != refused) return;
  Check(added == (statistics.range.thinning == 0 && statistics.hopKind <= 3), "exactly what can be said is added");
}

void CheckCalls(Input& input) {
  Allocator allocator;
  Allocator refusing;
  Builder builder(input.U32(), refusing);
  while (!input.AtEnd() && builder.body().size() < 20000) {
    const std::string before = builder.body();
    const std::uint8_t call = input.U8();
    if ((call & 0x80) != 0) {
      refusing.Refuse(call >> 5 & 3, false);
    }
    bool added = true;
    switch (call % 4) {
      case 0:
        CheckRle(input, builder, allocator, refusing);
        break;
      case 1:
        CheckSummary(input, builder, refusing);
        break;
      case 2: {
        const ZunRtcpXrDlrr receiver = {input.U32(), input.U32(), input.U32()};
        const std::vector<ZunRtcpXrDlrr> receivers(input.Below(5), receiver);
        added = ZunRtcpXrBuilderAddDlrr(builder.get(), receivers.data(), receivers.size()) != 0;
        break;
      }
      default: {
        const ZunUint8 type = input.U8();
        const ZunUint8 specific = input.U8();
        const Octets octets = input.Take(input.Below(64));
        added = ZunRtcpXrBuilderAddBlock(builder.get(), type, specific, octets.data(), octets.size()) != 0;
        Check(added == (octets.size() % 4 == 0) || refusing.refused() != 0, "whole words are added");
      }
    }
    if (!added) Check(builder.body() == before, "what is not added leaves the report as it was");
    Check(builder.body().compare(0, before.size(), before) == 0 && builder.body().size() % 4 == 0,
          "what was built stays, in whole words");
    refusing.RefuseNothing();
  }
  const Subpacket sp(builder, allocator);
  LookAt(*sp.get());
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Input input(data, size);
  if (input.Bool()) {
    CheckCalls(input);
  } else {
    CheckWalk(input.Take(input.left() / 4 * 4));  // no report is anything but whole words
  }
  return 0;
}
