# Shared by the scripts in this folder: install what is missing, then build.
# shellcheck shell=bash

ORVANE_ROOT="$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)"
ORVANE_BUILD="${ORVANE_BUILD:-$ORVANE_ROOT/build}"

# Debian 12 packages the build, the tests and the app need.
ORVANE_PACKAGES=(
  build-essential cmake ninja-build pkg-config
  qt6-base-dev qt6-svg-dev libqt6svg6
  qt6-wayland
  libsqlitecpp-dev libsqlite3-dev
  libudev-dev libusb-1.0-0-dev libevdev-dev
  libxcb1-dev libwayland-dev
  libgtest-dev libgmock-dev libbenchmark-dev
  fonts-noto-cjk qt6-translations-l10n
  fonttools libfontconfig-dev
  librsvg2-bin
  ccache
)

# What scripts/test adds: the validators of the desktop entry and AppStream file,
# poppler-utils to check the user guides' PDFs (their fonts and pages),
# weston with ImageMagick for the window on a headless Wayland compositor,
# and the desktops that the profiles following the application in front are
# tested on: Xvfb with openbox (xdotool for the screenshots), and sway.
ORVANE_TEST_PACKAGES=(desktop-file-utils appstream poppler-utils weston imagemagick
  xvfb openbox xdotool sway)

# What scripts/package and scripts/package-check add: the Debian package
# tools (dpkg-shlibdeps, and `file`, which CPack uses to find the binaries),
# lintian, and mmdebstrap for the fresh Debian root.
ORVANE_PACKAGING_PACKAGES=(dpkg-dev file lintian mmdebstrap)

# What bench/start-memory adds: Qt's pixeltool (the trivial Qt 6 widgets app
# the start is compared with), Xvfb to run both on, and the X headers of the
# small program that watches for the first mapped window.
ORVANE_BENCH_PACKAGES=(qt6-tools-dev-tools xvfb libxcb1-dev)

orvane_missing_packages() {
  local missing=() p
  for p in "$@"; do
    dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed" || missing+=("$p")
  done
  echo "${missing[@]}"
}

# Installs the given packages when missing; as non-root prints the command.
orvane_install() {
  local missing
  missing=$(orvane_missing_packages "$@")
  [ -z "$missing" ] && return 0
  if [ "$(id -u)" -ne 0 ]; then
    echo "These Debian packages are missing: $missing" >&2
    echo "Install them with:" >&2
    echo "  sudo apt-get update && sudo apt-get install -y $missing" >&2
    exit 1
  fi
  echo "Installing: $missing"
  export DEBIAN_FRONTEND=noninteractive
  apt-get update -qq
  # shellcheck disable=SC2086
  apt-get install -y -qq --no-install-recommends $missing
}

orvane_build() {
  if [ ! -f "$ORVANE_BUILD/build.ninja" ]; then
    cmake -S "$ORVANE_ROOT" -B "$ORVANE_BUILD" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo
  fi
  cmake --build "$ORVANE_BUILD" -j "$(nproc)"
}
