# check_manuals.sh MANDIR BINDIR VERSION: the installed manual pages are free of mistakes, can be found by what they
# are about, and tell the options that the programs have, no more and no fewer.
set -euo pipefail
manuals=$1 bin=$2 version=$3
result=0
wrong() {
    echo "$*"
    result=1
}
options() { grep -o -E -e '--[a-z][a-z-]*' | sort -u; }
# What a program says of its options: one by --help, the other when it is given one that it does not know.
told_by_norvik() { "$bin/norvik" --unknown 2>&1 || [ $? = 2 ]; }
told_by_vk_make_office() { "$bin/vk_make_office" --help | grep -v -e '--help-all'; }

for program in norvik vk_make_office; do
    told=$(told_by_$program | options)
    [ -n "$told" ] || wrong "$program tells no options"
    for page in "$manuals/man1/$program.1" "$manuals/ru/man1/$program.1"; do
        said=$(mandoc -T lint -W warning "$page") || wrong "$said"
        said=$(man -l --warnings -E UTF-8 "$page" 2>&1 >/dev/null) || wrong "man fails on $page"
        [ -z "$said" ] || wrong "$page: $said"
        said=$(lexgrog "$page") || wrong "$said"
        case $said in *"\"$program - "*) ;; *) wrong "not found by whatis: $said" ;; esac
        text=$(mandoc -T utf8 "$page" | col -b -x)
        [ "$(options <<<"$text")" = "$told" ] || wrong "$page tells other options than $program:" $told
        grep -q " $version " <<<"$text" || wrong "$page is not of version $version"
    done
done
exit $result
