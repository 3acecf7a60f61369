# Shared by the scripts of this folder and by the continuous integration: finding and installing what a build needs,
# building, and testing. Sourced by bash with `set -eu` and the repository's root as the current directory.

build_dir=${BUILD_DIR:-build}
jobs=$(nproc 2>/dev/null || echo 2)

say() {
    printf '== %s\n' "$*"
}

# Runs a command as root: directly if we are root already, otherwise with sudo.
as_root() {
    if [ "$(id -u)" -eq 0 ]; then
        "$@"
    elif command -v sudo >/dev/null 2>&1; then
        sudo "$@"
    else
        echo "This needs root rights, or sudo: $*" >&2
        return 1
    fi
}

missing_packages=()

# need_command COMMAND PACKAGE and need_file PATH PACKAGE: PACKAGE is missing if the command or file does not exist.
need_command() {
    command -v "$1" >/dev/null 2>&1 || missing_packages+=("$2")
}

need_file() {
    compgen -G "$1" >/dev/null || missing_packages+=("$2")
}

need_build_tools() {
    need_command c++ g++
    need_command cmake cmake
    command -v make >/dev/null 2>&1 || need_command ninja ninja-build
}

need_test_tools() {
    need_build_tools
    need_file '/usr/*/gtest/gtest.h' libgtest-dev
    need_command python3 python3
}

apt_install() {
    as_root env DEBIAN_FRONTEND=noninteractive \
        apt-get install -y -q --no-install-recommends "${missing_packages[@]}" </dev/null
}

# Installs the missing packages; silent if there are none.
install_missing() {
    if [ ${#missing_packages[@]} -eq 0 ]; then
        return 0
    fi
    if ! command -v apt-get >/dev/null 2>&1; then
        echo "Not a Debian system. Install what corresponds to these packages first: ${missing_packages[*]}" >&2
        return 1
    fi
    say "Installing: ${missing_packages[*]}"
    # A fresh machine has no package lists; on one that was off for a long time they are out of date.
    if ! compgen -G '/var/lib/apt/lists/*_Packages*' >/dev/null; then
        as_root apt-get update -q </dev/null
        apt_install
    elif ! apt_install; then
        as_root apt-get update -q </dev/null
        apt_install
    fi
    missing_packages=()
}

# configure FOLDER NAME=VALUE...: configures a build folder unless it already has these settings.
configure() {
    local folder=$1 setting known=yes
    shift
    for setting in "$@"; do
        grep -qsx "${setting%%=*}:[A-Z]*=${setting#*=}" "$folder/CMakeCache.txt" || known=no
    done
    if [ -f "$folder/CMakeCache.txt" ] && [ $known = yes ]; then
        return 0
    fi
    say "Configuring $folder"
    prefer_ninja
    cmake -S . -B "$folder" "${@/#/-D}"
}

# Affects only new build folders.
prefer_ninja() {
    if command -v ninja >/dev/null 2>&1; then
        export CMAKE_GENERATOR=${CMAKE_GENERATOR:-Ninja}
    fi
}

# build FOLDER TARGET...: brings the targets, or everything, up to date.
build() {
    local folder=$1
    shift
    say "Building $folder"
    cmake --build "$folder" --parallel "$jobs" ${1:+--target "$@"}
}

# run_tests FOLDER OPTION...: runs the tests of a build, all of them unless ctest options select some, and writes a
# summary to FOLDER/tests.xml.
run_tests() {
    local folder=$1
    shift
    say "Testing $folder"
    rm -f "$folder/tests.xml"
    ctest --test-dir "$folder" --parallel "$jobs" --progress --output-on-failure --no-tests=error \
        --output-junit tests.xml "$@"
}
