# guides.sh CMAKE COMPILER PREFIX LIBDIR PAGES HOSTS WORK: builds the programs that the guides are, each as its
# page says, and runs them beside a user who looks what there is to pick and leaves.
set -euo pipefail
cmake=$1 compiler=$2 prefix=$3 libdir=$4 pages=$5 hosts=$6 work=$7
rm -rf "$work"
mkdir -p "$work/hosts" "$work/suppliers"

# blocks LANGUAGE PAGE: the blocks of that language, one behind the other.
blocks() {
    awk -v begin="\`\`\`$1" '$0 == begin {inside = 1; next} /^```$/ {inside = 0} inside' "$2"
}
expect() {
    [ "$2" = "$3" ] || { printf '%s: it prints\n%s\n' "$1" "$2"; exit 1; }
}

# Beside the page's own program the same with the user in it.
blocks cmake "$pages/guide-hosts.md" >"$work/hosts/CMakeLists.txt"
blocks cpp "$pages/guide-hosts.md" >"$work/hosts/main.cpp"
grep -q 'int main' "$work/hosts/main.cpp"
echo "target_sources(our_program PRIVATE \"$hosts/looking_user.cpp\")" >>"$work/hosts/CMakeLists.txt"
"$cmake" -S "$work/hosts" -B "$work/hosts/build" -G Ninja -D CMAKE_CXX_COMPILER="$compiler" \
    -D CMAKE_PREFIX_PATH="$prefix" -D CMAKE_CXX_FLAGS="-Wall -Wextra -Werror" >/dev/null
"$cmake" --build "$work/hosts/build"
seen=$("$work/hosts/build/our_program" "$work/office.db" "$work/saved.qvk")
grep -q 'RangePeriodMonth1="1" RangePeriodYear2="2024" RangePeriodMonth2="6"' "$work/saved.qvk"
[ "$(wc -l <<<"$seen")" -gt 10 ] || expect guide-hosts "$seen" 'the taxpayers of the sample office'
expect guide-hosts "$(grep '^20[0-9][0-9]-' <<<"$seen")" '2024-03 Иванов'

blocks cpp "$pages/guide-suppliers.md" >"$work/suppliers/main.cpp"
grep -q 'int main' "$work/suppliers/main.cpp"
# shellcheck disable=SC2046
"$compiler" -std=c++20 -fPIC -Wall -Wextra -Werror "$work/suppliers/main.cpp" "$hosts/looking_user.cpp" \
    -o "$work/suppliers/program" $(pkg-config --cflags --libs Vk_DocQuery) -Wl,-rpath,"$libdir"
seen=$("$work/suppliers/program") || [ $? = 1 ] # as it ends when its dialog is cancelled
expect guide-suppliers "$seen" 'one request for 1 streams
Комплект 7 of ООО "Ромашка"
7701000001|770101001|ООО "Ромашка"|
7701000001|780101001|ООО "Ромашка", филиал в Твери|ООО "Ромашка"'
