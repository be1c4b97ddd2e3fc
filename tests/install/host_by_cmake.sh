# host_by_cmake.sh CMAKE COMPILER PREFIX SOURCES WORK: builds the hosts by find_package and runs them.
set -euo pipefail
cmake=$1 compiler=$2 prefix=$3 sources=$4 work=$5
rm -rf "$work"
mkdir -p "$work/files"
"$cmake" -S "$sources" -B "$work/build" -G Ninja -D CMAKE_CXX_COMPILER="$compiler" \
    -D CMAKE_PREFIX_PATH="$prefix" -D CMAKE_BUILD_TYPE=Debug
"$cmake" --build "$work/build"
for host in own_records sql_records; do
    mkdir -p "$work/files/$host"
    "$work/build/$host" "$work/files/$host"
done
