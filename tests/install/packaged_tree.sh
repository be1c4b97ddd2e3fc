# packaged_tree.sh CMAKE BUILD ROOT PREFIX: the component Runtime for PREFIX, put under ROOT.
set -euo pipefail
cmake=$1 build=$2 root=$3 prefix=$4
rm -rf "$root"
DESTDIR=$root "$cmake" --install "$build" --prefix "$prefix" --component Runtime >/dev/null
