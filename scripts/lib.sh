# Shared by the scripts in this folder, which source it: set-up of the machine, configuring, building.
# shellcheck shell=bash

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
cd "$root" || exit 1

# The names of Debian 12 and Ubuntu 24.04, and of later releases.
build_packages=(g++ cmake ninja-build ccache mold qt6-base-dev qt6-serialport-dev qt6-tools-dev qt6-l10n-tools
    libfast-float-dev)
needed_qt=6.4
needed_cmake=3.25

step() { echo "==> $*"; }

die() {
    echo "error: $*" >&2
    exit 1
}

# missing_packages <package>...: prints those of the packages that are not installed.
missing_packages() {
    local wanted installed
    installed=$(dpkg-query -W -f='${Package} ${db:Status-Status}\n' "$@" 2>/dev/null || true)
    for wanted in "$@"; do
        grep -qxF "$wanted installed" <<<"$installed" || echo "$wanted"
    done
}

refuse_old_release() {
    local qt
    qt=$(apt-cache policy qt6-base-dev | sed -n 's/^ *Candidate: *//p' | grep -vx '(none)' || true)
    if [ -z "$qt" ] || dpkg --compare-versions "$qt" lt "$needed_qt"; then
        die "the newest Qt 6 that apt-get finds is ${qt:-none}, and Sigvane needs Qt $needed_qt and CMake $needed_cmake." \
            "Use Debian 12, Ubuntu 24.04 or anything newer (a container of one of them will do)."
    fi
}

# install_packages <package>...: installs what is missing; does nothing, quickly, when nothing is.
install_packages() {
    local missing as_root=()
    mapfile -t missing < <(missing_packages "$@")
    [ ${#missing[@]} -gt 0 ] || return 0

    if [ "$(id -u)" -ne 0 ]; then
        [ -n "$(command -v sudo)" ] || die "run as root, or install sudo, to install: ${missing[*]}"
        as_root=(sudo)
        step "installing missing packages with sudo, which may ask for your password (minutes, once):"
    else
        step "installing missing packages (minutes, once):"
    fi
    echo "    ${missing[*]}"
    local apt=("${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get -o DPkg::Lock::Timeout=120)
    "${apt[@]}" -qq update || step "the package lists could not be refreshed completely, trying all the same"
    refuse_old_release
    "${apt[@]}" -y --no-install-recommends install "${missing[@]}" </dev/null >build/packages.log 2>&1 || {
        tail -n 20 build/packages.log >&2
        die "installing packages failed, the whole output is in build/packages.log"
    }
}

# Where there is no apt-get, the tools must be there already.
require_tools() {
    local tool missing=()
    for tool in cmake ninja c++ "$@"; do
        command -v "$tool" >/dev/null || missing+=("$tool")
    done
    command -v qmake6 >/dev/null || command -v qmake-qt6 >/dev/null || missing+=("Qt $needed_qt")
    [ ${#missing[@]} -gt 0 ] || return 0
    cat >&2 <<EOF
error: not found: ${missing[*]}
There is no apt-get here, so please install a C++20 compiler, CMake $needed_cmake, Ninja, fast_float and Qt $needed_qt
with its serial port module and its linguist tools (and, better, ccache and mold). Without a display, and
for the tests, Xvfb too; for the screenshot ImageMagick.
    Fedora: gcc-c++ cmake ninja-build ccache mold qt6-qtbase-devel qt6-qtserialport-devel
            qt6-qttools-devel fast_float-devel xorg-x11-server-Xvfb ImageMagick
    Arch:   base-devel cmake ninja ccache mold qt6-base qt6-serialport qt6-tools fast_float
            xorg-server-xvfb imagemagick
EOF
    exit 1
}

# set_up [<package>=<tool>]...: makes sure that everything for building is there, and these besides.
set_up() {
    mkdir -p build
    if command -v apt-get >/dev/null && command -v dpkg-query >/dev/null; then
        install_packages "${build_packages[@]}" "${@%%=*}"
    else
        require_tools "${@##*=}"
    fi
}

# set_up_clang: what the preset asan needs besides: the compiler with its sanitizers, clazy for that version of it, what
# names the places in a report, and Google Benchmark, as it builds everything.
set_up_clang() {
    set_up clang=clang++ clazy=clazy llvm=llvm-symbolizer libbenchmark-dev=true
    # The sanitizers' libraries have the number of the compiler in their name.
    set_up "libclang-rt-$(clang -dumpversion | sed 's/[.].*//')-dev=true"
}

# set_up_preset <preset> [<package>=<tool>]...: the same for building a preset.
set_up_preset() {
    [ "$1" != asan ] || set_up_clang
    set_up "${@:2}"
}

# build <preset> [<target>...]: configures when that was not done yet or the presets changed, and builds.
build() {
    local preset=$1 log=build/$1-configure.log
    shift
    if [ ! -f "build/$preset/build.ninja" ] || [ CMakePresets.json -nt "build/$preset/build.ninja" ]; then
        step "configuring build/$preset"
        cmake --fresh --preset "$preset" >"$log" 2>&1 || {
            cat "$log" >&2
            die "configuring failed"
        }
    fi
    step "building build/$preset"
    cmake --build --preset "$preset" ${1:+--target "$@"}
}

# start_virtual_display <width>x<height>: an X server without a screen, whose process is then $display_server; the caller
# ends it.
start_virtual_display() {
    local number
    exec {display_output}< <(exec Xvfb -displayfd 1 -screen 0 "$1x24" -nolisten tcp 2>build/xvfb.log)
    # shellcheck disable=SC2034 # for the caller
    display_server=$!
    read -r -t 20 -u "$display_output" number || die "Xvfb did not start, see build/xvfb.log"
    export DISPLAY=:$number QT_QPA_PLATFORM=xcb
}
