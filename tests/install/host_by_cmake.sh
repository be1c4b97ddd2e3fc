# host_by_cmake.sh CMAKE COMPILER PREFIX SOURCES WORK: builds the hosts by find_package and runs them.
# The tree is moved before, to a place with blanks in its name.
set -euo pipefail
cmake=$1 compiler=$2 prefix=$3 sources=$4 work=$5
rm -rf "$work"
mkdir -p "$work/files"
cp -a "$prefix" "$work/a tree of ours"
prefix="$work/a tree of ours"
"$cmake" -S "$sources" -B "$work/build" -G Ninja -D CMAKE_CXX_COMPILER="$compiler" \
    -D CMAKE_PREFIX_PATH="$prefix" -D CMAKE_BUILD_TYPE=Debug
"$cmake" --build "$work/build"
for host in own_records sql_records; do
    mkdir -p "$work/files/$host"
    "$work/build/$host" "$work/files/$host"
done
# They were built with the tree that was moved, not with the one it was moved from.
if ldd "$work/build/sql_records" | grep 'libVk_' | grep -v -F "$prefix/"; then exit 1; fi
# An office that the installed program makes is one that a host opens.
made="sqlite:$work/files/made.db"
"$prefix/bin/vk_make_office" --persons 50 --streams 20 --forms 5 "$made"
"$work/build/sql_records" "$work/files/sql_records" "$made" | grep -E '^[1-9][0-9]* taxpayers$'
