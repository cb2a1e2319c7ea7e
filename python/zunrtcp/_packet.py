"""Packets and their subpackets, decoding and encoding."""

import ctypes
import dataclasses

from ._library import DecodeOptions, DecodeReason, EncodeReason, RefusalHandler, call, size_t

DIALECTS = {"house": 0, "registered": 1}


@dataclasses.dataclass(frozen=True)
class Refusal:
    """A subpacket that was refused: ZunRtcpDecodeRefusal."""

    reason: DecodeReason
    index: int
    type: int
    count: int
    offset: int
    length: int
    stopped_at: int

    @property
    def text(self):
        return call("ZunRtcpDecodeReasonGetText", self.reason).decode()


class DecodeError(ValueError):
    """A datagram was refused: `refusals` says which of its subpackets and why, `packet` holds what was read."""

    def __init__(self, packet, refusals):
        super().__init__("; ".join(f"subpacket {each.index} at byte {each.offset}: {each.text}" for each in refusals))
        self.packet = packet
        self.refusals = refusals


class EncodeError(ValueError):
    """A packet cannot be encoded: subpacket number `index`, for `reason`."""

    def __init__(self, reason, index):
        super().__init__(f"subpacket {index}: {call('ZunRtcpEncodeReasonGetText', reason).decode()}")
        self.reason = reason
        self.index = index


@dataclasses.dataclass(frozen=True)
class Subpacket:
    """One RTCP packet of a compound one. `address` is that of its object, for `zunrtcp.call` with the functions of its
    kind; it is good as long as the packet is neither changed nor gone."""

    packet: "Packet" = dataclasses.field(repr=False)
    index: int
    type: int
    address: int = dataclasses.field(repr=False)

    def encode(self, dialect="house"):
        """Its own bytes."""
        alone = Packet()
        if not call("ZunRtcpPacketAppendSubpacket", alone.address, self.address):
            raise MemoryError
        return alone.encode(dialect)


class Packet:
    """A compound packet: a sequence of subpackets."""

    # A ZunRtcpPacket is a vector; this is more than any platform makes of it, aligned for all that is in it.
    _WORDS = 16

    def __init__(self):
        self._storage = (ctypes.c_uint64 * self._WORDS)()
        self.address = ctypes.addressof(self._storage)
        call("ZunRtcpPacketConstructDefault", self.address, call("ZunAllocatorGetSystem"))

    def __del__(self):
        call("ZunRtcpPacketDestruct", self.address)

    def __len__(self):
        return call("ZunRtcpPacketGetSubpacketCount", self.address)

    def __getitem__(self, index):
        number = index + len(self) if index < 0 else index
        if not 0 <= number < len(self):
            raise IndexError(f"subpacket {index} of {len(self)}")
        address = call("ZunRtcpPacketGetSubpacket", self.address, number)
        return Subpacket(self, number, call("ZunRtcpSubpacketGetType", address), address)

    def append(self, subpacket):
        """Appends a copy of one that may be another packet's."""
        if not call("ZunRtcpPacketAppendSubpacket", self.address, subpacket.address):
            raise MemoryError

    def encode(self, dialect="house"):
        """Its bytes; EncodeError where the dialect cannot say it."""
        number = DIALECTS[dialect]
        length = size_t(call("ZunRtcpPacketGetEncodedLength", self.address, number))
        octets = ctypes.create_string_buffer(max(1, length.value))
        if not call("ZunRtcpPacketEncode", self.address, octets, length, number, ctypes.byref(length)):
            index = size_t()
            reason = call("ZunRtcpPacketFindUnencodable", self.address, number, ctypes.byref(index))
            raise EncodeError(EncodeReason(reason), index.value)
        return octets.raw[: length.value]


def decode(datagram, dialect="house", tolerant=False):
    """The packet of a datagram's bytes. DecodeError when a subpacket is refused; `tolerant` skips such ones, tells them
    in the packet's `refusals` and is an error only when nothing is left."""
    packet = Packet()
    refusals = []

    def remember(_, each):
        each = each.contents
        refusals.append(Refusal(DecodeReason(each.reason), each.index, each.type, each.count, each.offset, each.length,
                                each.stopped_at))

    options = DecodeOptions()
    call("ZunRtcpDecodeOptionsConstructDefault", ctypes.addressof(options))
    options.tolerant = bool(tolerant)
    options.on_refusal = RefusalHandler(remember)
    octets = bytes(datagram)
    if not call("ZunRtcpPacketDecode", packet.address, octets, len(octets), DIALECTS[dialect], ctypes.addressof(options), None):
        raise DecodeError(packet, refusals)
    packet.refusals = refusals
    return packet
