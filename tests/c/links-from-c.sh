#!/bin/sh
# usage: links-from-c.sh CC LIBRARY INCLUDE_ROOT [FLAG...]
# Builds UseFromC.c as strict C11, links it with the C compiler alone, without the C++ runtime, and runs it. The
# public headers must also stand alone as C++17.
set -eu
cc=$1 library=$2 root=$3
shift 3
here=$(cd "$(dirname "$0")" && pwd)
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
# -O0: a call that is not inlined must find the inline function's symbol in the library.
"$cc" -std=c11 -O0 -Wall -Wextra -Wpedantic -Werror -I"$root" "$@" "$here/UseFromC.c" "$library" -o "$work/use"
LD_LIBRARY_PATH=$(dirname "$library")${LD_LIBRARY_PATH:+:$LD_LIBRARY_PATH} "$work/use"
printf '#include "Zun/Rtp/ZunRtcpPacket.h"\n' > "$work/alone.cpp"
c++ -std=c++17 -Wall -Wextra -Wpedantic -Werror -fsyntax-only -I"$root" "$work/alone.cpp"
