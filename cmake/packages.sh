# Sourced by run and test: installs the Debian packages named as arguments that are not there yet.
need_packages()
{
    missing=""
    for package in "$@"; do
        dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q "install ok installed" || missing="$missing $package"
    done
    [ -z "$missing" ] && return 0
    as_root=""
    if [ "$(id -u)" -ne 0 ]; then
        command -v sudo >/dev/null || { echo "Please install:$missing" >&2; return 1; }
        as_root="sudo"
    fi
    echo "Installing:$missing"
    $as_root apt-get update -qq
    # shellcheck disable=SC2086
    DEBIAN_FRONTEND=noninteractive $as_root apt-get install -y -qq --no-install-recommends $missing >/dev/null
}

BUILD_PACKAGES="g++ cmake ninja-build libcli11-dev nlohmann-json3-dev qt6-base-dev libx11-dev"
TEST_PACKAGES="libgtest-dev ccache make xvfb xauth xdotool openbox fonts-dejavu-core git subversion strace"
STYLE_PACKAGES="clang-format clang-tidy"
