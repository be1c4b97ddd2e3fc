# check_desktop.sh DATADIR BINDIR QUERIES WORK: the installed menu entry, icons, data for software centres and the
# type of .qvk files hold together and are what the desktop's own tools accept. QUERIES has the .qvk files.
set -euo pipefail
data=$1 bin=$2 queries=$3 work=$4
result=0
wrong() {
    echo "$*"
    result=1
}
rm -rf "$work"
mkdir -p "$work/share/mime/packages" "$work/home" "$work/files"

entry=$data/applications/norvik.desktop
value() { sed -n "s/^$1=//p" "$entry"; }
hints=$(desktop-file-validate "$entry") || true
[ -z "$hints" ] || wrong "$hints"
for key in Exec TryExec; do
    program=$(value $key)
    [ -x "$bin/${program%% *}" ] || wrong "$key of the entry starts $program, which is not installed"
done
# A file manager gives the file to every program that takes its type, asked for it or not.
case $(value Exec) in *%[fFuU]*) takes=yes ;; *) takes=no ;; esac
[ "$takes" = "$([ -n "$(value MimeType)" ] && echo yes || echo no)" ] ||
    wrong "the entry names types but no place for the file, or a place but no types"

mime=$data/mime/packages/norvik.xml
xmllint --noout "$mime" || result=1
type=$(sed -n 's/.*<mime-type type="\(.*\)".*/\1/p' "$mime")
for icon in "apps/$(value Icon)" "mimetypes/${type//\//-}"; do
    xmllint --noout "$data/icons/hicolor/scalable/$icon.svg" || result=1
    python3 "${0%/*}/check_icons.py" "$data/icons/hicolor" "$icon" 16 22 24 32 48 64 128 256 || result=1
done

# Without a licence, which the build is told, that is the one thing that is missing.
metainfo=$(echo "$data"/metainfo/*.metainfo.xml)
wanted='E: metadata-license-missing'
! grep -q '<metadata_license>' "$metainfo" || wanted=
found=$({ appstreamcli validate --no-net "$metainfo" || true; } | sed -n 's/^\([EW]\): [^ ]* \([^ ]*\).*/\1: \2/p')
[ "$found" = "$wanted" ] || wrong "appstreamcli says of $metainfo: $found"
sed 's|<!-- metadata_license: .* -->|<metadata_license>CC0-1.0</metadata_license>|' "$metainfo" >"$work/${metainfo##*/}"
said=$(appstreamcli validate --no-net "$work/${metainfo##*/}") || wrong "with a licence: $said"
id() { sed -n "s|.*<$1>\(.*\)</$1>.*|\1|p" "$metainfo"; }
[ "$(id id).metainfo.xml" = "${metainfo##*/}" ] || wrong "the metainfo file has not the name of its id"
[ "$(sed -n 's|.*<launchable type="desktop-id">\(.*\)</launchable>.*|\1|p' "$metainfo")" = "${entry##*/}" ] ||
    wrong "the metainfo file starts another entry"
for program in $(id binary); do [ -x "$bin/$program" ] || wrong "not installed: $program"; done

# The database of types as the system's own tool makes it, before that of the system.
cp "$mime" "$work/share/mime/packages/"
XDG_DATA_DIRS=$work/share update-mime-database "$work/share/mime"
export XDG_DATA_DIRS=$work/share:/usr/share XDG_DATA_HOME=$work/home GIO_USE_VFS=local
type_of() { gio info -a standard::content-type "$1" | sed -n 's/.*content-type: //p'; }
expect() {
    local got
    got=$(type_of "$2")
    case $1 in
        ours) [ "$got" = "$type" ] ;;
        other) [ "$got" != "$type" ] ;;
    esac || wrong "$3 is taken for $got"
}
count=0
for file in "$queries"/saved/*.qvk "$queries"/broken/good-*.qvk; do
    name=$(basename "$file" .qvk)
    expect ours "$file" "by its name, $name"
    cp "$file" "$work/files/$name"
    expect ours "$work/files/$name" "by its content, $name"
    count=$((count + 1))
done
[ $count -gt 10 ] || wrong "only $count files were looked at"
expect ours "$queries/broken/not-xml.qvk" "by its name, what only a reader can refuse"

# text WHOSE NAME CONTENT: a file without an extension.
text() {
    printf '%b' "$3" >"$work/files/$2"
    expect "$1" "$work/files/$2" "$2"
}
text ours bare '<VkDocQuery/>'
text ours attribute_on_its_own_line '<VkDocQuery\r\n  ver="1">\r\n</VkDocQuery>'
text ours tab '<VkDocQuery\tver="1"/>'
text ours no_attribute '<?xml version="1.0"?>\n<VkDocQuery>\n</VkDocQuery>'
text ours comment_before '<!-- third quarter -->\n<VkDocQuery ver="1"/>'
text other longer_name '<?xml version="1.0"?>\n<VkDocQueryList><i/></VkDocQueryList>'
text other longer_name_with_digit '<VkDocQuery2 ver="1"/>'
text other mentioned 'The root is <VkDocQuery ver="1">, as you know.\n'
text other source 'std::shared_ptr<VkDocQueryData> record;\n'
for file in wrong-root.qvk not-xml.qvk page.html; do
    cp "$queries/broken/$file" "$work/files/${file%.*}"
    expect other "$work/files/${file%.*}" "$file"
done
icons=$(gio info -a standard::icon "$queries/saved/new.qvk")
case $icons in *" ${type//\//-},"*) ;; *) wrong "file managers look for another icon: $icons" ;; esac
exit $result
