# check_packages.sh SCRIPTS: what packages.sh says and whom it asks, on machines that are made up of a few
# programs of our own: dpkg-query, id, sudo and apt-get.
set -euo pipefail
scripts=$1
machine=$(mktemp -d)
trap 'rm -rf "$machine"' EXIT
result=0

program() { printf '#!/bin/bash\n%s\n' "$2" >"$machine/bin/$1" && chmod +x "$machine/bin/$1"; }

# machine USER SUDO: USER is root or somebody; SUDO is absent, refuses or obeys.
machine() {
    rm -rf "$machine/bin" "$machine/asked"
    mkdir "$machine/bin"
    for tool in bash env sed tr; do ln -s "$(command -v $tool)" "$machine/bin/$tool"; done
    program dpkg-query "printf '%s\n' 'installed alpha, ' 'installed beta, beta-old (= 1), beta-older' 'config-files gone, '"
    program id "echo $([ "$1" = root ] && echo 0 || echo 1000)"
    program apt-get "echo apt-get \"\$@\" >>$machine/asked"
    case $2 in
        refuses) program sudo "echo sudo >>$machine/asked; echo 'sudo: a password is required' >&2; exit 1" ;;
        obeys) program sudo "if [ \"\$1\" = -n ]; then exit; fi; exec \"\$@\"" ;;
    esac
}

# expect NAME WANTED: the packages are needed, nobody sits at a terminal; $said, $ended and $asked is what came.
expect() {
    local got_ended=0 got_said got_asked=
    got_said=$(PATH=$machine/bin setsid -w "$machine/bin/bash" -c '. "$1/packages.sh"; packages_x=$2; need_packages x' \
        run "$scripts" "$2" 2>&1 </dev/null) || got_ended=$?
    [ ! -e "$machine/asked" ] || got_asked=$(grep -v '^sudo$' "$machine/asked" || true)
    if [ "$got_said|$got_ended|$got_asked" != "$said|$ended|$asked" ]; then
        printf '%s: said "%s", ended with %s, asked "%s"\n' "$1" "$got_said" "$got_ended" "$got_asked"
        result=1
    fi
}
setsid=$(command -v setsid)
setsid() { "$setsid" "$@"; }

said='' ended=0 asked=''
machine somebody refuses
expect "all are there" "alpha beta"
expect "another package stands in" "alpha beta-old beta-older"
[ ! -e "$machine/asked" ] || { echo "sudo was asked though nothing is missing"; result=1; }

said='run: packages are missing, and this is neither root nor may it use sudo. As root: apt-get install gone new' ended=1
expect "sudo wants a password and nobody is there" "alpha gone new"
machine somebody absent
expect "no sudo" "alpha gone new"

said='run: installing gone new' ended=0
asked=$'apt-get -q update\napt-get -q -y --no-install-recommends install gone new'
machine somebody obeys
expect "sudo obeys" "gone alpha new"
machine root absent
expect "root" "gone alpha new"
exit $result
