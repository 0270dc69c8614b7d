#!/usr/bin/env bash
# Installs the Debian 12 packages that are missing, and only those.
#   tools/install-packages.sh --for start    what building and running the program needs
#   tools/install-packages.sh --for test     that, and what ./test needs (the default)
# This file is the one place where the packages are listed.
set -euo pipefail

packages_for_start=(
  build-essential cmake ninja-build ccache pkg-config
  libxxhash-dev
  qt6-base-dev qt6-svg-dev qt6-serialport-dev libgl1-mesa-dev
  qt6-translations-l10n # the toolkit's own dialogs in German
  xvfb xdotool python3 imagemagick fonts-dejavu-core # a screen of our own where there is none
)
packages_for_test=(
  git clang clang-format libclang-rt-14-dev
  libgtest-dev libgmock-dev
  libvterm-dev # what the screen parser is measured beside
)

purpose=test
if [ "${1:-}" = --for ]; then purpose=${2:-}; fi
case $purpose in
  start) packages=("${packages_for_start[@]}") ;;
  test) packages=("${packages_for_start[@]}" "${packages_for_test[@]}") ;;
  *) echo "usage: $0 [--for start|test]" >&2; exit 2 ;;
esac

missing=()
for package in "${packages[@]}"; do
  # shellcheck disable=SC2016  # the format is dpkg-query's
  state=$(dpkg-query -W -f '${db:Status-Status}' "$package" 2>/dev/null || true)
  [ "$state" = installed ] || missing+=("$package")
done
[ ${#missing[@]} -gt 0 ] || exit 0

as_root=()
if [ "$(id -u)" != 0 ]; then
  command -v sudo >/dev/null || { echo "Please install as root: apt-get install ${missing[*]}" >&2; exit 1; }
  as_root=(sudo)
fi
echo "Installing missing packages: ${missing[*]}"
log=$(mktemp)
trap 'rm -f "$log"' EXIT
install() {
  "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive \
    apt-get install -y -q --no-install-recommends "${missing[@]}" >"$log" 2>&1
}
# The package lists are fetched only where the ones at hand don't serve.
if ! install; then
  { "${as_root[@]}" apt-get update -q >"$log" 2>&1 && install; } || { cat "$log" >&2; exit 1; }
fi
