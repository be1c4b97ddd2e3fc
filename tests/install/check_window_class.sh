# check_window_class.sh DATADIR BINDIR: the window of the installed program has the class that its menu entry names,
# so that the desktop shows the window under the entry's name and icon. Run it on a display.
set -euo pipefail
class=$(sed -n 's/^StartupWMClass=//p' "$1/applications/norvik.desktop")
home=$(mktemp -d)
program=
finish() {
    [ -z "$program" ] || kill "$program" 2>/dev/null || true
    rm -rf "$home"
}
trap finish EXIT
HOME=$home XDG_DATA_HOME=$home "$2/norvik" &
program=$!
window=$(timeout 60 xdotool search --sync --onlyvisible --name '^Норвик$' | head -n 1)
got=$(xprop -id "$window" WM_CLASS | sed 's/.*", "\(.*\)"$/\1/')
[ -n "$class" ] && [ "$got" = "$class" ] || { echo "the entry names \"$class\", the window is \"$got\""; exit 1; }
