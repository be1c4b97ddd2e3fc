# check_headers.sh COMPILER PREFIX FLAGS: each installed header compiles alone, and twice in one source, with
# nothing but what the pkg-config files say: as C++17 and C++20, and with Clang where there is one. The source
# FLAGS combines flags of the record.
set -euo pipefail
compiler=$1 prefix=$2 combining=$3
modules=$(cd "$prefix/include" && ls -d Vk_*)
# shellcheck disable=SC2086
flags="-fPIC -Wall -Wextra -Wpedantic -Werror $(pkg-config --cflags $modules)"

compiles() {
    # shellcheck disable=SC2086
    $1 $flags -fsyntax-only -x c++ - || { echo "does not compile with $1: $2"; return 1; }
}
check() {
    printf '#include <%s>\n#include <%s>\n' "$2" "$2" | compiles "$1" "<$2>"
}
export -f check compiles
export flags

headers=$(cd "$prefix/include" && find . -name '*.h' -printf '%P\n' | sort)
[ -n "$headers" ] || { echo "no header is installed"; exit 1; }
echo "$headers"
ways=("$compiler -std=c++20" "$compiler -std=c++17")
for clang in clang++ clang++-14; do
    [ "${compiler##*/}" = "$clang" ] || ! command -v "$clang" >/dev/null || { ways+=("$clang -std=c++17"); break; }
done
for way in "${ways[@]}"; do
    echo "with $way"
    compiles "$way" "$combining" <"$combining"
    printf '%s\n' "$headers" | xargs -P 2 -I{} bash -c 'check "$1" "$2"' _ "$way" {}
done
