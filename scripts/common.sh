# Shared by the scripts of this repository; sourced, not run.

set -euo pipefail
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
cd "$root"
jobs=$(nproc)

# Says what is being done now; what fails is said in one line, with the log of the step.
step()
{
    current=$1
    printf '\n== %s\n' "$current"
}
trap 'status=$?; [ $status -eq 0 ] || printf "\nFAILED: %s (exit status %d)\n" "${current:-start}" $status >&2' EXIT

# Installs the Debian packages that are missing; needs root or sudo only when there are any.
install_packages()
{
    local missing=() package
    for package in "$@"; do
        dpkg-query -W -f '${Status}' "$package" 2>/dev/null | grep -q 'install ok installed' || missing+=("$package")
    done
    [ ${#missing[@]} -gt 0 ] || return 0
    step "installing ${missing[*]}"
    local as_root=()
    [ "$(id -u)" -eq 0 ] || as_root=(sudo)
    "${as_root[@]}" apt-get update -qq
    "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive \
        apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null
}

# What the library and the example need to be built.
build_packages=(g++ cmake ninja-build pkg-config gettext libwxgtk3.2-dev libeigen3-dev libcairo2-dev libcurl4-openssl-dev)

# Configures and builds one preset.
build_preset()
{
    cmake --preset "$1" >/dev/null
    cmake --build --preset "$1" --parallel "$jobs"
}
