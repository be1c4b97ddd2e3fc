# Read in by the scripts at the root, which begin with
#   . "$root/scripts/packages.sh"; need_packages build test
# Installs the Debian packages of the named purposes that are missing. Where nothing is missing it only
# asks dpkg, so it costs a moment and no network.

packages_build="g++ make cmake ninja-build pkg-config qt6-base-dev qt6-svg-dev libxml2-dev libsqlite3-dev libxcb1-dev libwayland-dev"
packages_run="libqt6sql6-sqlite libqt6svg6 qt6-translations-l10n fonts-liberation"
packages_tour="xvfb openbox xdotool maim x11-utils x11-xkb-utils"
packages_test="libqt6sql6-sqlite libqt6sql6-psql libqt6svg6 qt6-translations-l10n fonts-liberation fonts-dejavu-core postgresql-15 xvfb openbox xdotool x11-xkb-utils x11-utils x11-xserver-utils weston qt6-wayland xauth dbus at-spi2-core python3-pyatspi appstream desktop-file-utils libglib2.0-bin libxml2-utils man-db mandoc shared-mime-info bsdextrautils doxygen"
packages_bench="libqt6sql6-psql postgresql-15"
packages_clang="clang-14 clang-tidy-14 clang-format-14 git"

say() { printf '%s: %s\n' "${0##*/}" "$*"; }
fail() {
    printf '%s: %s\n' "${0##*/}" "$*" >&2
    exit 1
}

as_root() { if [ "$(id -u)" -eq 0 ]; then "$@"; else sudo "$@"; fi; }

# Where sudo wants a password, somebody has to be there to type it.
may_install() {
    [ "$(id -u)" -ne 0 ] || return 0
    command -v sudo >/dev/null 2>&1 || return 1
    sudo -n true 2>/dev/null || { { : </dev/tty; } 2>/dev/null && sudo -v; }
}

# Names of the installed packages, and of what they stand in for, one a line.
installed_names() {
    dpkg-query -W -f='${db:Status-Status} ${Package}, ${Provides}\n' | sed -n 's/^installed //p' | tr ', ' '\n\n'
}

need_packages() {
    local wanted= purpose package installed
    missing=
    for purpose in "$@"; do
        package="packages_$purpose"
        wanted="$wanted ${!package}"
    done
    if ! command -v dpkg-query >/dev/null 2>&1; then
        say "not a Debian system, so it is taken that there are:$wanted"
        return
    fi
    installed=$'\n'$(installed_names)$'\n'
    for package in $wanted; do
        case $installed in *$'\n'"$package"$'\n'*) ;; *) missing="$missing $package" ;; esac
    done
    [ -n "$missing" ] || return 0
    may_install || fail "packages are missing, and this is neither root nor may it use sudo. As root: apt-get install$missing"
    say "installing$missing"
    install_missing || fail "apt-get could not install$missing"
}

install_missing() {
    # The tests start a database server of their own; the package shall not start one for the machine.
    local keep_quiet=/etc/postgresql-common/createcluster.d/vk_docquery.conf result=0
    case $missing in
        *postgresql*)
            as_root mkdir -p "${keep_quiet%/*}"
            printf 'create_main_cluster = false\n' | as_root tee "$keep_quiet" >/dev/null
            ;;
    esac
    as_root apt-get -q update &&
        # shellcheck disable=SC2086
        as_root env DEBIAN_FRONTEND=noninteractive apt-get -q -y --no-install-recommends install $missing ||
        result=1
    case $missing in *postgresql*) as_root rm -f "$keep_quiet" ;; esac
    return $result
}

# configure_and_build PRESET [TARGET ...]: quiet while all goes well, the whole output where it does not.
configure_and_build() {
    local preset=$1 target log
    shift
    log="$root/build/$preset.log"
    mkdir -p "$root/build"
    say "building build/$preset"
    (cd "$root" && cmake --preset "$preset" &&
        cmake --build --preset "$preset" -j "$(nproc)" ${1:+--target "$@"}) >"$log" 2>&1 || {
        grep -v '^\[[0-9]*/[0-9]*\] ' "$log" | tail -n 200 >&2
        fail "the build failed; all of its output is in build/$preset.log"
    }
}
