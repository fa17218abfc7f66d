# What the scripts of the Windows programs share. Sourced after common.sh.
# shellcheck shell=bash

WINDOWS_PACKAGES=(g++ g++-mingw-w64-x86-64-posix dpkg-dev tcl cmake ninja-build ccache pkgconf qt6-base-dev
    qt6-base-dev-tools libgl-dev libsqlite3-dev libpugixml-dev libboost-dev doctest-dev)

windows_libraries_key() {
    {
        dpkg-query -W -f='${source:Package} ${source:Version}\n' qt6-base-dev libsqlite3-dev libpugixml-dev \
            g++-mingw-w64-x86-64-posix
        grep -hv '^ *#' tools/windows-libraries cmake/windows.toolchain.cmake
    } | sha256sum | cut -c 1-16
}

# need_windows_libraries: build/windows-libraries is then a link to the libraries in the cache.
need_windows_libraries() {
    need_packages "${WINDOWS_PACKAGES[@]}"
    local folder work
    folder=$CACHE_DIR/windows-$(windows_libraries_key)
    if [ ! -d "$folder" ]; then
        mkdir -p "$CACHE_DIR"
        work=$(mktemp -d "$CACHE_DIR/windows-work.XXXXXX")
        say "Building the libraries for Windows, once: 10 to 15 minutes on two cores. Log: $work/log"
        if ! (cd "$work" && exec "$OLDPWD/tools/windows-libraries" "$work/libraries") >"$work/log" 2>&1; then
            tail -n 30 "$work/log" >&2
            die "The libraries for Windows could not be built."
        fi
        mv -T "$work/libraries" "$folder" || [ -d "$folder" ]
        rm -rf "$work"
    fi
    mkdir -p build
    if [ "$(readlink build/windows-libraries)" != "$folder" ]; then
        ln -sfn "$folder" build/windows-libraries
        rm -rf build/windows
    fi
}

need_wine() { need_packages wine64 xvfb xauth fonts-liberation python3; }

windows_path() { printf 'Z:%s' "${1//\//\\}"; }

# in_wine COMMAND...: runs a command whose Windows programs share a display and a Wine system that no other call of
# this function uses meanwhile.
in_wine() {
    need_wine
    export BTASK_WINE=${BTASK_WINE:-wine-tests}
    mkdir -p "$CACHE_DIR"
    flock -o "$CACHE_DIR/$BTASK_WINE.lock" xvfb-run -a -s "-screen 0 1280x1024x24" tools/wine-session "$@"
}

# start_windows_service FOLDER [OPTION...]: the development service under Wine, with its data in FOLDER; sets
# service_pid and BREN_SERVICE_PORT.
start_windows_service() {
    local home=$1
    shift
    touch "$home/ready"
    BTASK_WINE_TIMEOUT=0 tools/wine build/windows/bin/brengroupsvc-dev.exe --home "$(windows_path "$home")" --port 0 "$@" \
        >"$home/ready" &
    service_pid=$!
    until BREN_SERVICE_PORT=$(sed -n 's/^ready on port \([0-9]*\).*/\1/p' "$home/ready") && [ -n "$BREN_SERVICE_PORT" ]; do
        kill -0 "$service_pid" || die "The development service did not start."
        sleep 0.1
    done
    export BREN_SERVICE_PORT
}
