#!/usr/bin/env python3
"""usage: ZUNRTCP_LIBRARY=... python3 python/test_zunrtcp.py   what the module makes of datagrams, and its metadata.
Exits with 77 when all has passed that could run, and something could not."""

import ctypes
import pathlib
import re
import sys
import tempfile
import unittest

sys.dont_write_bytecode = True
here = pathlib.Path(__file__).resolve().parent
sys.path.insert(0, str(here))
import zunrtcp  # noqa: E402

SR = bytes.fromhex("80C80006 12345678 E58A3000 80000000 00015F90 00000064 00002710")
SDES = bytes.fromhex("81CA0004 12345678 0108") + b"zun@host" + bytes(2)
PLI = bytes.fromhex("81CE0002 11223344 55667788")
# Congestion control feedback: FMT 11 for the RFCs, another for this system's peers.
CCFB = bytes.fromhex("8BCD0005 11223344 55667788 00010002 80008001 00000000")
CUT_OFF = bytes.fromhex("81C90007 11223344")


class Decoding(unittest.TestCase):
    def test_a_compound_packet_comes_back_in_both_dialects(self):
        for dialect in zunrtcp.DIALECTS:
            packet = zunrtcp.decode(SR + SDES + PLI, dialect)
            self.assertEqual([subpacket.type for subpacket in packet], [200, 202, 206])
            self.assertEqual(packet.encode(dialect), SR + SDES + PLI)
            self.assertEqual([subpacket.encode(dialect) for subpacket in packet], [SR, SDES, PLI])
            self.assertEqual(packet.refusals, [])

    def test_the_dialects_differ(self):
        packet = zunrtcp.decode(CCFB, "registered")
        self.assertEqual(packet.encode("registered"), CCFB)
        self.assertEqual((packet[0].type, packet.encode("house")[0] & 31), (205, 14))
        with self.assertRaises(KeyError):
            packet.encode("nobody's")

    def test_fields_are_read_by_the_functions_of_a_kind(self):
        datagram = SR
        # [the README's lines]
        packet = zunrtcp.decode(datagram, "registered")
        kinds = [subpacket.type for subpacket in packet]
        source = zunrtcp.call("ZunRtcpSrGetSource", ctypes.c_void_p(packet[0].address), result=ctypes.c_uint32)
        again = packet.encode("registered")
        self.assertEqual((kinds, source, again), ([200], 0x12345678, SR))

    def test_what_is_refused_is_told(self):
        with self.assertRaises(zunrtcp.DecodeError) as raised:
            zunrtcp.decode(SR + CUT_OFF)
        refusal = raised.exception.refusals[0]
        self.assertEqual((refusal.reason, refusal.index, refusal.type, refusal.count, refusal.offset),
                         (zunrtcp.DecodeReason.LENGTH, 1, 201, 1, len(SR)))
        self.assertEqual(len(raised.exception.packet), 1)
        self.assertIn(f"subpacket 1 at byte {len(SR)}: ", str(raised.exception))
        with self.assertRaises(zunrtcp.DecodeError):
            zunrtcp.decode(b"")

    def test_tolerance_reads_the_rest(self):
        short_rr = bytes.fromhex("81C90001 11223344")  # announces a report block, and has none
        packet = zunrtcp.decode(SR + short_rr + PLI, tolerant=True)
        self.assertEqual([subpacket.type for subpacket in packet], [200, 206])
        self.assertEqual([(each.index, each.reason) for each in packet.refusals], [(1, zunrtcp.DecodeReason.TOO_SHORT)])


class Packets(unittest.TestCase):
    def test_a_packet_is_a_sequence(self):
        packet = zunrtcp.decode(SR + PLI)
        self.assertEqual((len(packet), packet[-1].type), (2, 206))
        for index in (2, -3):
            with self.assertRaises(IndexError):
                packet[index]

    def test_subpackets_are_copied_between_packets(self):
        packet = zunrtcp.Packet()
        packet.append(zunrtcp.decode(SDES)[0])
        packet.append(packet[0])
        self.assertEqual(packet.encode(), SDES + SDES)

    def test_what_cannot_be_encoded_is_told(self):
        with self.assertRaises(zunrtcp.EncodeError) as raised:
            zunrtcp.Packet().encode()
        self.assertEqual((raised.exception.reason, raised.exception.index), (zunrtcp.EncodeReason.EMPTY, 0))

    def test_the_storage_of_a_packet_is_large_enough(self):
        packet = zunrtcp.Packet()
        for _ in range(100):
            packet.append(zunrtcp.decode(SDES)[0])
        beyond = list(packet._storage)[zunrtcp.Packet._WORDS // 2 :]
        self.assertEqual(set(beyond), {0})


class Metadata(unittest.TestCase):
    def test_one_version_everywhere(self):
        project = re.search(r"project\(ZunRtcp VERSION ([\d.]+)", (here.parent / "CMakeLists.txt").read_text()).group(1)
        written = re.search(r'^version = "(.*)"$', (here / "pyproject.toml").read_text(), re.MULTILINE).group(1)
        self.assertEqual((zunrtcp.__version__, written), (project, project))

    def test_the_reasons_are_those_of_the_header(self):
        header = (here.parent / "Zun/Rtp/Core/ZunRtcpReason.h").read_text()
        for reasons, prefix in ((zunrtcp.DecodeReason, "DECODE"), (zunrtcp.EncodeReason, "ENCODE")):
            declared = dict(re.findall(rf"ZUN_RTCP_{prefix}_REASON_(\w+) = (\d+)", header))
            declared.pop("COUNT")
            self.assertEqual({name: int(value) for name, value in declared.items()},
                             {reason.name: int(reason) for reason in reasons})

    def test_the_readme_shows_what_is_run(self):
        shown = re.search(r"```python\n(.*?)```", (here / "README.md").read_text(), re.DOTALL).group(1).splitlines()
        run = [line.strip() for line in pathlib.Path(__file__).read_text().splitlines()]
        start = run.index("# [the README's lines]") + 1
        self.assertEqual(run[start : start + len(shown)], shown)

    def test_a_wheel_is_made_of_it(self):
        try:
            from setuptools import build_meta
            import wheel  # noqa: F401
        except ImportError as missing:
            self.skipTest(str(missing))
        import contextlib
        import os
        import shutil
        import zipfile

        with tempfile.TemporaryDirectory() as work:
            shutil.copytree(here, work + "/python", ignore=shutil.ignore_patterns("__pycache__"))
            before = os.getcwd()
            os.chdir(work + "/python")
            try:
                with open(os.devnull, "w") as nowhere, contextlib.redirect_stdout(nowhere):
                    name = build_meta.build_wheel(work)
            finally:
                os.chdir(before)
            files = zipfile.ZipFile(f"{work}/{name}")
            self.assertIn("zunrtcp/_packet.py", files.namelist())
            self.assertIn("Name: zunrtcp\nVersion: 0.1.0\n", files.read("zunrtcp-0.1.0.dist-info/METADATA").decode())


if __name__ == "__main__":
    program = unittest.main(exit=False)
    sys.exit(1 if not program.result.wasSuccessful() else 77 if program.result.skipped else 0)
