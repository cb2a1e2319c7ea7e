// Calls of builders and setters, copies and assignments across all kinds and allocators, then written and read:
// (operation, arguments)... Now and then allocations are refused.
#include <array>
#include <string_view>
#include <vector>

#include "fuzz/Packets.h"

namespace {

using namespace fuzz;

class Text {
 public:
  Text(Input& input, std::size_t most) : octets_(input.Take(input.Below(most + 1))), view_(ViewOf(octets_)) {}
  operator const ZunString*() const { return &view_; }
  bool StartsWith(std::string_view begin) const {
    return view_.size >= begin.size() && std::string_view(view_.buf, begin.size()) == begin;
  }

 private:
  Octets octets_;
  ZunString view_;
};

// A list of a few elements, each of what `make` gives.
#define FUZZ_LIST(E)                                                                                   \
  class ListOf##E {                                                                                    \
   public:                                                                                             \
    template <class Make>                                                                              \
    ListOf##E(Input& input, ZunAllocator* a, Make make) {                                              \
      ZunVector_##E##ConstructDefault(&list_, a);                                                      \
      for (std::size_t n = input.Below(6); n > 0; --n) {                                               \
        const E element = make(input);                                                                 \
        Check(ZunVector_##E##PushBack(&list_, &element) != 0, "the list's allocator refuses nothing"); \
      }                                                                                                \
    }                                                                                                  \
    ~ListOf##E() { ZunVector_##E##Destruct(&list_); }                                                  \
    ListOf##E(const ListOf##E&) = delete;                                                              \
    ListOf##E& operator=(const ListOf##E&) = delete;                                                   \
    operator const ZunVector_##E *() const { return &list_; }                                          \
                                                                                                       \
   private:                                                                                            \
    ZunVector_##E list_;                                                                               \
  };
FUZZ_LIST(ZunRtpSourceId)
FUZZ_LIST(ZunRtcpReportBlock)
FUZZ_LIST(ZunRtcpPsfbAfbShowParameter)

ZunRtcpReportBlock MakeBlock(Input& input) {
  ZunRtcpReportBlock block = {input.U32(), input.U8(), 0, input.U32(), input.U32(), input.U32(), input.U32()};
  (void)ZunRtcpReportBlockSetPacketsLost(&block, static_cast<ZunInt32>(input.U32()) / 128);
  return block;
}
ZunRtpSourceId MakeSource(Input& input) { return input.U32(); }
ZunRtcpPsfbAfbShowParameter MakeParameter(Input& input) {
  const auto type = static_cast<ZunRtcpPsfbAfbShowParameterType>(1 + input.Below(14));
  const std::uint64_t value = input.U64();
  ZunRtcpPsfbAfbShowParameter p;
  ZunRtcpPsfbAfbShowParameterConstruct(&p, type, value >> input.Below(64));
  return p;
}

// What changes an object of a kind: one of the kind's setters or builders, as the input says. `a` gives arguments their
// memory and refuses nothing.
struct Change {
  Input& input;
  ZunAllocator* a;
  // Plain arguments, taken in this order: that of function arguments is the compiler's.
  const ZunUint32 number;
  const ZunUint32 other;
  const ZunUint16 seq;
  const ZunUint8 octet;

  void operator()(ZunRtcpSr& p) const {
    switch (input.Below(4)) {
      case 0:
        (void)ZunRtcpSrSetReportBlocks(&p, ListOfZunRtcpReportBlock(input, a, MakeBlock));
        break;
      case 1:
        (void)ZunRtcpSrSetProfileSpecificExt(&p, Text(input, 16));
        break;
      case 2:
        (void)ZunRtcpSrSetNtpTimestamp(&p, input.U64());
        break;
      default:
        (void)ZunRtcpSrSetSource(&p, input.U32());
    }
  }
  void operator()(ZunRtcpRr& p) const {
    switch (input.Below(3)) {
      case 0:
        (void)ZunRtcpRrSetReportBlocks(&p, ListOfZunRtcpReportBlock(input, a, MakeBlock));
        break;
      case 1:
        (void)ZunRtcpRrSetProfileSpecificExt(&p, Text(input, 16));
        break;
      default:
        (void)ZunRtcpRrSetSource(&p, input.U32());
    }
  }
  void operator()(ZunRtcpSdes& p) const {
    ZunRtcpSdesItem item;
    if (ZunRtcpSdesItemConstruct(&item, octet % 16, Text(input, 300)) != nullptr) ZunRtcpSdesItemDestruct(&item);
    ZunRtcpSdesItemConstructDefault(&item, a);
    (void)ZunRtcpSdesItemSetType(&item, static_cast<ZunUint8>(input.Below(16)));
    (void)ZunStringAssign(&item.text, Text(input, 80));
    ZunRtcpSdesChunk chunk;
    ZunRtcpSdesChunkConstructDefault(&chunk, a);
    (void)ZunRtcpSdesChunkSetSource(&chunk, input.U32());
    for (std::size_t n = input.Below(4); n > 0; --n) (void)ZunVector_ZunRtcpSdesItemPushBack(&chunk.items, &item);
    (void)ZunVector_ZunRtcpSdesChunkPushBack(&p.chunks, &chunk);
    if (input.Below(8) == 0) (void)ZunRtcpSdesSetChunks(&p, &p.chunks);
    ZunRtcpSdesChunkDestruct(&chunk);
    ZunRtcpSdesItemDestruct(&item);
  }
  void operator()(ZunRtcpBye& p) const {
    if (input.Bool()) {
      (void)ZunRtcpByeSetSources(&p, ListOfZunRtpSourceId(input, a, MakeSource));
    } else {
      (void)ZunRtcpByeSetReason(&p, Text(input, 300));
    }
  }
  void operator()(ZunRtcpApp& p) const {
    switch (input.Below(3)) {
      case 0:
        (void)ZunRtcpAppSetName(&p, Text(input, 5));
        break;
      case 1:
        (void)ZunRtcpAppSetData(&p, Text(input, 20));
        break;
      default:
        (void)ZunRtcpAppSetSource(&p, input.U32());
    }
  }
  void operator()(ZunRtcpUnknown& p) const {
    if (input.Bool()) {
      (void)ZunRtcpUnknownSetSubtype(&p, input.U8());
    } else {
      (void)ZunRtcpUnknownSetData(&p, Text(input, 40));
    }
  }
  void operator()(ZunRtcpRtpfbNack& p) const {
    const bool needs_map = ZunRtcpRtpfbNackWillSeqNumberRequireNewSeqMap(&p, seq) != 0;
    const ZunSizeT maps = ZunRtcpRtpfbNackGetNumOfSeqMaps(&p);
    switch (input.Below(8)) {
      case 0:
        ZunRtcpRtpfbNackRemoveSeqNumber(&p, seq);
        break;
      case 1:
        ZunRtcpRtpfbNackResetSeqMaps(&p);
        break;
      default:
        if (!ZunRtcpRtpfbNackAddSeqNumber(&p, seq)) return;
        Check(ZunRtcpRtpfbNackGetNumOfSeqMaps(&p) == maps + (needs_map ? 1 : 0),
              "a number takes a map when it is said");
    }
  }
  void operator()(ZunRtcpRtpfbTmmbr& p) const {
    const ZunRtcpRtpfbTmmbrEntry entry = {input.U32(), 0, input.U32()};
    (void)ZunVector_ZunRtcpRtpfbTmmbrEntryPushBack(&p.fci, &entry);
  }
  void operator()(ZunRtcpRtpfbTmmbn& p) const { p.max_bitrate = input.U32(); }
  void operator()(ZunRtcpRtpfbCcfb& p) const {
    (void)ZunRtcpRtpfbCcfbSetSendTimestampFromMonotonic(&p, static_cast<ZunTime>(input.U64()));
    ZunRtcpRtpfbCcfbStream stream;
    ZunRtcpRtpfbCcfbStreamConstructDefault(&stream, number, a);
    ZunUint16 next = seq;
    for (std::size_t n = input.Below(12); n > 0; --n, ++next) {
      const bool received = input.Bool();
      const ZunUint8 ecn = input.U8() & 3;
      (void)ZunRtcpRtpfbCcfbStreamAddPacket(&stream, next, received, ecn, input.U16() & 0x1FFF);
    }
    (void)ZunRtcpRtpfbCcfbAddStream(&p, &stream);
    ZunRtcpRtpfbCcfbStreamDestruct(&stream);
  }
  void operator()(ZunRtcpRtpfbTransportCc& p) const {
    p.packetCount = input.U8();
    ZunTime now = static_cast<ZunTime>(input.U32()) * 1000000;
    ZunUint16 next = seq;
    for (std::size_t n = input.Below(40); n > 0; --n, ++next) {
      const std::uint8_t how = input.U8();
      // Most come soon after the last one, some late, early or without a time.
      now += how < 200 ? ZunTime{how} * 250000 : (ZunTime{how} - 228) * 300000000;
      (void)ZunRtcpRtpfbTransportCcAddPacket(&p, how % 8 != 0, next,
                                             how == 255 ? ZUN_RTCPRTPFB_TRANSPORTCC_NO_TIME : now);
    }
    (void)ZunRtcpRtpfbTransportCcGetEstimatedPacketsRemaining(&p, input.U16());
  }
  void operator()(ZunRtcpRtpfbAbafb& p) const {
    (void)ZunRtcpRtpfbAbafbSetDelay(&p, input.U32());
    p.timestamp = input.U32();
    p.aba_data_rate = input.U32();
  }
  void operator()(ZunRtcpRtpfbUnknown& p) const {
    const auto fmt = static_cast<ZunRtcpRtpfbType>(input.Below(40));
    // Of a modelled type it may not be a part of a packet.
    if (input.Bool() && ZunRtcpRtpfbFeedbackMessageIsUnknown(fmt)) {
      (void)ZunRtcpRtpfbUnknownSetFeedbackMessageType(&p, fmt);
    } else {
      (void)ZunRtcpRtpfbUnknownSetData(&p, Text(input, 40));
    }
  }
  void operator()(ZunRtcpPsfbPli& p) const { (void)ZunRtcpPsfbPliSetProfileSpecificExt(&p, Text(input, 20)); }
  void operator()(ZunRtcpPsfbSli& p) const {
    ZunRtcpPsfbSliItem item;
    if (ZunRtcpPsfbSliItemConstructFull(&item, seq, number & 0xFFFF, octet, a) == nullptr) return;
    (void)ZunRtcpPsfbSliItemSetPictureId(&item, input.U8());
    (void)ZunVector_ZunRtcpPsfbSliItemPushBack(&p.items, &item);
  }
  void operator()(ZunRtcpPsfbRpsi& p) const {
    switch (input.Below(3)) {
      case 0:
        (void)ZunRtcpPsfbRpsiSetPt(&p, input.U8());
        break;
      case 1:
        (void)ZunRtcpPsfbRpsiSetUnusedBits(&p, input.U8() & 7);
        break;
      default:
        (void)ZunRtcpPsfbRpsiSetRpsi(&p, Text(input, 20));
    }
  }
  void operator()(ZunRtcpPsfbFir& p) const {
    ZunRtcpPsfbFirEntry entry;
    ZunRtcpPsfbFirEntryConstructFull(&entry, number, octet, a);
    (void)ZunVector_ZunRtcpPsfbFirEntryPushBack(&p.fci, &entry);
  }
  void operator()(ZunRtcpPsfbTstr& p) const {
    ZunRtcpPsfbTstrEntry entry;
    if (ZunRtcpPsfbTstrEntryConstructFull(&entry, number, octet, static_cast<ZunUint8>(seq & 63), a) == nullptr) return;
    (void)ZunVector_ZunRtcpPsfbTstrEntryPushBack(&p.fci, &entry);
  }
  void operator()(ZunRtcpPsfbTsta& p) const {
    ZunRtcpPsfbTstaEntry entry;
    if (ZunRtcpPsfbTstaEntryConstructFull(&entry, number, octet, static_cast<ZunUint8>(seq & 63), a) == nullptr) return;
    (void)ZunVector_ZunRtcpPsfbTstaEntryPushBack(&p.fci, &entry);
  }
  void operator()(ZunRtcpPsfbUnknown& p) const {
    const auto fmt = static_cast<ZunRtcpPsfbType>(input.Below(40));
    // Of a modelled type it may not be a part of a packet.
    if (input.Bool() && ZunRtcpPsfbTypeIsUnknown(fmt)) {
      (void)ZunRtcpPsfbUnknownSetFeedbackMessageType(&p, fmt);
    } else {
      (void)ZunRtcpPsfbUnknownSetData(&p, Text(input, 40));
    }
  }
  void operator()(ZunRtcpPsfbAfbAbafb& p) const {
    (void)ZunRtcpPsfbAfbAbafbSetDelay(&p, input.U32());
    p.average_delay_difference = static_cast<ZunInt32>(input.U32());
    p.average_arrival_difference = input.U32();
  }
  void operator()(ZunRtcpPsfbAfbAlbr& p) const { p.available_bit_rate = input.U32(); }
  void operator()(ZunRtcpPsfbAfbShow& p) const {
    const ListOfZunRtcpPsfbAfbShowParameter parameters(input, a, MakeParameter);
    ZunRtcpPsfbAfbShow built;
    if (ZunRtcpPsfbAfbShowConstructFull(&built, number, other, octet, parameters) == nullptr) return;
    (void)ZunRtcpPsfbAfbShowAssign(&p, &built);
    ZunRtcpPsfbAfbShowDestruct(&built);
  }
  void operator()(ZunRtcpPsfbAfbShowAck& p) const { ZunRtcpPsfbAfbShowAckConstructFull(&p, number, octet, other); }
  void operator()(ZunRtcpPsfbAfbLir& p) const {
    ZunRtcpPsfbAfbLirEntry entry;
    if (ZunRtcpPsfbAfbLirEntryConstructFull(&entry, number, octet, octet / 2, Text(input, 12), a) == nullptr) {
      return;
    }
    (void)ZunRtcpPsfbAfbLirEntrySetPayloadType(&entry, input.U8());
    (void)ZunVector_ZunRtcpPsfbAfbLirEntryPushBack(&p.fci, &entry);
    ZunRtcpPsfbAfbLirEntryDestruct(&entry);
  }
  void operator()(ZunRtcpPsfbAfbRemb& p) const {
    if (input.Bool()) {
      (void)ZunRtcpPsfbAfbRembSetFeedbackSources(&p, ListOfZunRtpSourceId(input, a, MakeSource));
    } else {
      (void)ZunRtcpPsfbAfbRembSetBitrate(&p, static_cast<ZunFloat32>(number) * static_cast<ZunFloat32>(seq));
    }
  }
  void operator()(ZunRtcpPsfbAfbUnknown& p) const {
    const Text data(input, 40);
    // What begins as a modelled message does is read as one.
    if (data.StartsWith("REMB") || data.StartsWith("Nr")) return;
    (void)ZunRtcpPsfbAfbUnknownSetData(&p, data);
  }

  // The envelopes hand on to the message that they hold.
#define CHANGE_KIND(value, Kind, member, Getter) \
  case value:                                    \
    return (*this)(const_cast<Kind&>(*Getter(&p)));
  void operator()(ZunRtcpRtpfb& p) const {
    switch (p.unk.fmt) {
      ZUN_RTCPRTPFB_KINDS(CHANGE_KIND)
      default:
        return (*this)(p.unk);
    }
  }
  void operator()(ZunRtcpPsfbAfb& p) const {
    switch (p.unk.afbType) {
      ZUN_RTCPPSFBAFB_KINDS(CHANGE_KIND)
      default:
        return (*this)(p.unk);
    }
  }
  void operator()(ZunRtcpPsfb& p) const {
    switch (p.unk.fmt) {
      ZUN_RTCPPSFB_KINDS(CHANGE_KIND)
      default:
        return (*this)(p.unk);
    }
  }
  void operator()(ZunRtcpSubpacket& p) const {
    switch (p.unk.type) {
      ZUN_RTCPSUBPACKET_KINDS(CHANGE_KIND)
      default:
        return (*this)(p.unk);
    }
  }
};

// An empty object of the n-th kind.
using Construct = void (*)(ZunRtcpSubpacket* p, ZunAllocator* a);
template <class Kind, Kind* (*ConstructDefault)(Kind*, ZunAllocator*)>
void ConstructKind(ZunRtcpSubpacket* p, ZunAllocator* a) {
  ConstructDefault(reinterpret_cast<Kind*>(p), a);
}
#define CONSTRUCT_KIND(value, Kind, member, Getter) ConstructKind<Kind, Kind##ConstructDefault>,

constexpr Construct kConstruct[] = {
    ConstructKind<ZunRtcpSr, ZunRtcpSrConstructDefault>,
    ConstructKind<ZunRtcpRr, ZunRtcpRrConstructDefault>,
    ConstructKind<ZunRtcpSdes, ZunRtcpSdesConstructDefault>,
    ConstructKind<ZunRtcpBye, ZunRtcpByeConstructDefault>,
    ConstructKind<ZunRtcpApp, ZunRtcpAppConstructDefault>,
    ConstructKind<ZunRtcpPsfbPli, ZunRtcpPsfbPliConstructDefault>,
    ConstructKind<ZunRtcpPsfbSli, ZunRtcpPsfbSliConstructDefault>,
    ConstructKind<ZunRtcpPsfbRpsi, ZunRtcpPsfbRpsiConstructDefault>,
    ConstructKind<ZunRtcpPsfbFir, ZunRtcpPsfbFirConstructDefault>,
    ConstructKind<ZunRtcpPsfbTstr, ZunRtcpPsfbTstrConstructDefault>,
    ConstructKind<ZunRtcpPsfbTsta, ZunRtcpPsfbTstaConstructDefault>,
    ZUN_RTCPRTPFB_KINDS(CONSTRUCT_KIND) ZUN_RTCPPSFBAFB_KINDS(CONSTRUCT_KIND)
        ConstructKind<ZunRtcpUnknown, ZunRtcpUnknownConstructDefault>,
    ConstructKind<ZunRtcpRtpfbUnknown, ZunRtcpRtpfbUnknownConstructDefault>,
    ConstructKind<ZunRtcpPsfbUnknown, ZunRtcpPsfbUnknownConstructDefault>,
    ConstructKind<ZunRtcpPsfbAfbUnknown, ZunRtcpPsfbAfbUnknownConstructDefault>,
};

class Slot {
 public:
  explicit Slot(ZunAllocator* a) { ZunRtcpUnknownConstructDefault(&sp_.unk, a); }
  ~Slot() {
    ZunRtcpSubpacketDestruct(&sp_);
    ZunRtcpSubpacketDestruct(&sp_);
  }
  Slot(const Slot&) = delete;
  Slot& operator=(const Slot&) = delete;
  ZunRtcpSubpacket* get() { return &sp_; }
  const ZunRtcpSubpacket* get() const { return &sp_; }

  void Become(std::size_t kind, ZunAllocator* a) {
    ZunRtcpSubpacketDestruct(&sp_);
    kConstruct[kind](&sp_, a);
  }
  // False when the copy was refused; the slot is then as it was.
  bool BecomeCopyOf(const Slot& o) {
    ZunRtcpSubpacket copy;
    if (ZunRtcpSubpacketConstructCopy(&copy, o.get()) == nullptr) return false;
    Check(ContentsOf(copy) == ContentsOf(*o.get()), "a copy equals its source");
    ZunRtcpSubpacketDestruct(&sp_);
    sp_ = copy;
    return true;
  }

 private:
  ZunRtcpSubpacket sp_;
};

class Calls {
 public:
  explicit Calls(Input& input) : input_(input), packet_(b_), slots_{{Slot(a_), Slot(b_), Slot(a_), Slot(b_)}} {}

  void Run() {
    for (int calls = 0; !input_.AtEnd() && calls < 40; ++calls) {
      const std::uint8_t flags = input_.U8();
      if ((flags & 0xE0) == 0xE0) {
        for (Allocator* const allocator : {&a_, &b_}) allocator->Refuse(flags >> 3 & 3, (flags & 4) != 0);
      }
      Call(slots_[flags & 3], slots_[flags >> 2 & 3]);
      a_.RefuseNothing();
      b_.RefuseNothing();
    }
    for (Slot& slot : slots_) (void)ZunRtcpPacketAppendSubpacket(packet_, slot.get());
    CheckPacket(packet_);
  }

 private:
  std::size_t Refused() const { return a_.refused() + b_.refused(); }

  void Call(Slot& slot, Slot& other) {
    const std::size_t refused = Refused();
    bool done = true;
    switch (input_.Below(12)) {
      case 0:
        slot.Become(input_.Below(std::size(kConstruct)), input_.Bool() ? a_ : b_);
        break;
      case 1:
        done = slot.BecomeCopyOf(other);
        break;
      case 2:
        done = ZunRtcpSubpacketAssign(slot.get(), other.get()) != nullptr;
        if (done) Check(ContentsOf(*slot.get()) == ContentsOf(*other.get()), "an assignment equals its source");
        break;
      case 3:
        done = Append(slot);
        break;
      case 4:
        if (packet_.count() == 0) break;
        done = ZunRtcpPacketSetSubpacket(packet_, input_.Below(packet_.count()), slot.get()) != 0;
        break;
      case 5:
        (void)ZunRtcpPacketSetSubpacketCount(packet_, input_.Below(6));
        break;
      default:
        Change{input_, arguments_, input_.U32(), input_.U32(), input_.U16(), input_.U8()}(*slot.get());
    }
    Check(done || Refused() != refused, "a copy fails only when memory is refused");
  }

  bool Append(const Slot& slot) {
    const std::string before = ContentsOf(packet_);
    if (packet_.count() > 8) return true;
    if (ZunRtcpPacketAppendSubpacket(packet_, slot.get())) {
      Check(ContentsOf(packet_) == before + ContentsOf(*slot.get()) + '\n', "what is appended comes last");
      return true;
    }
    Check(ContentsOf(packet_) == before, "what cannot be appended leaves the packet as it was");
    return false;
  }

  Input& input_;
  Allocator arguments_;
  Allocator a_;
  Allocator b_;
  Packet packet_;
  std::array<Slot, 4> slots_;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Input input(data, size);
  Calls(input).Run();
  return 0;
}
