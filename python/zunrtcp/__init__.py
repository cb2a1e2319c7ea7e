"""RTCP compound packets from Python, for tests: decode a datagram, look at its subpackets, encode them again, in the
dialect of this system's peers ("house") or that of the RFCs ("registered").

    packet = zunrtcp.decode(datagram, "registered")
    [subpacket.type for subpacket in packet]
    packet.encode("house")

It calls the shared library: the file that ZUNRTCP_LIBRARY names, or libzunrtcp where the system finds it. Datagrams as
dictionaries, with every field by its name, are made by the tool: the program that ZUNRTCP_TOOL names, or zunrtcp.

    zunrtcp.to_dict(datagram, "registered")["subpackets"][0]["sender"]
    zunrtcp.from_dict({"dialect": "registered", "subpackets": [{"kind": "PLI", "sender": 1, "source": 2}]})"""

from ._dicts import ToolError, from_dict, from_dicts, read_capture, to_dict, to_dicts, tool_path
from ._library import DecodeReason, EncodeReason, call, library_path
from ._packet import DIALECTS, DecodeError, EncodeError, Packet, Refusal, Subpacket, decode

__all__ = [
    "DIALECTS", "DecodeError", "DecodeReason", "EncodeError", "EncodeReason", "Packet", "Refusal", "Subpacket", "ToolError",
    "call", "decode", "from_dict", "from_dicts", "library_path", "read_capture", "to_dict", "to_dicts", "tool_path",
]
__version__ = "0.1.0"
