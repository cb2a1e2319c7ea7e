"""RTCP compound packets from Python, for tests: decode a datagram, look at its subpackets, encode them again, in the
dialect of this system's peers ("house") or that of the RFCs ("registered").

    packet = zunrtcp.decode(datagram, "registered")
    [subpacket.type for subpacket in packet]
    packet.encode("house")

It calls the shared library: the file that ZUNRTCP_LIBRARY names, or libzunrtcp where the system finds it."""

from ._library import DecodeReason, EncodeReason, call, library_path
from ._packet import DIALECTS, DecodeError, EncodeError, Packet, Refusal, Subpacket, decode

__all__ = [
    "DIALECTS", "DecodeError", "DecodeReason", "EncodeError", "EncodeReason", "Packet", "Refusal", "Subpacket", "call",
    "decode", "library_path",
]
__version__ = "0.1.0"
