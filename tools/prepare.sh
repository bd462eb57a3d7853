#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
# Installs the packages that the build needs (only those that are missing) and configures build/release.
# Sourced by run and check from the top of the repository.
set -euo pipefail

engine_packages=(locales g++ cmake ninja-build libfmt-dev libmd-dev libcli11-dev libgtest-dev libbenchmark-dev)
desktop_packages=(qt6-base-dev qt6-multimedia-dev qt6-svg-dev libqcustomplot-dev fonts-dejavu-core)

# install_packages NAME...
install_packages() {
  local missing=() package
  for package in "$@"; do
    dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q 'ok installed' || missing+=("$package")
  done
  [ ${#missing[@]} -gt 0 ] || return 0
  local as_root=()
  [ "$(id -u)" -eq 0 ] || as_root=(sudo)
  echo "Installing: ${missing[*]}"
  "${as_root[@]}" apt-get update -qq
  "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends "${missing[@]}"
}

# configure CMAKE-ARGUMENT...
configure() {
  local log
  mkdir -p build/release
  log=build/release/configure.log
  cmake --preset release "$@" >"$log" 2>&1 || { cat "$log"; return 1; }
}

# build TARGET...: quiet unless it fails
build() {
  local log=build/release/build.log
  cmake --build build/release --target "$@" >"$log" 2>&1 || { cat "$log"; return 1; }
}
