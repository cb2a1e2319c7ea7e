#!/usr/bin/env python3
"""usage: ZUNRTCP_LIBRARY=... ZUNRTCP_TOOL=... python3 python/test_zunrtcp.py   what the module makes of datagrams, and
its metadata. Exits with 77 when all has passed that could run, and something could not."""

import ctypes
import json
import os
import pathlib
import re
import subprocess
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
NACK = bytes.fromhex("81CD0003 11223344 55667788 00640001")
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


@unittest.skipUnless(os.environ.get("ZUNRTCP_TOOL"), "ZUNRTCP_TOOL names no tool")
class Dictionaries(unittest.TestCase):
    def test_fields_are_read_and_changed_by_their_names(self):
        datagram = SR + NACK
        report, nack = zunrtcp.to_dict(datagram, "registered")["subpackets"]
        lost = nack["lost"]
        nack["lost"] = [seq + 1 for seq in lost]
        changed = zunrtcp.from_dict({"dialect": "registered", "subpackets": [report, nack]})
        self.assertEqual((report["sender"], report["rtpTimestamp"], lost), (0x12345678, 90000, [100, 101]))
        self.assertEqual(changed, SR + NACK[:-4] + bytes.fromhex("00650001"))

    def test_every_documented_packet_comes_back(self):
        text = (here.parent / "docs/json.md").read_text()
        packets = {"registered": [], "house": []}
        for dialect, block in re.findall(r"^```json(?: (house))?\n(.*?)^```", text, re.MULTILINE | re.DOTALL):
            packets[dialect or "registered"] += map(json.loads, block.splitlines())
        self.assertGreater(min(map(len, packets.values())), 3)
        for dialect, documented in packets.items():
            datagrams = zunrtcp.from_dicts([{"subpackets": [packet]} for packet in documented], dialect)
            values = zunrtcp.to_dicts(datagrams, dialect)
            self.assertEqual([value["subpackets"] for value in values], [[packet] for packet in documented])
            self.assertEqual(zunrtcp.from_dicts(values), datagrams)

    def test_both_forms_agree(self):
        for dialect in zunrtcp.DIALECTS:
            value = zunrtcp.to_dict(SR + SDES + PLI, dialect)
            self.assertEqual([each["type"] for each in value["subpackets"]],
                             [each.type for each in zunrtcp.decode(SR + SDES + PLI, dialect)])
            self.assertEqual((value["dialect"], zunrtcp.from_dict(value)), (dialect, SR + SDES + PLI))

    def test_what_is_refused_is_in_the_dictionary(self):
        first, second = zunrtcp.to_dicts([SR + CUT_OFF, PLI], "registered")
        self.assertEqual((first["refused"]["offset"], len(first["subpackets"])), (len(SR), 1))
        self.assertNotIn("refused", second)
        outcomes = [value["verdict"]["outcome"] for value in zunrtcp.to_dicts([SR + CUT_OFF, PLI], "house")]
        self.assertEqual(outcomes, ["refused", "identical"])

    def test_dictionaries_do_without_the_library(self):
        program = f"import zunrtcp; print(zunrtcp.from_dict(zunrtcp.to_dict(bytes.fromhex('{PLI.hex()}'))).hex())"
        ran = subprocess.run([sys.executable, "-c", program], cwd=here,
                             env={**os.environ, "ZUNRTCP_LIBRARY": "/no/such/library", "PYTHONDONTWRITEBYTECODE": "1"},
                             capture_output=True, text=True, check=True)
        self.assertEqual(ran.stdout.strip(), PLI.hex())

    def test_what_cannot_be_written_is_told(self):
        with self.assertRaisesRegex(zunrtcp.ToolError, r"datagram 1: subpackets\[0\]\.source: is missing"):
            zunrtcp.from_dict({"subpackets": [{"kind": "PLI", "sender": 1}]}, "registered")
        with self.assertRaisesRegex(ValueError, "names no dialect"):
            zunrtcp.from_dict({"subpackets": []})
        with self.assertRaisesRegex(ValueError, "no bytes"):
            zunrtcp.to_dict(b"")
        with self.assertRaises(KeyError):
            zunrtcp.to_dict(PLI, "nobody's")
        self.assertEqual((zunrtcp.to_dicts([]), zunrtcp.from_dicts([])), ([], []))

    def test_a_capture_is_read_as_it_comes(self):
        capture, times = here.parent / "samples/ortp_avpf.pcap", []
        for value in zunrtcp.read_capture(capture, "registered", ["--type", "nack"]):
            times.append(float(value["time"]))
        self.assertGreater(len(times), 10)
        self.assertEqual(times, sorted(times))
        reader = zunrtcp.read_capture(capture)
        self.assertEqual(next(reader)["datagram"], 1)
        reader.close()
        with self.assertRaisesRegex(zunrtcp.ToolError, "no-such-file"):
            list(zunrtcp.read_capture("no-such-file"))

    def test_a_tool_that_is_not_there_is_told(self):
        before = os.environ["ZUNRTCP_TOOL"]
        os.environ["ZUNRTCP_TOOL"] = "/no/such/tool"
        try:
            with self.assertRaisesRegex(zunrtcp.ToolError, "/no/such/tool cannot be run"):
                zunrtcp.to_dict(PLI)
        finally:
            os.environ["ZUNRTCP_TOOL"] = before


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
        blocks = re.findall(r"```python\n(.*?)```", (here / "README.md").read_text(), re.DOTALL)
        self.assertEqual(len(blocks), 3)
        run = [line.strip() for line in pathlib.Path(__file__).read_text().splitlines()]
        for block in blocks:
            shown = [line.strip() for line in block.splitlines()]
            self.assertTrue(any(run[i : i + len(shown)] == shown for i in range(len(run))), block)

    def test_a_wheel_is_made_of_it(self):
        try:
            from setuptools import build_meta
            import wheel  # noqa: F401
        except ImportError as missing:
            self.skipTest(str(missing))
        import contextlib
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
            self.assertLessEqual({f"zunrtcp/{path.name}" for path in here.glob("zunrtcp/*.py")}, set(files.namelist()))
            self.assertIn("Name: zunrtcp\nVersion: 0.1.0\n", files.read("zunrtcp-0.1.0.dist-info/METADATA").decode())


if __name__ == "__main__":
    program = unittest.main(exit=False)
    sys.exit(1 if not program.result.wasSuccessful() else 77 if program.result.skipped else 0)
