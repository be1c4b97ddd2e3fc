#!/usr/bin/env bash
# on_x11.sh KEY PROGRAM [ARGUMENT ...]
# Runs a program on an X server of its own, which asks for a key. KEY says what the program has: good,
# wrong or none. Ends with 77 where there is no such server.
set -euo pipefail
for needed in Xvfb xauth mcookie; do
    command -v "$needed" >/dev/null || { echo "no $needed" >&2; exit 77; }
done
key=$1
shift

work=$(mktemp -d)
server=
finish() {
    [ -z "$server" ] || kill "$server" 2>/dev/null || true
    rm -rf "$work"
}
trap finish EXIT

# The server takes any key of its file; its number it tells only afterwards.
add_key() { xauth -q -f "$1" add ":$2" . "$3"; }
right=$(mcookie)
touch "$work/server" "$work/client"
mkfifo "$work/number"
add_key "$work/server" 0 "$right"
Xvfb -displayfd 3 -screen 0 1366x768x24 -dpi 96 -auth "$work/server" -nolisten tcp -noreset \
    3>"$work/number" >"$work/xvfb.log" 2>&1 &
server=$!
read -r -t 20 number <>"$work/number" || { cat "$work/xvfb.log" >&2; exit 1; }
case $key in
    good) add_key "$work/client" "$number" "$right" ;;
    wrong) add_key "$work/client" "$number" "$(mcookie)" ;;
    none) ;;
esac
export DISPLAY=":$number" XAUTHORITY="$work/client" QT_QPA_PLATFORM=xcb
unset WAYLAND_DISPLAY WAYLAND_SOCKET
"$@"
