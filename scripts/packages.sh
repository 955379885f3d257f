#!/usr/bin/env bash
# Installs the Debian packages that a purpose needs and that are missing.
#   scripts/packages.sh build|run|virtual|test|bench|package|fresh…
#   scripts/packages.sh --list build|run|…      prints their names instead
set -euo pipefail

packages_for() {
    case $1 in
    build) echo "ninja-build ccache mold cmake g++ pkg-config libicu-dev libplist-dev nlohmann-json3-dev
        qt6-base-dev qt6-svg-dev libpoppler-qt6-dev libxcb1-dev libxcb-xfixes0-dev libxcb-xinput-dev
        libxcb-xtest0-dev libxcb-xkb-dev libxcb-shape0-dev libxkbcommon-dev libxkbcommon-x11-dev
        libglib2.0-dev libarchive-dev libgstreamer1.0-dev libgstreamer-plugins-base1.0-dev libgtest-dev
        libgmock-dev" ;;
    run) echo "qt6-qpa-plugins libqt6svg6 shared-mime-info adwaita-icon-theme dbus fonts-inter qt6-image-formats-plugins
        gstreamer1.0-plugins-base gstreamer1.0-plugins-good" ;;
    # A display where there is none, with a window manager, a tray and something that takes pictures.
    virtual) echo "xvfb openbox tint2 xdotool imagemagick x11-utils x11-xserver-utils" ;;
    test) echo "xvfb openbox tint2 dbus at-spi2-core x11-xserver-utils x11-xkb-utils xkb-data desktop-file-utils
        python3-xdg openssl gstreamer1.0-plugins-base gstreamer1.0-plugins-good qt6-image-formats-plugins" ;;
    # What the benchmarks are measured beside.
    bench) echo "dbus libxcb-damage0-dev pcmanfm-qt thunar tumbler webp-pixbuf-loader qt6-image-formats-plugins" ;;
    # What makes the Debian package and looks for faults in it, and a fresh system to try it in.
    package) echo "dpkg-dev lintian" ;;
    fresh) echo "debootstrap ccache" ;;
    *) echo "packages.sh: no purpose called $1" >&2 && return 2 ;;
    esac
}

names_for() {
    local purpose list
    for purpose in "$@"; do
        list=$(packages_for "$purpose") || exit 2
        printf '%s\n' $list
    done | sort -u
}

installed() {
    dpkg-query -W -f='${Package} ${db:Status-Status}\n' 2>/dev/null | awk '$2 == "installed" { print $1 }' | sort -u
}

# Runs apt-get with the rights it needs, or fails where there are none to be had.
as_root() {
    if [ "$(id -u)" = 0 ]; then
        env DEBIAN_FRONTEND=noninteractive "$@"
    elif command -v sudo >/dev/null && { sudo -n true 2>/dev/null || [ -t 0 ]; }; then
        sudo env DEBIAN_FRONTEND=noninteractive "$@"
    else
        return 1
    fi
}

if [ "${1:-}" = --list ]; then
    shift
    names_for "$@"
    exit
fi

wanted=$(names_for "$@")
if ! command -v dpkg-query >/dev/null; then
    echo "This is not a Debian system; install what these packages hold:" $wanted >&2
    exit 1
fi
missing=$(comm -23 <(printf '%s\n' "$wanted") <(installed))
[ -n "$missing" ] || exit 0

if ! as_root true; then
    echo "Missing packages, and neither root nor sudo to install them:" $missing >&2
    exit 1
fi
echo "Installing" $missing
# A package list that can't be refreshed may still be good enough.
as_root apt-get update -qq || true
if ! as_root apt-get install -y -qq --no-install-recommends $missing >/dev/null; then
    echo "Couldn't install:" $missing >&2
    exit 1
fi
