# host_by_pkgconfig.sh COMPILER LIBDIR SOURCES WORK README GUIDE: builds the hosts by pkg-config and runs them;
# compiles the program that the README shows, and runs the short one of the guide for suppliers.
set -euo pipefail
compiler=$1 libdir=$2 sources=$3 work=$4 readme=$5 guide=$6
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

# program BLOCK PAGE NAME: the page's block that begins so, alone in a source.
program() {
    awk -v begin="\`\`\`$1" '$0 == begin {inside = 1; next} /^```$/ {inside = 0} inside' "$2" >"$work/$3.cpp"
    grep -q 'int main()' "$work/$3.cpp"
}
program cpp "$readme" readme
program 'cpp alone' "$guide" supplier
[ "$(grep -c -v '^$' "$work/supplier.cpp")" -le 30 ]
# shellcheck disable=SC2046
"$compiler" -std=c++20 -fPIC -Wall -Wextra -Werror "$work/readme.cpp" -o "$work/readme" \
    $(pkg-config --cflags --libs Vk_Records)
# The supplier as it stands, beside a user who looks what there is to pick and leaves.
# shellcheck disable=SC2046
"$compiler" -std=c++20 -fPIC -Wall -Wextra -Werror "$work/supplier.cpp" "$sources/looking_user.cpp" \
    -o "$work/supplier" $(pkg-config --cflags --libs Vk_DocQuery) -Wl,-rpath,"$libdir"
seen=$("$work/supplier") || [ $? = 1 ] # as it ends when its dialog is cancelled
[ "$seen" = '7701000001|770101001|ООО "Ромашка"|' ] || { echo "the picker shows: $seen"; exit 1; }
