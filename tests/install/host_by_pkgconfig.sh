# host_by_pkgconfig.sh COMPILER LIBDIR SOURCES WORK README: builds the hosts by pkg-config and runs them;
# compiles the program that the README shows.
set -euo pipefail
compiler=$1 libdir=$2 sources=$3 work=$4 readme=$5
rm -rf "$work"
mkdir -p "$work"

build_and_run() {
    local host=$1 module=$2
    # shellcheck disable=SC2046
    "$compiler" -std=c++20 -fPIC -Wall -Wextra -Werror "$sources/$host.cpp" -o "$work/$host" \
        $(pkg-config --cflags --libs "$module") -Wl,-rpath,"$libdir"
    mkdir -p "$work/files/$host"
    "$work/$host" "$work/files/$host"
}

[ "$(pkg-config --modversion Vk_DocQuery)" = "$(pkg-config --modversion Vk_Records)" ]
build_and_run own_records Vk_DocQuery
build_and_run sql_records Vk_Records

awk '/^```cpp$/ {inside = 1; next} /^```$/ && inside {exit} inside' "$readme" >"$work/readme.cpp"
grep -q 'int main()' "$work/readme.cpp"
# shellcheck disable=SC2046
"$compiler" -std=c++20 -fPIC -Wall -Wextra -Werror "$work/readme.cpp" -o "$work/readme" \
    $(pkg-config --cflags --libs Vk_Records)
