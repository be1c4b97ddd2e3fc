#!/usr/bin/env bash
# under_manager.sh PROGRAM [ARGUMENT ...]
# Runs a program on the X server that is there, under a window manager of its own. Ends with 77 without one.
set -euo pipefail
command -v openbox >/dev/null || { echo "no openbox" >&2; exit 77; }
work=$(mktemp -d)
HOME=$work openbox >"$work/log" 2>&1 &
manager=$!
trap 'kill "$manager" 2>/dev/null || true; rm -rf "$work"' EXIT
"$@"
