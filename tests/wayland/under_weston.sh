#!/bin/sh
# under_weston.sh PROGRAM [ARGUMENT ...]: runs the program on a Wayland display of its own.
# Ends as the program does; with 77 where the system lacks what it needs.
set -eu
command -v weston >/dev/null || { echo "Skipped: weston is not installed"; exit 77; }
# The folder is for the socket alone, which so cannot meet another run's.
XDG_RUNTIME_DIR=$(mktemp -d)
chmod 0700 "$XDG_RUNTIME_DIR"
export XDG_RUNTIME_DIR
weston --backend=headless-backend.so --socket=desk --width=1366 --height=768 --idle-time=0 \
    >"$XDG_RUNTIME_DIR/weston.log" 2>&1 &
weston=$!
finish() {
    result=$?
    trap - EXIT
    kill "$weston" 2>/dev/null || true
    wait "$weston" 2>/dev/null || true
    rm -rf "$XDG_RUNTIME_DIR"
    exit "$result"
}
trap finish EXIT
trap 'exit 143' INT TERM
tries=0
until [ -S "$XDG_RUNTIME_DIR/desk" ]; do
    tries=$((tries + 1))
    if [ $tries -gt 400 ] || ! kill -0 "$weston" 2>/dev/null; then
        echo "the compositor did not start:" >&2
        cat "$XDG_RUNTIME_DIR/weston.log" >&2
        exit 1
    fi
    sleep 0.05
done
unset DISPLAY
result=0
# Without a keyboard and a pointer, which this compositor has not, Qt 6.4's own input method falls.
WAYLAND_DISPLAY=desk QT_QPA_PLATFORM=wayland QT_IM_MODULE=compose "$@" || result=$?
exit $result
