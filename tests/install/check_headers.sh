# check_headers.sh COMPILER PREFIX: each installed header compiles alone, and twice in one source, with
# nothing but what the pkg-config files say.
set -euo pipefail
compiler=$1 prefix=$2
modules=$(cd "$prefix/include" && ls -d Vk_*)
# shellcheck disable=SC2086
flags="-std=c++20 -fPIC -Wall -Wextra -Wpedantic -Werror $(pkg-config --cflags $modules)"

check() {
    # shellcheck disable=SC2086
    printf '#include <%s>\n#include <%s>\n' "$1" "$1" |
        "$compiler" $flags -fsyntax-only -x c++ - || { echo "does not compile alone: <$1>"; return 1; }
}
export -f check
export compiler flags

headers=$(cd "$prefix/include" && find . -name '*.h' -printf '%P\n' | sort)
[ -n "$headers" ] || { echo "no header is installed"; exit 1; }
echo "$headers"
printf '%s\n' "$headers" | xargs -P 2 -I{} bash -c 'check "$1"' _ {}
