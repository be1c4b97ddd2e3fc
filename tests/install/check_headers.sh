# check_headers.sh COMPILER PREFIX FLAGS: each installed header compiles alone, and twice in one source, with
# nothing but what the pkg-config files say: as C++17, with Clang too where there is one, and all of them together
# as C++20. The source FLAGS, which combines flags of the record, compiles in each way.
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
for way in "$compiler" clang++ clang++-14; do
    command -v "$way" >/dev/null || continue
    echo "as C++17 with $way"
    compiles "$way -std=c++17" "$combining" <"$combining"
    printf '%s\n' "$headers" | xargs -P 2 -I{} bash -c 'check "$1" "$2"' _ "$way -std=c++17" {}
    [ "$way" = "$compiler" ] || break
done
{ sed 's/.*/#include <&>/' <<<"$headers"; cat "$combining"; } | compiles "$compiler -std=c++20" "all headers"
