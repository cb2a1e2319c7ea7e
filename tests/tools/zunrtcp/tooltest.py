"""What the tests of the tool's commands share. Their arguments are the program and the directory of the samples."""

import pathlib
import struct
import subprocess
import sys
import tempfile
import unittest

TOOL = pathlib.Path(sys.argv[1]).resolve()
SAMPLES = pathlib.Path(sys.argv[2])

FINE, UNEXPLAINED, BAD_INPUT = 0, 1, 2

# Sanitizers need address space without bounds.
SANITIZED = b"__asan" in TOOL.read_bytes()

RR = bytes.fromhex("80C9000100000001")
MALFORMED_RR = bytes.fromhex("81C9000100000001")


def run(*arguments, stdin=None):
    result = subprocess.run([TOOL, *map(str, arguments)], input=stdin, stdout=subprocess.PIPE, stderr=subprocess.PIPE,
                            check=False, timeout=60)
    return result.returncode, result.stdout.decode(), result.stderr.decode()


def packet(payload, port=5005):
    """An IPv4 packet with a UDP datagram."""
    udp = struct.pack(">HHHH", port, port + 2, 8 + len(payload), 0) + payload
    return struct.pack(">BBHHHBBH4s4s", 0x45, 0, 20 + len(udp), 0, 0, 64, 17, 0, bytes([192, 0, 2, 1]),
                       bytes([192, 0, 2, 2])) + udp


def capture(*packets, link=101, snap=65535):
    """A pcap file of raw IP packets."""
    records = b"".join(struct.pack("<IIII", 1795222299, i, min(snap, len(each)), len(each)) + each[:snap]
                       for i, each in enumerate(packets))
    return struct.pack("<IHHiIII", 0xA1B2C3D4, 2, 4, 0, 0, 65535, link) + records


class Case(unittest.TestCase):
    def setUp(self):
        self.directory = tempfile.TemporaryDirectory()
        self.addCleanup(self.directory.cleanup)

    def file(self, content):
        path = pathlib.Path(self.directory.name) / "made.pcap"
        path.write_bytes(content)
        return path

    def expect_error(self, arguments, message):
        """One line on standard error, and the status of bad input; returns what was printed."""
        status, output, error = run("decode", *arguments)
        self.assertEqual(error, f"zunrtcp: {message}\n")
        self.assertEqual(status, BAD_INPUT)
        return output
