# shellcheck shell=bash
# What run, check and bench have in common. Sourced by them; `root` is the project's folder.
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
export LANG=${LANG:-C.UTF-8}

say() { printf '\033[1m%s\033[0m\n' "$*"; }

# build PRESET [TARGET…]
build() {
    local preset=$1 log
    shift
    log=$root/build/$preset-configure.log
    mkdir -p "$root/build"
    say "Building ($preset)"
    if ! (cd "$root" && cmake --preset "$preset") >"$log" 2>&1; then
        cat "$log" >&2
        return 1
    fi
    ninja -C "$root/build/$preset" -j "$(nproc)" --quiet "$@"
}
