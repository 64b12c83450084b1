# Shared by run.sh and test.sh: install what the build needs (Debian
# packages only), then configure and build.

# Packages the build, the tests and the demo need.
KV_PACKAGES=(
    cmake ninja-build g++ pkg-config
    qt6-base-dev qt6-svg-dev libgl-dev
    libgtest-dev libgmock-dev libbenchmark-dev
    python3 sharutils
    dpkg-dev file
    clang libclang-rt-14-dev
    nlohmann-json3-dev ngspice
    pybind11-dev python3-dev python3-numpy python3-pytest python3-matplotlib
    locales
    # Only the chart's comparison benchmark links it; the library does not.
    libqcustomplot-dev libqcustomplot2.1-qt6
)

kv_install_missing() {
    local missing=()
    local package
    for package in "${KV_PACKAGES[@]}"; do
        if ! dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q "install ok installed"; then
            missing+=("$package")
        fi
    done
    if [ ${#missing[@]} -ne 0 ]; then
        echo "Installing: ${missing[*]}"
        local sudo=""
        if [ "$(id -u)" -ne 0 ]; then
            sudo="sudo"
        fi
        $sudo apt-get update -qq
        DEBIAN_FRONTEND=noninteractive $sudo apt-get install -y -qq "${missing[@]}"
    fi
    kv_make_test_locale
}

# The locale tests run a Qt host in a decimal-comma locale; they skip, saying
# so, where it cannot be made.
kv_make_test_locale() {
    if locale -a 2>/dev/null | grep -ix 'de_DE\.utf-\?8' >/dev/null; then
        return 0
    fi
    local sudo=""
    if [ "$(id -u)" -ne 0 ]; then
        sudo="sudo -n"
    fi
    $sudo localedef -i de_DE -f UTF-8 de_DE.UTF-8 >/dev/null 2>&1 ||
        echo "Could not make the locale de_DE.UTF-8; the tests that need it will skip."
}

# kv_build DIR [cmake options...]: configure once, then build incrementally.
kv_build() {
    local dir="$1"
    shift
    if [ ! -f "$dir/build.ninja" ]; then
        cmake -S . -B "$dir" -G Ninja "$@"
    fi
    cmake --build "$dir" -j"$(nproc)"
}
