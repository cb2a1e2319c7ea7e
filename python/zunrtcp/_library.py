"""The shared library, its plain structs and the functions that this module calls."""

import ctypes
import enum
import functools
import os

SONAME = "libzunrtcp.so.0.1"
size_t = ctypes.c_size_t
pointer = ctypes.c_void_p


class DecodeReason(enum.IntEnum):
    """ZunRtcpReason.h"""

    NONE, EMPTY, HEADER_CUT_OFF, VERSION, LENGTH, PADDING, TOO_SHORT, LEFT_OVER, NO_ENTRIES, VALUE, NO_OBJECT, LIMIT, \
        ALLOCATION = range(13)


class EncodeReason(enum.IntEnum):
    """ZunRtcpReason.h"""

    NONE, EMPTY, NO_ENTRIES, TOO_MANY, TEXT_TOO_LONG, TOO_LONG, ITEM_TYPE, NAME, VALUE, NOT_WHOLE_WORDS, NO_FORM = range(11)


class DecodeRefusal(ctypes.Structure):
    """ZunRtcpDecodeRefusal"""

    _fields_ = [
        ("reason", ctypes.c_int32), ("index", size_t), ("type", ctypes.c_int32), ("count", ctypes.c_uint8),
        ("offset", size_t), ("length", size_t), ("stopped_at", size_t),
    ]


RefusalHandler = ctypes.CFUNCTYPE(None, pointer, ctypes.POINTER(DecodeRefusal))


class DecodeOptions(ctypes.Structure):
    """ZunRtcpDecodeOptions"""

    _fields_ = [
        ("tolerant", ctypes.c_uint8), ("max_subpackets", size_t), ("max_statuses", size_t), ("max_entries", size_t),
        ("on_refusal", RefusalHandler), ("user_data", pointer),
    ]


def library_path():
    return os.environ.get("ZUNRTCP_LIBRARY") or SONAME


_signatures = {
    "ZunAllocatorGetSystem": (pointer,),
    "ZunRtcpPacketConstructDefault": (pointer, pointer, pointer),
    "ZunRtcpPacketDestruct": (None, pointer),
    "ZunRtcpPacketGetSubpacketCount": (size_t, pointer),
    "ZunRtcpPacketGetSubpacket": (pointer, pointer, size_t),
    "ZunRtcpPacketAppendSubpacket": (ctypes.c_uint8, pointer, pointer),
    "ZunRtcpPacketFindUnencodable": (ctypes.c_int32, pointer, ctypes.c_int32, ctypes.POINTER(size_t)),
    "ZunRtcpPacketGetEncodedLength": (size_t, pointer, ctypes.c_int32),
    "ZunRtcpPacketEncode": (ctypes.c_uint8, pointer, pointer, size_t, ctypes.c_int32, ctypes.POINTER(size_t)),
    "ZunRtcpPacketDecode": (ctypes.c_uint8, pointer, ctypes.c_char_p, size_t, ctypes.c_int32, pointer, pointer),
    "ZunRtcpDecodeOptionsConstructDefault": (None, pointer),
    "ZunRtcpDecodeReasonGetText": (ctypes.c_char_p, ctypes.c_int32),
    "ZunRtcpEncodeReasonGetText": (ctypes.c_char_p, ctypes.c_int32),
    "ZunRtcpSubpacketGetType": (ctypes.c_int32, pointer),
}


@functools.cache
def _functions():
    """The library, loaded when it is first needed: packets as dictionaries do without it."""
    functions = ctypes.CDLL(library_path())
    for name, (result, *arguments) in _signatures.items():
        getattr(functions, name).restype = result
        getattr(functions, name).argtypes = arguments
    return functions


def call(name, *arguments, result=None):
    """Calls a function of the library by its C name. One that this module does not know itself gets its arguments as
    ctypes converts them, and `result` says what it returns: a ctypes type."""
    function = getattr(_functions(), name)
    if name not in _signatures:
        function = _functions()[name]  # one of its own, as restype belongs to the object
        function.restype = result
    return function(*arguments)
