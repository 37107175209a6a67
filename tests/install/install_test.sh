#!/bin/bash
# Checks the installed tree: install_test.sh SOURCE_DIR BUILD_DIR WORK_DIR CHECK [COMPILER SANITIZERS]
# The check `tree` makes WORK_DIR/moved, which the others use.
set -euo pipefail

source_dir=$1 build_dir=$2 work_dir=$3 check=$4 compiler=${5:-} sanitizers=${6:-}
prefix=$work_dir/moved
PKG_CONFIG_PATH=$(find "$prefix" -type d -name pkgconfig 2>/dev/null || true)
export PKG_CONFIG_PATH
flags=${sanitizers:+-fsanitize=$sanitizers}
own_dir=$work_dir/$check-$(basename "$compiler")

fail() {
    echo "failed: $*" >&2
    exit 1
}

# The program knows a flash of the installed database and says when none answers.
check_identify() {
    local flash="MICRON N25Q128A, 134217728 bit, sectors of 65536 byte, a page takes 5000 us at most"
    [[ $("$1" 20BA18) == "$flash" ]] || fail "20BA18 is not $flash"
    local answer status=0
    answer=$("$1" 000001) || status=$?
    [[ $answer == "no flash answers that" && $status == 1 ]] || fail "000001: $answer (exit $status)"
}

check_tree() {
    rm -rf "$work_dir"
    cmake --install "$build_dir" --prefix "$work_dir/prefix" >/dev/null
    mv "$work_dir/prefix" "$prefix"
    env -i "$prefix/bin/tovren" --version
}

configure_and_build() {
    rm -rf "$own_dir"
    cmake -S "$1" -B "$own_dir" -G Ninja -DCMAKE_PREFIX_PATH="$prefix" -DCMAKE_CXX_COMPILER="$compiler" \
        -DCMAKE_CXX_FLAGS="$flags" >/dev/null
    cmake --build "$own_dir"
}

check_find_package() {
    configure_and_build "$source_dir/examples/consumer"
    check_identify "$own_dir/identify"
}

check_link_order() {
    configure_and_build "$source_dir/tests/install/link_order"
    "$own_dir/host_first" || fail "host_first"
    "$own_dir/library_first" || fail "library_first"
}

check_pkg_config() {
    rm -rf "$own_dir"
    mkdir -p "$own_dir"
    # shellcheck disable=SC2046,SC2086 # the flags are words
    "$compiler" -std=c++20 $flags -DDB_ROOT="\"$(pkg-config --variable=dbdir tovren)\"" \
        "$source_dir/examples/consumer/identify.cpp" $(pkg-config --cflags --libs tovren-standalone) \
        -Wl,-rpath,"$(pkg-config --variable=libdir tovren)" -o "$own_dir/identify"
    check_identify "$own_dir/identify"
}

# Each installed header stands by itself and compiles without a warning.
check_headers() {
    local header
    for header in "$prefix"/include/tovren/*.h; do
        "$compiler" -std=c++20 -Wall -Wextra -Wpedantic -Wconversion -Wshadow -Werror -fsyntax-only \
            -I"$prefix/include/tovren" -include "$header" -x c++ /dev/null || fail "$header"
    done
}

case $check in
tree | find_package | pkg_config | link_order | headers) "check_$check" ;;
*) fail "no check \"$check\"" ;;
esac
