# check_hardening.sh READELF PROGRAM LIBRARY ...: the program is position-independent, and none of them
# leaves its relocations writable, its symbols unbound at start, its stack executable or unguarded.
set -euo pipefail
readelf=$1 program=$2
shift
result=0

expect() {
    local file=$1 what=$2 pattern=$3 options=$4
    "$readelf" -W "$options" "$file" | grep -E "$pattern" >/dev/null || {
        echo "$(basename "$file"): $what"
        result=1
    }
}

expect "$program" "not position-independent" 'FLAGS_1.*PIE' -d
for file in "$@"; do
    expect "$file" "relocations stay writable" 'GNU_RELRO' -l
    expect "$file" "symbols are bound late" 'FLAGS_1.*NOW' -d
    expect "$file" "the stack is executable" 'GNU_STACK .* RW ' -l
    expect "$file" "the stack is not guarded" '__stack_chk_fail' --dyn-syms
done
exit $result
