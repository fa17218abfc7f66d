#!/usr/bin/env bash
# tools/run-windows.sh --scenario NAME [--tour DIR] [-- SWITCHES]: what ./run does, with the Windows programs under
# Wine: the development service holds the real mutex, and in server mode a service of the agent's name runs in the
# service control manager.
cd "$(dirname "$0")/.." && . tools/common.sh && . tools/windows.sh

export BTASK_WINE=${BTASK_WINE:-wine-run} BTASK_WINE_TIMEOUT=0
scenario=desktop tour="" server=""
if [ "${1:-}" = in-wine ]; then
    shift
else
    need_windows_libraries
    build_preset windows BTaskMMC brengroupsvc-dev probe_service
    case " $* " in
    *" --tour "*) in_wine "$0" in-wine "$@" ;;
    *) [ -n "${DISPLAY:-}" ] || die "A display or --tour DIR is needed."; need_wine; "$0" in-wine "$@" ;;
    esac
    exit
fi

while [ $# -gt 0 ]; do
    case $1 in
    --scenario) scenario=$2; shift ;;
    --tour) tour=$2; shift ;;
    --) shift; break ;;
    *) die "Unknown option: $1" ;;
    esac
    shift
done
case " $* " in *" /server "*) server=yes ;; esac

bin=$PWD/build/windows/bin
home=$(mktemp -d "${TMPDIR:-/tmp}/btaskmmc.XXXXXX")
BREN_HOME=$(windows_path "$home")
export BREN_HOME
service_pid=""
end() {
    [ -z "$server" ] || tools/wine sc.exe stop brengroupsvc >"$home/log" 2>&1 || true
    [ -z "$server" ] || tools/wine sc.exe delete brengroupsvc >"$home/log" 2>&1 || true
    kill "$service_pid" 2>"$home/log" || true
    wait "$service_pid" || true
    rm -rf "$home"
}
trap end EXIT
start_windows_service "$home" --scenario "$scenario" ${server:+--server}
if [ -n "$server" ]; then
    tools/wine sc.exe create brengroupsvc "binPath=" "$(windows_path "$bin/probe_service.exe")" >"$home/log"
    tools/wine sc.exe start brengroupsvc >>"$home/log"
fi
tools/wine "$bin/BTaskMMC.exe" ${tour:+"--dev-tour=$(windows_path "$tour")"} "$@"
