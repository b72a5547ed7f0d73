#!/bin/sh
# Installs what building, testing and showing daxlib needs on Debian 12. Runs as root or through sudo; may be run again at
# any time: what is there stays as it is.
set -eu

packages="
    build-essential cmake ninja-build g++ clang-14 libclang-rt-14-dev pkg-config git ca-certificates
    libxerces-c-dev libtomlplusplus-dev libxxhash-dev
    libcli11-dev nlohmann-json3-dev libsndfile1-dev libfast-float-dev libfccp-dev
    libgtest-dev libgmock-dev libbenchmark-dev libhdf5-dev
    alsa-utils
"

missing=
for package in $packages; do
    status=$(dpkg-query -W -f='${db:Status-Status}' "$package" 2>/dev/null || true)
    [ "$status" = installed ] || missing="$missing $package"
done
[ -n "$missing" ] || exit 0

root=
if [ "$(id -u)" -ne 0 ]; then
    command -v sudo >/dev/null || { echo "setup.sh: root or sudo is needed to install:$missing" >&2; exit 1; }
    root=sudo
fi
echo "Installing:$missing"
$root apt-get update
# shellcheck disable=SC2086  # a list of words
$root env DEBIAN_FRONTEND=noninteractive apt-get install --yes --no-install-recommends $missing
