#!/bin/sh
# Installs the Debian packages that building, testing, packaging and running Tavorine need,
# when they are missing, and says which. With everything present it does nothing: no root, no
# network. Uses sudo when not run as root. Name real packages here, never virtual ones (a
# virtual package is never reported as installed).
set -e
PKGS="cmake g++ make qt6-base-dev qt6-serialport-dev qt6-svg-dev libsqlite3-dev libgl-dev python3 xvfb xauth"
# The suite runs again under a decimal-comma locale (.ci/run).
PKGS="$PKGS locales"
# Building and checking the .deb (make package, .ci/run).
PKGS="$PKGS dpkg-dev file appstream desktop-file-utils x11-utils"
# Printing: the PDF test turns pages into pictures; Arial is drawn with Liberation Sans.
PKGS="$PKGS poppler-utils fonts-liberation2"
# The sanitizer build and the fuzz harnesses (.ci/run): clang, libFuzzer and the symbolizer.
PKGS="$PKGS clang libclang-rt-14-dev llvm"
# The INDI route (INDI's client library, ERFA) and its tests (the INDI server and drivers).
PKGS="$PKGS pkg-config libindi-dev liberfa-dev indi-bin"

if ! command -v dpkg-query >/dev/null 2>&1; then
  echo "tools/install-deps.sh: not a Debian system; make sure these (or your system's" \
       "equivalents) are installed: $PKGS" >&2
  exit 0
fi
missing=""
for p in $PKGS; do
  dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed" || missing="$missing $p"
done
[ -z "$missing" ] && exit 0

echo "Installing missing Debian packages:$missing"
if [ "$(id -u)" -eq 0 ]; then
  SUDO=""
elif command -v sudo >/dev/null 2>&1; then
  SUDO="sudo"
else
  echo "Not root and no sudo: as root, run  apt-get install$missing" >&2
  exit 1
fi
$SUDO apt-get update
DEBIAN_FRONTEND=noninteractive $SUDO apt-get install -y --no-install-recommends $missing
