# install_tree.sh CMAKE BUILD PREFIX: a fresh installed tree.
set -euo pipefail
cmake=$1 build=$2 prefix=$3
rm -rf "$prefix"
"$cmake" --install "$build" --prefix "$prefix" >/dev/null
