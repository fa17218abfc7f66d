# What the root scripts share. Sourced with the project's folder as working directory.
# shellcheck shell=bash
set -euo pipefail

CACHE_DIR="${XDG_CACHE_HOME:-$HOME/.cache}/btaskmmc"
JOBS="${JOBS:-$(nproc)}"

say() { printf '== %s\n' "$*"; }
die() {
    printf '%s\n' "$*" >&2
    exit 1
}

as_root() {
    if [ "$(id -u)" -eq 0 ]; then "$@"; else sudo "$@"; fi
}

# need_packages NAME...: installs those of Debian's packages that are missing; silent when none is.
need_packages() {
    local name missing=()
    for name in "$@"; do
        [ "$(dpkg-query -W -f='${db:Status-Abbrev}' "$name" 2>/dev/null)" = "ii " ] || missing+=("$name")
    done
    [ ${#missing[@]} -eq 0 ] && return 0
    say "Installing ${missing[*]}"
    local log
    log=$(mktemp)
    for _ in 1 2; do
        if as_root env DEBIAN_FRONTEND=noninteractive apt-get update -q >"$log" 2>&1 &&
            as_root env DEBIAN_FRONTEND=noninteractive apt-get install -y -q --no-install-recommends \
                "${missing[@]}" >>"$log" 2>&1; then
            rm -f "$log"
            return 0
        fi
    done
    tail -n 20 "$log" >&2
    die "These packages could not be installed: ${missing[*]}"
}

BUILD_PACKAGES=(g++ cmake ninja-build ccache pkgconf qt6-base-dev qt6-base-dev-tools libgl-dev
    libsqlite3-dev libcurl4-openssl-dev libpugixml-dev libboost-dev doctest-dev)
RUN_PACKAGES=(fonts-liberation xvfb xauth)

# build_preset PRESET [TARGET...]: configures where needed and builds.
build_preset() {
    local preset=$1
    shift
    need_packages "${BUILD_PACKAGES[@]}"
    export CCACHE_DIR="${CCACHE_DIR:-$CACHE_DIR/ccache}" CCACHE_BASEDIR="$PWD" CCACHE_NOHASHDIR=1
    export CCACHE_SLOPPINESS=pch_defines,time_macros # as precompiled headers need it
    cmake --preset "$preset" >"$(mkdir -p build && echo build)/$preset.configure.log" ||
        { cat "build/$preset.configure.log" >&2; return 1; }
    cmake --build "build/$preset" -j "$JOBS" ${1:+--target "$@"}
}
