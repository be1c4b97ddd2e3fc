# check_components.sh CMAKE BUILD PREFIX TREE PROGRAMS LIBRARIES: the components Runtime and Development, each
# installed alone, are together all that is installed, and what runs does so from where it is put. PREFIX holds the
# whole; TREE is the prefix of the component Runtime, with blanks in its name; the last two are folders in it.
set -euo pipefail
cmake=$1 build=$2 prefix=$3 tree=$4 bin=$4/$5 lib=$4/$6
result=0
wrong() {
    echo "$*"
    result=1
}
files() { (cd "$1" && find . ! -type d | sort); }
other=$(mktemp -d)
trap 'rm -rf "$other"' EXIT
"$cmake" --install "$build" --prefix "$other" --component Development >/dev/null

both=$( (files "$tree" && files "$other") | sort)
[ "$both" = "$(sort -u <<<"$both")" ] || wrong "in both components: $(uniq -d <<<"$both")"
[ "$both" = "$(files "$prefix")" ] || wrong "in no component: $(diff <(cat <<<"$both") <(files "$prefix"))"
for needed in include lib/cmake pkgconfig libVk_DocQuery.so libVk_Records.so; do
    files "$other" | grep -q -e "/$needed" || wrong "Development lacks $needed"
done
# What update-mime-database and its like compute from the files of all packages is nobody's to remove.
! files "$tree" | grep -E '/(mime\.cache|icon-theme\.cache|mimeinfo\.cache|index\.theme)$' || result=1

# Nothing tells these where the libraries are but themselves.
unset LD_LIBRARY_PATH
python3 -c 'import ctypes, sys; ctypes.CDLL(sys.argv[1])' "$(echo "$lib"/libVk_Records.so.?)" ||
    wrong "the records do not find the other library"
for file in "$bin"/* "$lib"/libVk_Records.so.?; do
    found=$(ldd "$file" | sed -n 's/.*libVk_[A-Za-z]*\.so\.[0-9]* => \(.*\) (.*/\1/p')
    [ -n "$found" ] || wrong "$file uses none of the libraries"
    while IFS= read -r library; do
        case $library in "$tree"/*) ;; *) wrong "$file takes $library" ;; esac
    done <<<"$found"
done
"$bin/vk_make_office" --sample "sqlite:$other/office.db"
[ -s "$other/office.db" ] || wrong "no office was made"
exit $result
