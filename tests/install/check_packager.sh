# check_packager.sh CMAKE COMPILER SOURCES WORK: who builds without a preset and with flags of his own gets these
# flags and no others that could stop the build; and the program and the tests only if he wants them.
set -euo pipefail
cmake=$1 compiler=$2 sources=$3 work=$4
result=0
wrong() {
    echo "$*"
    result=1
}
rm -rf "$work"
configure() {
    "$cmake" -S "$sources" -B "$work" -G Ninja -D CMAKE_CXX_COMPILER="$compiler" -D CMAKE_BUILD_TYPE=Release \
        -D CMAKE_CXX_FLAGS='-O2 -Wall -D_FORTIFY_SOURCE=3' -D VK_BUILD_PROGRAM=OFF -D VK_BUILD_BENCHMARKS=OFF "$@" 2>&1
}
! said=$(configure -D BUILD_TESTING=ON) || wrong "tests without the program they play are configured"
case $(tr -s "\n " " " <<<"$said") in *"-D VK_BUILD_PROGRAM=OFF wants -D BUILD_TESTING=OFF"*) ;; *) wrong "not told why: $said" ;; esac
said=$(configure -D BUILD_TESTING=OFF) || { echo "$said"; exit 1; }

commands=$work/compile_commands.json
for unwanted in -Werror _FORTIFY_SOURCE=2 "$sources/host/" "$sources/desktop/" "$sources/tests/" "$sources/benchmarks/"; do
    ! grep -q -F -e "$unwanted" "$commands" || wrong "built in spite of all: $unwanted"
done
grep -q -F "$sources/records/MakeOffice.cpp" "$commands" || wrong "vk_make_office is left out as well"
said=$("$cmake" --build "$work" --target vk_compile_pictures 2>&1) || wrong "$said"
case $said in *warning:*) wrong "$said" ;; esac
exit $result
