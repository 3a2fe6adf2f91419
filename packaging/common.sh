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
