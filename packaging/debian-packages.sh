# shellcheck shell=bash disable=SC2034 # the lists are for those who source this file
# Installs the Debian packages that building and testing need; sourced by ./run and ./test.
# need_packages NAME... installs what is missing and says so: as root, or by sudo, which asks for a
# password only where it can be answered. What cannot be installed is named, with the command for it.

BUILD_PACKAGES="g++ cmake ninja-build pkg-config ccache qt6-base-dev qt6-svg-dev libqt6svg6
  libportmidi-dev portaudio19-dev libasound2-dev zlib1g-dev libsqlite3-dev
  fonts-liberation fonts-dejavu-core"
TEST_PACKAGES="libgtest-dev libbenchmark-dev clang libclang-rt-dev llvm python3 locales
  xvfb xauth jwm xdotool dbus-daemon at-spi2-core poppler-utils fish"
WINDOWS_BUILD_PACKAGES="g++-mingw-w64-x86-64-posix libz-mingw-w64-dev googletest dpkg-dev patch
  make tcl nsis zip"
WINDOWS_TEST_PACKAGES="wine64 xvfb xauth jwm xdotool poppler-utils"
DEB_PACKAGES="dpkg-dev"
BARE_PACKAGES="debootstrap debian-archive-keyring git" # for bare-system.sh
WINDOW_PACKAGES="xvfb jwm xdotool imagemagick"
LINT_PACKAGES="lintian appstream"
CHECK_PACKAGES="shellcheck g++-mingw-w64-x86-64-posix libz-mingw-w64-dev fakeroot $LINT_PACKAGES"
INSTALL_TEST_PACKAGES="desktop-file-utils appstream shared-mime-info xdg-utils libglib2.0-bin mandoc
  groff-base xvfb xauth xdotool zsh bash-completion"
TAR_PACKAGES="xz-utils"

need_packages() {
    local missing="" name
    for name in "$@"; do
        dpkg-query -W -f='${Status}' "$name" 2>/dev/null | grep -q 'ok installed' ||
            missing="$missing $name"
    done
    [ -z "$missing" ] && return 0
    echo "Installing:$missing"
    local -a as_root=()
    if [ "$(id -u)" != 0 ]; then
        as_root=(sudo)
        # A question for a password needs somebody who reads it.
        [ -t 0 ] && [ -t 2 ] || as_root+=(-n)
    fi
    # shellcheck disable=SC2086 # the names are separate words
    command -v "${as_root[0]:-apt-get}" >/dev/null && "${as_root[@]}" apt-get update -qq &&
        "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive \
            apt-get install -y -qq --no-install-recommends $missing >/dev/null && return
    echo "They could not be installed. As root:
apt-get update && apt-get install --no-install-recommends$missing" >&2
    return 1
}
