# Shared by ./run, ./test and ./package: installs what the build needs, configures and builds. Sourced with the project's root
# as working directory.

PACKAGES="g++ cmake ninja-build ccache pkg-config python3
qt6-base-dev qt6-base-dev-tools qt6-serialport-dev qt6-svg-dev qt6-multimedia-dev qt6-qpa-plugins
libsodium-dev libsqlite3-dev libpq-dev libx11-dev fonts-dejavu-core"
TEST_PACKAGES="libgtest-dev clang-format postgresql
xvfb openbox at-spi2-core python3-gi python3-xlib dbus-daemon"

# What ./package needs besides: dpkg's tools, the icons' renderer, the book's, and what examines the packages.
PACKAGING_PACKAGES="dpkg-dev librsvg2-bin cmark-gfm lintian appstream desktop-file-utils man-db bash-completion"

# What ./test --fuzz needs: another compiler, for its fuzzing library.
FUZZ_PACKAGES="clang-14 libclang-rt-14-dev"

# What ./bench --profile needs: callgrind.
PROFILE_PACKAGES="valgrind"

DESKTOP_PACKAGES="xfwm4 metacity mutter kwin-x11 xwayland qt6-wayland"

# install_packages NAME... : installs the Debian packages that are missing; quick when none is.
install_packages() {
    local missing=() name
    for name in "$@"; do
        dpkg-query -W -f '${Status}' "$name" 2>/dev/null | grep -q '^install ok installed' || missing+=("$name")
    done
    [ ${#missing[@]} -eq 0 ] && return 0

    local root=()
    if [ "$(id -u)" -ne 0 ]; then
        if ! command -v sudo >/dev/null 2>&1; then
            echo "These Debian packages are missing: ${missing[*]}" >&2
            echo "Installing them needs root or sudo. As root run: apt-get install ${missing[*]}" >&2
            return 1
        fi
        root=(sudo)
    fi
    echo "Installing: ${missing[*]}"
    "${root[@]}" apt-get update -qq &&
        "${root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends \
            "${missing[@]}" >/dev/null || {
            echo "The packages could not be installed. Try: apt-get install ${missing[*]}" >&2
            return 1
        }
}

# [TARGET=NAME] build_preset NAME [CMAKE ARGUMENT...] : configures when needed and builds the preset, or a target of it; its output goes to the build folder's
# build.log and is shown only when something fails.
build_preset() {
    local preset=$1 folder log
    shift
    folder=build
    [ "$preset" = release ] || folder="build-$preset"
    mkdir -p "$folder"
    log="$folder/build.log"
    if [ ! -f "$folder/build.ninja" ] || [ $# -gt 0 ]; then
        echo "Configuring ($preset) ..."
        cmake --preset "$preset" "$@" >"$log" 2>&1 || { cat "$log" >&2; return 1; }
    fi
    echo "Building ($preset) ..."
    cmake --build --preset "$preset" ${TARGET:+--target "$TARGET"} >"$log" 2>&1 || { tail -n 60 "$log" >&2; return 1; }
}

# test_desktops : the tests of windows, focus and placement under other window managers and in a Wayland session.
test_desktops() {
    local manager file failed=0
    for manager in openbox xfwm4 metacity mutter kwin wayland; do
        for file in tests/desktop/*.steps; do
            echo "$manager: $(basename "$file")"
            /usr/bin/python3 -B tests/desktop/bench.py "$file" --programs build/bin --output "build/desktop/$manager" \
                --window-manager "$manager" --tag desktops || failed=1
        done
    done
    return "$failed"
}
