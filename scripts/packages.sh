# Sourced by ./run and ./test: the Debian and Ubuntu packages that they need.

build_packages=(
    build-essential cmake ninja-build ccache python3
    qtbase5-dev qttranslations5-l10n qttools5-dev qttools5-dev-tools qtmultimedia5-dev libqwt-qt5-dev
    libfast-float-dev libeigen3-dev
    libmosquitto-dev libopenigtlink-dev mosquitto openssl
    libgtest-dev libbenchmark-dev
    python3-dev pybind11-dev python3-numpy python3-pytest python3-matplotlib python3-pip
    fonts-dejavu-core fakeroot iproute2
)
analysis_packages=(clang-format-14 clang-tidy-14 clazy clang-14 lld-14)
clang_packages=(clang-14 lld-14 libclang-rt-14-dev)

# install_missing PACKAGE...
# Installs those of the packages that are not there yet; asks for root only when something is missing.
install_missing() {
    local missing=() package
    for package in "$@"; do
        if [ "$(dpkg-query -W -f '${db:Status-Status}' "$package" 2>/dev/null)" != installed ]; then
            missing+=("$package")
        fi
    done
    [ ${#missing[@]} -eq 0 ] && return
    echo "Installing ${missing[*]}"
    local as_root=()
    [ "$(id -u)" -eq 0 ] || as_root=(sudo)
    "${as_root[@]}" apt-get update -qq
    "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive \
        apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null
}

# install_locale NAME
# Generates a UTF-8 locale such as de_DE that is missing.
install_locale() {
    locale -a | grep -qix "$1\.utf-\?8" && return
    install_missing locales
    local as_root=()
    [ "$(id -u)" -eq 0 ] || as_root=(sudo)
    "${as_root[@]}" localedef -i "$1" -f UTF-8 "$1.UTF-8"
    locale -a | grep -qix "$1\.utf-\?8"
}

# Precompiled headers and ccache go together only with these; the locale is that of warnings.
export CCACHE_SLOPPINESS=pch_defines,time_macros,include_file_mtime,include_file_ctime,locale
# What a file depends on is known after it is compiled: it need not be preprocessed before.
export CCACHE_DEPEND=1
# A second clone, or a desktop in another language, finds what was compiled before.
export CCACHE_BASEDIR=$PWD
