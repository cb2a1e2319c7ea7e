#!/usr/bin/env bash
# usage: tables-check-themselves.sh CXX ROOT   expects the compiler to refuse every wrong table of WrongTable.cpp and to
# say what is wrong with it, and to take the right one
set -euo pipefail
cxx=$1
root=$2
source=$root/tests/compile/WrongTable.cpp

compile() { "$cxx" -std=c++20 -fsyntax-only -fno-exceptions -fno-rtti -I "$root" -DWRONG="$1" "$source" 2>&1; }

compile 0
count=0
while IFS=: read -r number message; do
  if output=$(compile "$number"); then
    echo "WRONG == $number compiles, but should say: $message" >&2
    exit 1
  fi
  if ! grep -qF "${message# }" <<< "$output"; then
    echo "WRONG == $number is refused, but nothing says: $message" >&2
    echo "$output" >&2
    exit 1
  fi
  count=$((count + 1))
done < <(sed -nE 's/^#elif WRONG == ([0-9]+)  \/\/ [^:]*: (.*)$/\1:\2/p' "$source")
echo "$count wrong tables are refused by name"
[ "$count" -ge 7 ]
