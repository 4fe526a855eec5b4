# Sourced by the other scripts: installs Debian packages that are missing, and nothing when none is,
# and runs commands whose output matters only when they fail.

# quietly COMMAND...
quietly() {
    local output status=0
    output=$("$@" 2>&1) || status=$?
    [ "$status" -eq 0 ] || printf '%s\n' "$output" >&2
    return "$status"
}

as_root() {
    if [ "$(id -u)" -eq 0 ]; then
        "$@"
    elif command -v sudo >/dev/null; then
        sudo "$@"
    else
        echo "error: installing packages needs root or sudo: $*" >&2
        return 1
    fi
}

is_installed() {
    [ "$(dpkg-query --show --showformat='${db:Status-Status}' "$1" 2>/dev/null)" = installed ]
}

# need_packages PACKAGE...
need_packages() {
    local missing=() package
    for package in "$@"; do
        is_installed "$package" || missing+=("$package")
    done
    [ "${#missing[@]}" -gt 0 ] || return 0
    echo "==> Installing ${missing[*]}"
    as_root apt-get -qq update
    as_root env DEBIAN_FRONTEND=noninteractive \
        apt-get -qq -o Dpkg::Use-Pty=0 install --no-install-recommends "${missing[@]}" >/dev/null
}

# A JDK of the machine's own will do; without one, Debian's comes.
need_jdk() {
    command -v javac >/dev/null && command -v jar >/dev/null && command -v jlink >/dev/null ||
        need_packages default-jdk-headless
}

# What vspack is built with. The launcher needs none of it.
need_vspack_libraries() {
    need_packages libcli11-dev nlohmann-json3-dev libarchive-dev libssl-dev zlib1g-dev
}
