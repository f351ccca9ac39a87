#!/usr/bin/env bash
# run.sh WAY SOURCE BUILD WORK: builds a client of the library in one way and runs it. SOURCE is the source tree, BUILD
# a build of it, WORK a folder for what is made here. Every way but `stage` and those that build the library
# themselves needs the prefix that `stage` makes.
set -euo pipefail
way=$1 source=$2 build=$3 work=$4
cmake=${CMAKE:-cmake} cxx=${CXX:-c++}
prefix=$work/prefix
here=$(cd "$(dirname "$0")" && pwd)
mkdir -p "$work"

fail() { echo "$way: $*" >&2; exit 1; }

# A client never needs Qt to be found.
configure() {
  "$cmake" -S "$1" -B "$2" -DCMAKE_BUILD_TYPE=Release -DCMAKE_CXX_COMPILER="$cxx" "${@:3}" >"$2.log" 2>&1 &&
    "$cmake" --build "$2" >>"$2.log" 2>&1 || { cat "$2.log" >&2; fail "cannot build $1"; }
}
without_qt=(-DCMAKE_DISABLE_FIND_PACKAGE_Qt6=ON -DCMAKE_DISABLE_FIND_PACKAGE_Qt5=ON)

# Runs the client and compares what it prints. $2 stands before each text that the formatter makes.
check() {
  local expected="#disable ${2:-}create_clock -period 0.000000 -name c [ get_ports { p } ]"
  expected+=$'\n\n'"$(sed -n '/attributeHeader =/,/;/s/^ *"\(.*\)\\n";\{0,1\}$/\1/p' "$source/tov/writer.cpp")"
  expected+=$'\n\n'"${2:-}missing design: 0"
  diff <(printf '%s\n' "$expected") <("$1") || fail "wrong output"
}

# find_libdir PREFIX: the folder of the library.
find_libdir() { dirname "$(find "$1" -name libtoveng.so)"; }

# with_pkg_config PREFIX PROGRAM: builds PROGRAM.cpp of the work folder as a Makefile would.
with_pkg_config() {
  local libdir
  libdir=$(find_libdir "$1")
  export PKG_CONFIG_PATH=$libdir/pkgconfig LD_LIBRARY_PATH=$libdir
  # shellcheck disable=SC2046 # the flags are words
  "$cxx" -std=c++17 "$2.cpp" -o "$2" $(pkg-config --cflags --libs toveng)
}

case $way in
  stage)
    # The tree is installed in one place and used in another: nothing in it may hold its first path.
    rm -rf "$prefix" "$work/first"
    "$cmake" --install "$build" --prefix "$work/first" >"$work/stage.log"
    mv "$work/first" "$prefix"
    ! grep -rlF -e "$work/first" -e "$source" --include='*.cmake' --include='*.pc' --include='*.h' "$prefix" ||
      fail "an installed file holds a path of its build"
    ! readelf -d "$(find "$prefix" -name libtoveng.so)" | grep -E 'RPATH|RUNPATH' || fail "the library has a run path"
    ;;
  headers)
    # Alone, and without Qt but for the one header that is made of it.
    include=$prefix/include/toveng
    while read -r header; do
      flags=()
      if [ "$header" = tov/design/mrc_dump_reader.h ]; then
        IFS=: read -ra dirs <<<"$QT_INCLUDE_DIRS"
        for dir in "${dirs[@]}"; do flags+=(-isystem "$dir"); done
        flags+=(-fPIC)
      fi
      echo "#include \"$header\"" |
        "$cxx" -std=c++17 -Wall -Wextra -Wpedantic -Werror -fsyntax-only -I"$include" ${flags[@]+"${flags[@]}"} -xc++ - ||
        fail "$header does not stand alone"
    done < <(cd "$include" && find . -name '*.h' -printf '%P\n')
    ;;
  cmake_package)
    configure "$here/project" "$work/$way" -DCMAKE_PREFIX_PATH="$prefix" "${without_qt[@]}"
    check "$work/$way/consumer"
    ;;
  pkg_config)
    cp "$here/project/main.cpp" "$work/$way.cpp"
    with_pkg_config "$prefix" "$work/$way"
    check "$work/$way"
    ;;
  readme)
    # The program of the README, as the README says to build it.
    sed -n '/^```cpp$/,/^```$/{/^```/!p}' "$source/README.md" >"$work/program.cpp"
    with_pkg_config "$prefix" "$work/program"
    "$work/program" "$source/examples/constraint_tour/demo_soc.tov" "$work/program.tov" >/dev/null
    test "$(grep -c '^#disable set_false_path' "$work/program.tov")" -eq \
      "$(grep -c set_false_path "$source/examples/constraint_tour/demo_soc.tov")" || fail "wrong output"
    ;;
  add_subdirectory)
    configure "$here/project" "$work/$way" -DTOVENG_SOURCE_DIR="$source"
    check "$work/$way/consumer"
    ;;
  examples)
    export LC_ALL=C
    for list in "$source"/examples/*/CMakeLists.txt; do
      folder=$(dirname "$list")
      name=$(basename "$folder")
      configure "$folder" "$work/$name" -DCMAKE_PREFIX_PATH="$prefix" "${without_qt[@]}"
      (cd "$work/$name" && case $name in
        constraint_tour) "./$name" "$folder/demo_soc.tov" ;;
        design_tour) "./$name" "$folder/soc.xml" design.tov ;;
        disable_by_clock) "./$name" "$source/examples/constraint_tour/demo_soc.tov" clk_usb out.tov &&
          test "$(grep -c '^#disable .*usb' out.tov)" -eq 6 ;;
        *) "./$name" ;;
      esac) >"$work/$name.out" || fail "$name failed"
      test -s "$work/$name.out" || fail "$name prints nothing"
    done
    ;;
  debian)
    root=$work/root
    rm -rf "$root" "$work/packages"
    mkdir -p "$root"
    (cd "$build" && "${cmake%cmake}cpack" -G DEB -B "$work/packages" >"$work/debian.log" 2>&1) ||
      { cat "$work/debian.log" >&2; fail "cannot make the packages"; }
    runtime=$(ls "$work"/packages/libtoveng1_*.deb) development=$(ls "$work"/packages/libtoveng-dev_*.deb)
    dpkg-deb -f "$runtime" Depends | grep 'libqt[56]core' >/dev/null || fail "the runtime package does not depend on Qt"
    test "$(dpkg-deb -f "$development" Depends)" = "libtoveng1 (= $(dpkg-deb -f "$runtime" Version))" ||
      fail "the development package does not depend on its runtime"
    ! dpkg-deb -c "$runtime" | grep -E '/include/|\.so ->|\.so$' || fail "development files in the runtime package"
    dpkg-deb -x "$runtime" "$root"
    dpkg-deb -x "$development" "$root"
    cp "$here/project/main.cpp" "$work/$way.cpp"
    with_pkg_config "$root/usr" "$work/$way"
    check "$work/$way"
    ;;
  external_platform)
    # The records come from the bundled sources and the formatter from a flow of its own, in one foreign library.
    flow=$work/flow
    rm -rf "$flow" "$work/external"
    mkdir -p "$flow"
    cp -r "$here/flow/platform" "$flow"
    cp "$source"/platform/{dci,ppstl_list}.h "$flow/platform"
    "$cxx" -std=c++17 -shared -fPIC -fvisibility=hidden -I"$flow" -I"$source" -o "$flow/libflow.so" \
      "$here/flow/ut.cpp" "$source/platform/bundled/dci.cpp"
    configure "$source" "$work/external" -DTOV_PLATFORM=external -DTOV_PLATFORM_INCLUDE_DIR="$flow" \
      -DTOV_PLATFORM_LIBRARIES="$flow/libflow.so" -DTOVENG_BUILD_TESTS=OFF -DTOVENG_BUILD_EXAMPLES=OFF \
      -DTOVENG_INSTALL=ON
    ! nm -DC --defined-only "$work/external/libtoveng.so" | grep -E ' (neoform|ut_str|taDci)' ||
      fail "the library still defines what the flow's library gives"
    nm -DC --undefined-only "$work/external/libtoveng.so" | grep ' U neoform' >/dev/null || fail "neoform is not asked for"
    "$cmake" --install "$work/external" --prefix "$flow/prefix" >/dev/null
    cmp "$flow/platform/ut.h" "$flow/prefix/include/toveng/platform/ut.h"
    configure "$here/project" "$work/$way" -DCMAKE_PREFIX_PATH="$flow/prefix" "${without_qt[@]}" \
      -DCMAKE_CXX_STANDARD_LIBRARIES="$flow/libflow.so"
    export LD_LIBRARY_PATH=$flow
    check "$work/$way/consumer" "<flow>"
    ;;
  *) fail "no such way" ;;
esac
