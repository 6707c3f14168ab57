#!/usr/bin/env bash
# Builds Sigvane and starts it on the example project with its simulated device, or with --play <file> on that
# recording of it. Arguments are handed to the program. Without a display it runs for some seconds on a virtual
# one, SECONDS_ON_VIRTUAL_DISPLAY of them if that is set, and leaves a screenshot.
set -euo pipefail
# shellcheck source=scripts/lib.sh
source "$(dirname "${BASH_SOURCE[0]}")/lib.sh"

program=build/release/app/sigvane
device=build/release/examples/pump-rig/firmware/pump-rig
project=$root/build/pump-rig
screenshot=build/screenshot.png
seconds_on_virtual_display=${SECONDS_ON_VIRTUAL_DISPLAY:-12}

own_processes=()
port_options=()
display_server=
end_own_processes() {
    trap - EXIT
    [ -z "$display_server" ] || own_processes+=("$display_server")
    [ ${#own_processes[@]} -eq 0 ] || kill "${own_processes[@]}" 2>/dev/null || true
    wait
}
trap end_own_processes EXIT
trap 'exit 130' INT
trap 'exit 143' TERM

# Works on a copy, so that what is saved and recorded while trying things out stays out of the checkout.
# Only files that are newer in the example are copied again: what was saved in the copy survives.
copy_example() {
    step "the example project is build/pump-rig, a copy of examples/pump-rig"
    mkdir -p "$project"
    cp -Ru examples/pump-rig/{dashboard_signals.def,layouts,pictures,recordings} "$project/"
}

# What a device reports would mix with what was recorded.
wants_device() {
    case " $* " in
    *" --record "*) return 0 ;;
    *" --play "* | *" --play="*) return 1 ;;
    esac
}

start_device() {
    exec {device_output}< <(exec "$device")
    own_processes+=($!)
    read -r -t 10 -u "$device_output" port || die "the simulated device did not start"
    step "the simulated device prints on $port"
    port_options=(--port "$port" --baud 115200)
}

# In the background also where it is waited for: a signal to this script then ends everything at once.
start_sigvane() {
    "$program" --project "$project" --layout "$project/layouts/pump-rig.json" "${port_options[@]}" "$@" &
    sigvane=$!
    own_processes+=("$sigvane")
}

take_screenshot() {
    sleep "$seconds_on_virtual_display"
    kill -0 "$sigvane" 2>/dev/null || die "the program ended by itself"
    import -window root "$screenshot"
    step "the screenshot is $screenshot"
}

if [ -n "${DISPLAY:-}" ]; then
    set_up
elif [ -n "${WAYLAND_DISPLAY:-}" ]; then
    set_up qt6-wayland=c++
else
    set_up xvfb=Xvfb imagemagick=import
fi
build release sigvane pump-rig
copy_example
if wants_device "$@"; then
    start_device
fi
if [ -n "${DISPLAY:-}${WAYLAND_DISPLAY:-}" ]; then
    step "starting Sigvane; closing its window ends everything"
    start_sigvane "$@"
    wait "$sigvane"
else
    step "no display here: using a virtual one for $seconds_on_virtual_display seconds"
    start_virtual_display 1440x900
    start_sigvane "$@"
    take_screenshot
fi
