# shellcheck shell=bash disable=SC2154,SC2119
# Shared by ./run, ./test and ./bench. Sourced, with $root set to the project's folder.

say() { printf '%s\n' "== $*" >&2; }
die() { printf '%s\n' "error: $*" >&2; exit 1; }

installed() {
    [ "$(dpkg-query -W -f='${db:Status-Status}' "$1" 2>/dev/null)" = installed ]
}

# Installs what packaging/debian-packages.txt and the arguments name and the machine lacks. Where nothing is missing, or
# where the machine has no apt (then the build tells what it lacks), nothing is called.
install_missing() {
    local package missing=() as_root=()
    command -v apt-get >/dev/null && command -v dpkg-query >/dev/null || return 0
    for package in $(sed 's/#.*//' "$root/packaging/debian-packages.txt") "$@"; do
        installed "$package" || missing+=("$package")
    done
    [ ${#missing[@]} -gt 0 ] || return 0
    say "Installing: ${missing[*]}"
    if [ "$(id -u)" -ne 0 ]; then
        command -v sudo >/dev/null || die "please run as root: apt-get install ${missing[*]}"
        as_root=(sudo)
    fi
    "${as_root[@]}" apt-get -q update >&2 || die "apt-get update failed"
    "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive \
        apt-get -q install -y --no-install-recommends "${missing[@]}" >&2 || die "apt-get install failed"
}

# Starts a display that nobody sees, sets DISPLAY to it and ends it with this shell. Traps of the caller's own for EXIT
# call end_display.
end_display() { kill "$display_server" 2>/dev/null; rm -f "$display_number"; }
start_display() {
    display_number=$(mktemp) || die "cannot make a temporary file"
    # Xvfb finds a free display itself and writes its number once it accepts windows.
    Xvfb -displayfd 3 -screen 0 1920x1080x24 -nolisten tcp 3>"$display_number" >/dev/null 2>&1 &
    display_server=$!
    trap end_display EXIT
    for _ in $(seq 100); do
        [ -s "$display_number" ] && break
        kill -0 "$display_server" 2>/dev/null || die "Xvfb did not start"
        sleep 0.1
    done
    [ -s "$display_number" ] || die "Xvfb did not start"
    DISPLAY=:$(cat "$display_number")
    export DISPLAY
}

# build PRESET [cmake option…] [-- target…]: configures a preset and builds all of it, or those targets.
build() {
    local preset=$1 options=()
    shift
    while [ $# -gt 0 ] && [ "$1" != -- ]; do
        options+=("$1")
        shift
    done
    [ $# -eq 0 ] || shift
    say "Building preset $preset"
    (
        cd "$root" && cmake --preset "$preset" ${options[@]+"${options[@]}"} >/dev/null &&
            cmake --build "build/$preset" -j "$(nproc)" ${@:+--target} "$@"
    ) >&2 || die "the build of preset $preset failed"
}
