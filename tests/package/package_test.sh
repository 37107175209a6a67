#!/bin/bash
# Checks the Debian packages: package_test.sh SOURCE_DIR BUILD_DIR WORK_DIR CHECK
#
# `build` makes them of the build in BUILD_DIR, `install` puts them into the clean root WORK_DIR/root with dpkg; the other
# checks use what stands there. Needs no privilege: fakeroot stands in for it, the root is a folder and no chroot, so the
# installed programs run on this system's own C and C++ libraries, and LD_LIBRARY_PATH stands in for the linker's cache.
# Ends with 77 where a tool is missing.
set -euo pipefail

source_dir=$1 build_dir=$2 work_dir=$3 check=$4
debs=$work_dir/debs root=$work_dir/root
packages=(libtovren0 libtovren-dev tovren)

fail() {
    echo "failed: $*" >&2
    exit 1
}

need() {
    local tool
    for tool in "$@"; do
        command -v "$tool" >/dev/null || {
            echo "there is no $tool here"
            exit 77
        }
    done
}

# A command in the clean root, with nothing of the caller's environment.
in_root() {
    env -i PATH="$root/usr/bin:/usr/bin:/bin" LD_LIBRARY_PATH="$root/usr/lib" HOME="$work_dir/home" LC_ALL=C.UTF-8 "$@"
}

check_build() {
    rm -rf "$work_dir"
    mkdir -p "$debs" "$work_dir/home"
    cpack --config "$build_dir/CPackConfig.cmake" -B "$debs" >"$work_dir/cpack.log" 2>&1 || fail "$(<"$work_dir/cpack.log")"
    local version package
    version=$(dpkg-parsechangelog -l "$source_dir/packaging/debian/changelog" -S Version)
    for package in "${packages[@]}"; do
        [[ -f $(echo "$debs/${package}_${version}"_*.deb) ]] || fail "there is no $package $version: $(ls "$debs")"
    done
}

# What is in each package, folders aside.
check_content() {
    local package
    for package in "${packages[@]}"; do
        dpkg-deb -c "$debs/${package}"_*.deb | awk '!/^d/ { print $1, $2, $6 ($7 ? " -> " $8 : "") }' |
            sed -E 's/(\.so\.[0-9]+)\.[0-9.]+/\1.X/; s/ -> $//' | LC_ALL=C sort -k3 |
            diff -u "$source_dir/tests/package/$package.content" - || fail "$package holds other files"
    done
    local depends
    depends=$(dpkg-deb -f "$debs"/libtovren0_*.deb Depends)
    for package in libc6 libstdc++6 libfmt9 zlib1g; do
        [[ $depends == *"$package"* ]] || fail "libtovren0 does not depend on $package: $depends"
    done
    depends=$(dpkg-deb -f "$debs"/tovren_*.deb Depends)
    [[ $depends == *libtovren0\ \(=* && $depends == *libnettle* ]] || fail "tovren depends on $depends"
}

# The two that packaging/README.md explains.
check_lintian() {
    need lintian
    lintian --fail-on error,warning \
        --suppress-tags initial-upload-closes-no-bugs,pkg-config-unavailable-for-cross-compilation \
        "$debs"/*.deb
}

# The root knows the packages of this system that ours depend on, so that dpkg checks the dependencies for real.
check_install() {
    need fakeroot
    rm -rf "$root"
    mkdir -p "$root/var/lib/dpkg/"{info,updates}
    local depends
    mapfile -t depends < <(for deb in "$debs"/*.deb; do dpkg-deb -f "$deb" Depends; done | tr ',' '\n' |
        sed -E 's/^ +//; s/ .*//' | grep -v tovren | sort -u)
    dpkg-query -s "${depends[@]}" | sed '/^Conffiles:/,/^[^ ]/{/^ /d;/^Conffiles:/d}' >"$root/var/lib/dpkg/status"
    fakeroot dpkg --root="$root" --force-not-root --log="$work_dir/dpkg.log" --install "$debs"/*.deb \
        >"$work_dir/dpkg.out" 2>&1 || fail "$(<"$work_dir/dpkg.out")"
    local package
    for package in "${packages[@]}"; do
        [[ $(dpkg-query --admindir="$root/var/lib/dpkg" -W -f='${Status}' "$package") == "install ok installed" ]] ||
            fail "$package is not installed"
    done
    [[ $(in_root tovren --version) == "tovren "* ]] || fail "the command does not start"
}

# The demo says the same as it does of the build, places and dates aside.
check_demo() {
    in_root "$source_dir/scripts/demo" --installed "$root/usr" >"$work_dir/demo.installed" 2>&1 ||
        fail "$(<"$work_dir/demo.installed")"
    "$source_dir/scripts/demo" --installed "$build_dir" >"$work_dir/demo.built" 2>&1 || fail "$(<"$work_dir/demo.built")"
    grep -q N25Q128A "$work_dir/demo.installed" || fail "the demo identifies nothing"
    diff <(sed "s|^-.* ${root}/usr/|PREFIX/|" "$work_dir/demo.installed") \
        <(sed "s|^-.* ${build_dir}/|PREFIX/|" "$work_dir/demo.built") || fail "the demo says something else"
}

# Where the shells and man look.
check_shell() {
    local share=$root/usr/share
    in_root bash -c "source $share/bash-completion/completions/tovren && complete -p tovren" >/dev/null
    [[ $(head -1 "$share/zsh/vendor-completions/_tovren") == "#compdef tovren" ]] || fail "zsh's function"
    [[ $(in_root tovren __complete -- flash show N25Q128A | sed -n 2p) == N25Q128A* ]] || fail "no flash is completed"
    need man
    local page
    for page in 1/tovren 5/tovren-flash-csv 5/tovren-devices-csv 5/tovren-flash-pcf 5/tovren-devices-pcf \
        5/tovren-definition 5/tovren-settings; do
        [[ $(in_root man -M "$share/man" "${page%/*}" "${page#*/}" | col -b) == *DESCRIPTION* ]] || fail "no page $page"
    done
}

check_answer() {
    local flash="MICRON N25Q128A, 134217728 bit, sectors of 65536 byte, a page takes 5000 us at most"
    [[ $(in_root "$1" 20BA18) == "$flash" ]] || fail "$1: 20BA18 is not $flash"
}

# A program of one's own, by both ways to find the library.
check_consumer() {
    local own=$work_dir/consumer flags
    rm -rf "$own"
    cmake -S "$source_dir/examples/consumer" -B "$own" -G Ninja -DCMAKE_PREFIX_PATH="$root/usr" >/dev/null
    cmake --build "$own" >/dev/null
    grep -q "^tovren_DIR:PATH=$root/usr/" "$own/CMakeCache.txt" || fail "another tovren was found"
    check_answer "$own/identify"
    export PKG_CONFIG_PATH=$root/usr/lib/pkgconfig
    read -ra flags <<<"$(pkg-config --cflags --libs tovren-standalone)"
    "${CXX:-c++}" -std=c++20 -DDB_ROOT="\"$(pkg-config --variable=dbdir tovren)\"" \
        "$source_dir/examples/consumer/identify.cpp" "${flags[@]}" -o "$own/by_pkg_config"
    check_answer "$own/by_pkg_config"
}

# Nothing stays.
check_remove() {
    need fakeroot
    fakeroot dpkg --root="$root" --force-not-root --log="$work_dir/dpkg.log" --purge "${packages[@]}" \
        >"$work_dir/dpkg.out" 2>&1 || fail "$(<"$work_dir/dpkg.out")"
    [[ -z $(find "$root" -name '*tovren*') ]] || fail "left: $(find "$root" -name '*tovren*')"
}

need dpkg dpkg-deb dpkg-parsechangelog
case $check in
build | content | lintian | install | demo | shell | consumer | remove) "check_$check" ;;
*) fail "no check \"$check\"" ;;
esac
