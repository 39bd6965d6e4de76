#!/usr/bin/env bash
# Installs, from Debian's packages, whatever of the build and test needs is
# missing. Does nothing when all is there.
set -euo pipefail

packages=(
  cmake g++ make pkg-config
  qt6-base-dev qt6-serialport-dev qt6-qpa-plugins libgl1-mesa-dev
  qt6-httpserver-dev qt6-websockets-dev libqrencode-dev chromium firefox-esr python3-websocket
  libasound2-dev
  libavformat-dev libavcodec-dev libavutil-dev
  libgtest-dev libgmock-dev libbenchmark-dev
  clang libclang-rt-14-dev
  xvfb xauth imagemagick fonts-dejavu-core
  dbus-bin dbus-daemon at-spi2-core python3-gi gir1.2-atspi-2.0
)

missing=()
for p in "${packages[@]}"; do
  dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q 'install ok installed' || missing+=("$p")
done
[ ${#missing[@]} -eq 0 ] && exit 0

sudo=""
[ "$(id -u)" -ne 0 ] && sudo="sudo"
echo "Installing: ${missing[*]}"
$sudo apt-get update -qq
DEBIAN_FRONTEND=noninteractive $sudo apt-get install -y -qq --no-install-recommends "${missing[@]}"
