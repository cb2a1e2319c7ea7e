"""What the tests against peers that are not ours share: the feedback receiver, the road between the two, asserts."""

import re
import select
import socket
import subprocess
import sys
import threading
import time

PATIENCE = 30  # seconds that a run may take; where nothing is slow it takes 5
LIMIT = 40  # after which everything is given up
MEDIA, RECEIVER = 0x12345678, 0x5A554E01  # the SSRCs
MEDIA_TYPE, RETRANSMISSION_TYPE = 96, 97


def skip_unless_installed(missing):
    if missing:
        print(f"skipped: not installed: {', '.join(missing)}")
        sys.exit(77)


class Program:
    """A program that is run, and the lines that it has printed so far."""

    def __init__(self, *command):
        words = [str(word) for word in command]
        self.process = subprocess.Popen(words, stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True)
        self.lines = []
        self.ports = [int(port) for port in self.process.stdout.readline().split()[1:]]  # after "listening"
        self.reading = threading.Thread(target=self.read, daemon=True)
        self.reading.start()

    def read(self):
        for line in self.process.stdout:
            self.lines.append(line)

    def that_begin(self, words):
        """What follows these words in the lines that begin with them."""
        return [line.rstrip("\n")[len(words) :] for line in self.lines if line.startswith(words)]

    def counted(self):
        words = self.that_begin("counted ")
        return {key: int(value) for key, value in (word.split("=") for word in words[0].split())} if words else {}

    def wait(self):
        """How it ended."""
        try:
            return self.process.wait(timeout=LIMIT)
        except subprocess.TimeoutExpired:
            return None
        finally:
            self.close()

    def close(self):
        self.process.kill()
        self.reading.join()


class Receiver(Program):
    BLOCK = re.compile(
        rf"block on 0x{MEDIA:08x}, lost (\d+)/256 .*, (-?\d+) in all, "
        r"highest sequence (\d+) in cycle (\d+), jitter (\d+), (?:no SR yet|last SR 0x(\w+), ([\d.]+) s ago)"
    )

    def __init__(self, program, answer_port, dialect):
        super().__init__(program, answer_port, LIMIT, dialect)
        self.rtp_port, self.rtcp_port = self.ports

    def blocks_sent(self):
        """Fraction lost, lost in all, highest sequence number, jitter, last SR and seconds since, of every block."""
        fields = self.BLOCK.findall("\n".join(self.that_begin("sent RR")))
        return [
            (int(lost), int(all_), (int(cycle) << 16) + int(seq), int(jitter), int(sr or "0", 16), float(delay or "0"))
            for lost, all_, seq, cycle, jitter, sr, delay in fields
        ]

    def asked_for(self):
        """The sequence numbers of all NACKs."""
        return [int(seq) for nack in self.that_begin("sent NACK: ") for seq in nack.split("lost ")[1].split()]


class Road:
    """Loses media packets on purpose: a few in small gaps, then all for a while, then a few in gaps again. It goes on
    when what was lost in gaps has been recovered, and when a picture has been asked for after the blackout: not at
    fixed moments, which a busy machine would miss."""

    EVERY = 20  # media packets there is a gap
    GAPS = (3, 6)  # in all, before the blackout and at the end
    BLACKOUT = 0.9  # in seconds at least
    BLACKOUT_PACKETS = 12  # that it takes at least, however slowly they come

    def __init__(self, receiver):
        self.receiver = receiver
        self.media_sent = self.gaps = self.lost_in_blackout = self.others_lost = 0
        self.lost_in_gaps = []  # by their sequence numbers
        self.blackout_until = None
        self.gap_sizes = iter((1, 2) * 3)
        self.rest_of_gap = 0

    def is_recovered(self):
        return self.rest_of_gap == 0 and len(self.receiver.that_begin("recovered ")) >= len(self.lost_in_gaps)

    def lost(self):
        return len(self.lost_in_gaps) + self.lost_in_blackout

    def what_was_lost(self):
        return (
            f"{self.media_sent} packets, of which the road lost {len(self.lost_in_gaps)} in {self.gaps} gaps and "
            f"{self.lost_in_blackout} in the blackout"
        )

    def are_recovered_those_lost(self):
        """What the receiver missed and got is what was lost in the gaps."""
        return [int(seq) for seq in self.receiver.that_begin("recovered ")] == self.lost_in_gaps != []

    def is_done(self):
        return self.gaps == self.GAPS[1] and self.is_recovered()

    def passes(self, rtp, is_media):
        """Whether the packet that comes now gets through."""
        self.media_sent += is_media
        if self.is_black():
            self.lost_in_blackout += is_media
            self.others_lost += not is_media
            return False
        if not is_media:
            return True
        if self.rest_of_gap == 0 and self.media_sent % self.EVERY == 0 and self.is_time_for_gap():
            self.gaps += 1
            self.rest_of_gap = next(self.gap_sizes)
        if self.rest_of_gap == 0:
            return True
        self.rest_of_gap -= 1
        self.lost_in_gaps.append(int.from_bytes(rtp[2:4], "big"))
        return False

    def is_time_for_gap(self):
        if self.gaps < self.GAPS[0]:
            return True
        was_picture_asked_for = len(self.receiver.that_begin("sent FIR")) > 0
        return was_picture_asked_for and self.gaps < self.GAPS[1]

    def is_black(self):
        if self.gaps < self.GAPS[0] or not self.is_recovered():
            return False
        now = time.monotonic()
        if self.blackout_until is None:
            self.blackout_until = now + self.BLACKOUT
        return now < self.blackout_until or self.lost_in_blackout < self.BLACKOUT_PACKETS


class LoopbackRoad(Road):
    """The road as sockets. What the peer sends again under its own number is lost in the blackout only."""

    def __init__(self, receiver_program, dialect):
        self.sockets = [socket.socket(socket.AF_INET, socket.SOCK_DGRAM) for _ in range(3)]
        for each in self.sockets:
            each.bind(("127.0.0.1", 0))
        self.rtp, self.rtcp, self.answers = self.sockets
        self.rtp_port, self.rtcp_port, answer_port = (each.getsockname()[1] for each in self.sockets)
        super().__init__(Receiver(receiver_program, answer_port, dialect))
        self.peer_port = None
        self.seen, self.sent_again = set(), []

    def lost(self):
        """For the receiver, what is sent again under its own number is received, each time."""
        return super().lost() - (len(self.sent_again) - self.others_lost)

    def carry(self, seconds):
        """What comes within this time."""
        end = time.monotonic() + seconds
        while (left := end - time.monotonic()) > 0:
            for ready in select.select(self.sockets, [], [], left)[0]:
                self.carry_one(ready, ready.recv(65536))

    def carry_one(self, ready, datagram):
        if ready is self.answers:
            ready.sendto(datagram, ("127.0.0.1", self.peer_port))
        elif ready is self.rtcp:
            ready.sendto(datagram, ("127.0.0.1", self.receiver.rtcp_port))
        elif self.passes_rtp(datagram):
            ready.sendto(datagram, ("127.0.0.1", self.receiver.rtp_port))

    def passes_rtp(self, datagram):
        seq = int.from_bytes(datagram[2:4], "big")
        is_first = seq not in self.seen
        self.seen.add(seq)
        if not is_first:
            self.sent_again.append(seq)
        return self.passes(datagram, is_first)


class Asserts:
    def __init__(self):
        self.count = self.failed = 0

    def that(self, holds, what):
        self.count += 1
        self.failed += 0 if holds else 1
        print(("ok      " if holds else "FAILED  ") + what)

    def equal(self, one, other, what):
        self.that(one == other, what)
        if one != other:
            print(f"        {one}\n        {other}")

    def conclude(self, lines):
        """The exit status. What was said is printed where it did not go well."""
        print(f"{self.count} assertions, {self.failed} failed")
        if self.failed:
            print("".join(lines))
        return 1 if self.failed else 0
