#!/bin/sh
# Installs the Debian packages that building, testing and running Tavorine need, when they are
# missing. Uses sudo when not run as root.
set -e
PKGS="cmake g++ make qt6-base-dev qt6-serialport-dev libqt6serialport6-dev qt6-svg-dev libsqlite3-dev libgl-dev python3 xvfb xauth poppler-utils fonts-liberation2"
missing=""
for p in $PKGS; do
  dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed" || missing="$missing $p"
done
[ -z "$missing" ] && exit 0
echo "Installing:$missing"
if [ "$(id -u)" -eq 0 ]; then SUDO=""; else SUDO="sudo"; fi
$SUDO apt-get update
DEBIAN_FRONTEND=noninteractive $SUDO apt-get install -y --no-install-recommends $missing
