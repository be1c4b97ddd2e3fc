# check_exports.sh NM LIBDIR LISTS: each installed library exports what its list names and nothing else.
# LISTS/LIBRARY.exports holds extended regular expressions for whole demangled names, one a line.
# Weak symbols of other namespaces are instantiations of the standard library's and Qt's templates.
set -euo pipefail
nm=$1 libdir=$2 lists=$3
result=0

for library in "$libdir"/libVk_*.so; do
    name=$(basename "$library" .so)
    name=${name#lib}
    list=$lists/$name.exports
    [ -f "$list" ] || { echo "no list of exports for $name"; exit 1; }
    patterns=$(grep -v -e '^#' -e '^$' "$list")
    # Each symbol as it stands in the file, and behind a tab as it is read.
    exports=$(paste <("$nm" -Dp --defined-only "$library") <("$nm" -DpC --defined-only "$library") |
        sed -E 's/^[0-9a-f]* +//; s/\t[0-9a-f]* +. /\t/' |
        grep -E "^[A-TX-Z] |^. _Z[A-Z]*${#name}$name" |
        cut -f 2 | grep -v -x -e _init -e _fini -e _edata -e _end -e __bss_start | sort -u)

    if unwanted=$(grep -v -x -E "$patterns" <<<"$exports"); then
        printf '%s exports what no host may link to:\n%s\n' "$name" "$unwanted"
        result=1
    fi
    while IFS= read -r pattern; do
        grep -q -x -E "$pattern" <<<"$exports" || {
            printf '%s does not export: %s\n' "$name" "$pattern"
            result=1
        }
    done <<<"$patterns"
    echo "$name: $(wc -l <<<"$exports") symbols"
done
exit $result
