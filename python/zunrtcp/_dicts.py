"""Datagrams as dictionaries, in the JSON form of the tool (docs/json.md), which does the work: one run of it for any
number of datagrams."""

import json
import os
import subprocess

from ._packet import DIALECTS


class ToolError(ValueError):
    """The tool refuses what it was given, or is not there."""


def tool_path():
    return os.environ.get("ZUNRTCP_TOOL") or "zunrtcp"


def _start(arguments):
    streams = dict.fromkeys(("stdin", "stdout", "stderr"), subprocess.PIPE)
    try:
        return subprocess.Popen([tool_path(), *arguments], text=True, **streams)
    except OSError as error:
        raise ToolError(f"{tool_path()} cannot be run ({error.strerror}): install the tool, or name it in ZUNRTCP_TOOL") from error


def _run(arguments, text):
    """The lines that the tool prints. It exits with 1 when something in a datagram is refused, which they tell."""
    tool = _start(arguments)
    printed, complaint = tool.communicate(text)
    if tool.returncode not in (0, 1):
        raise ToolError(complaint.strip())
    return printed.splitlines()


def _option(dialect):
    if dialect not in DIALECTS:
        raise KeyError(dialect)
    return ["--dialect", dialect]


def _dicts(lines, dialect):
    """Each names its dialect, so that it can be encoded as it stands."""
    for line in lines:
        value = json.loads(line)
        if "totals" not in value:
            yield {**value, "dialect": dialect}


def to_dicts(datagrams, dialect="house"):
    """A dictionary for each datagram's bytes. What is refused is no error: `refused` tells of it, in the house's dialect
    `verdict` alone."""
    lines = [bytes(datagram).hex() for datagram in datagrams]
    if not all(lines):
        raise ValueError("a datagram has no bytes")
    return list(_dicts(_run(["decode", "--json", "--hex", *_option(dialect), "-"], "\n".join(lines)), dialect)) if lines else []


def to_dict(datagram, dialect="house"):
    return to_dicts([datagram], dialect)[0]


def from_dicts(values, dialect=None):
    """The bytes of each dictionary, in the dialect that it names, or in `dialect`. ToolError names the field that cannot be
    written."""
    values = list(values)
    if dialect is None and not all("dialect" in value for value in values):
        raise ValueError("a dictionary names no dialect, and none is given")
    option = [] if dialect is None else _option(dialect)
    return [bytes.fromhex(line) for line in _run(["encode", *option, "-"], json.dumps(values))] if values else []


def from_dict(value, dialect=None):
    return from_dicts([value], dialect)[0]


def read_capture(path, dialect="house", options=()):
    """Goes through the RTCP of a pcap or pcapng file, a dictionary for each datagram. `options` are further ones of
    `zunrtcp decode`: ["--type", "nack"]."""
    tool = _start(["decode", "--json", *_option(dialect), *options, os.fspath(path)])
    try:
        tool.stdin.close()
        yield from _dicts(tool.stdout, dialect)
        complaint = tool.stderr.read()
        if tool.wait() not in (0, 1):
            raise ToolError(complaint.strip())
    finally:
        tool.kill()  # who stops early leaves none behind
        tool.wait()
        tool.stdout.close()
        tool.stderr.close()
