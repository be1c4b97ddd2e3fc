#!/usr/bin/env bash
# Checks what a change has touched as CONTRIBUTING asks: the format of all sources, and each changed source
# compiled with Clang and looked at by clang-tidy.
#   scripts/check_changes.sh            what is new since main of the origin, else in the last commit
#   scripts/check_changes.sh COMMIT     what is new since that commit
set -euo pipefail
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
. "$root/scripts/packages.sh"
cd "$root"

need_packages build test clang

git ls-files -z '*.cpp' '*.h' | xargs -0 clang-format-14 --dry-run -Werror ||
    fail "the format differs; run clang-format-14 -i on these"

# The commit before the change. Where main has the change already, that is the last commit's parent.
base() {
    local head
    head=$(git rev-parse HEAD)
    for commit in "${1:-}" "$(git merge-base HEAD origin/main 2>/dev/null || true)"; do
        [ -n "$commit" ] || continue
        commit=$(git rev-parse --verify -q "$commit^{commit}") || fail "there is no commit $1"
        [ "$commit" = "$head" ] || { printf '%s\n' "$commit" && return; }
    done
    git rev-parse --verify -q 'HEAD^' || git hash-object -t tree /dev/null
}

# A header stands for the source of its name, one without for a source that includes it.
sources_of() {
    local file source
    while IFS= read -r file; do
        [ -f "$file" ] || continue
        case $file in
            *.cpp) printf '%s\n' "$file" ;;
            *.h)
                source=${file%.h}.cpp
                [ -f "$source" ] || source=$(git grep -l -F "${file##*/}" -- '*.cpp' | head -n 1) || true
                [ -z "$source" ] || printf '%s\n' "$source"
                ;;
        esac
    done | sort -u
}

since=$(base "$@")
mapfile -t sources < <({ git diff --name-only "$since" -- && git ls-files -o --exclude-standard; } | sources_of)
[ ${#sources[@]} -gt 0 ] || { say "no source has changed"; exit 0; }

cmake --preset clang >build/clang.log 2>&1 || { cat build/clang.log >&2; fail "the clang preset cannot be configured"; }
targets=()
for source in "${sources[@]}"; do
    # Programs of another build, such as the hosts of the installed tree, are compiled by their tests.
    if ninja -C build/clang -t query "$root/$source" >/dev/null 2>&1; then targets+=("$root/$source^"); fi
done
[ ${#targets[@]} -gt 0 ] || { say "no changed source is compiled here"; exit 0; }
say "${#targets[@]} changed sources with Clang and clang-tidy"
# All of them, so that one run tells of every fault.
ninja -C build/clang -k 0 -j "$(nproc)" "${targets[@]}" >build/clang.log 2>&1 || {
    grep -v '^\[[0-9]*/[0-9]*\] ' build/clang.log | tail -n 200 >&2
    fail "Clang or clang-tidy has found faults; all of the output is in build/clang.log"
}
