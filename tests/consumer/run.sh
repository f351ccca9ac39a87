#!/usr/bin/env bash
# run.sh WAY SOURCE BUILD WORK: builds a client of the library in one way and runs it. SOURCE is the source tree, BUILD
# a build of it, WORK a folder for what is made here. Every way but `stage`, `debian` and those that build the library
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
    "$cmake" --build "$2" --parallel "$(nproc)" >>"$2.log" 2>&1 || { cat "$2.log" >&2; fail "cannot build $1"; }
}
without_qt=(-DCMAKE_DISABLE_FIND_PACKAGE_Qt6=ON -DCMAKE_DISABLE_FIND_PACKAGE_Qt5=ON)

# check FOLDER [MARK]: runs the clients of a folder and compares what they print. MARK stands before each text that the
# formatter makes.
check() {
  local version comment expected
  version=$(sed -n 's/^project(toveng VERSION \([0-9.]*\).*/\1/p' "$source/CMakeLists.txt")
  comment=$(sed -n '/attributeHeader =/,/;/s/^ *"\(.*\)\\n";\{0,1\}$/\1/p' "$source/tov/writer.h")
  expected="#disable ${2:-}create_clock -period 0.000000 -name c [ get_ports { p } ]"
  expected+=$'\n\n'"$comment"$'\n\n'"${2:-}missing design: 0"
  diff <(printf '%s\n' "$expected") <("$1/formatting") || fail "wrong output"
  diff <(printf '%s\n' "$version" "$version") <("$1/plain" | cut -d' ' -f1) || fail "wrong version"
}

# find_libdir PREFIX: the folder of the library.
find_libdir() { dirname "$(find "$1" -name libtoveng.so)"; }

# with_pkg_config PREFIX SOURCE PROGRAM [OPTION...]: builds a program as a Makefile would, and lets it find the library.
with_pkg_config() {
  local libdir
  libdir=$(find_libdir "$1")
  export PKG_CONFIG_PATH=$libdir/pkgconfig LD_LIBRARY_PATH=$libdir
  mkdir -p "$(dirname "$3")"
  # shellcheck disable=SC2046 # the flags are words
  "$cxx" -std=c++17 "$2" -o "$3" $(pkg-config --cflags --libs "${@:4}" toveng)
}

# clients_with_pkg_config PREFIX [OPTION...]: builds the clients into a folder of the way's name.
clients_with_pkg_config() {
  local program
  for program in formatting plain; do
    with_pkg_config "$1" "$here/project/$program.cpp" "$work/$way/$program" "${@:2}"
  done
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
    check "$work/$way"
    ;;
  pkg_config)
    clients_with_pkg_config "$prefix"
    check "$work/$way"
    ;;
  readme)
    # The program of the README, as the README says to build it.
    sed -n '/^```cpp$/,/^```$/{/^```/!p}' "$source/README.md" >"$work/program.cpp"
    with_pkg_config "$prefix" "$work/program.cpp" "$work/program"
    "$work/program" "$source/examples/constraint_tour/demo_soc.tov" "$work/program.tov" >/dev/null
    test "$(grep -c '^#disable set_false_path' "$work/program.tov")" -eq \
      "$(grep -c set_false_path "$source/examples/constraint_tour/demo_soc.tov")" || fail "wrong output"
    ;;
  add_subdirectory)
    # The parent project exports a library that links this one; what it installs is all that others need.
    rm -rf "$work/$way.prefix"
    configure "$here/project" "$work/$way" -DTOVENG_SOURCE_DIR="$source"
    check "$work/$way"
    "$cmake" --install "$work/$way" --prefix "$work/$way.prefix" >"$work/$way.log"
    configure "$here/project" "$work/$way.client" -DCONSUMED=editor -DCMAKE_PREFIX_PATH="$work/$way.prefix" \
      "${without_qt[@]}"
    check "$work/$way.client"
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
    # BUILD is the folder of the packages that scripts/package made.
    root=$work/root
    rm -rf "$root"
    mkdir -p "$root"
    runtime=$(ls "$build"/libtoveng1_*.deb) development=$(ls "$build"/libtoveng-dev_*.deb)
    dpkg-deb -f "$runtime" Depends | grep 'libqt[56]core' >/dev/null || fail "the runtime package does not depend on Qt"
    ! dpkg-deb -c "$runtime" | grep -E '/include/|\.so ->|\.so$' || fail "development files in the runtime package"
    dpkg-deb -x "$runtime" "$root"
    dpkg-deb -x "$development" "$root"
    flags=$(PKG_CONFIG_PATH=$(find_libdir "$root")/pkgconfig pkg-config --cflags --libs toveng)
    [ "${flags% }" = "-I/usr/include/toveng -ltoveng" ] || fail "pkg-config says $flags"
    clients_with_pkg_config "$root" --define-variable=prefix="$root/usr"
    check "$work/$way"
    ;;
  external_platform)
    # The records come from the bundled sources and the formatter from a flow of its own, in one foreign library.
    flow=$work/flow
    rm -rf "$flow" "$work/external"
    mkdir -p "$flow/include" "$flow/lib"
    cp -r "$here/flow/platform" "$flow/include"
    cp "$source"/platform/{dci,ppstl_list}.h "$flow/include/platform"
    "$cxx" -std=c++17 -shared -fPIC -fvisibility=hidden -I"$flow/include" -I"$source" -Wl,-soname,libflow.so.3 \
      -o "$flow/lib/libflow.so.3" "$here/flow/ut.cpp" "$source/platform/bundled/dci.cpp"
    ln -s libflow.so.3 "$flow/lib/libflow.so"

    # Tests and examples are built too; not optimised, for they only have to link.
    configure "$source" "$work/external" -DTOV_PLATFORM=external -DTOV_PLATFORM_INCLUDE_DIR="$flow/include" \
      -DTOV_PLATFORM_LIBRARIES="$flow/lib/libflow.so" -DCMAKE_CXX_FLAGS_RELEASE=-O0
    ! nm -DC --defined-only "$work/external/libtoveng.so" | grep -E ' (neoform|ut_str|taDci)' ||
      fail "the library still defines what the flow's library gives"
    nm -DC --undefined-only "$work/external/libtoveng.so" | grep ' U neoform' >/dev/null || fail "neoform is not asked for"

    # The installed tree moves, the flow's library stays and is found there.
    "$cmake" --install "$work/external" --prefix "$work/first" >"$work/external.log"
    mv "$work/first" "$flow/prefix"
    cmp "$flow/include/platform/ut.h" "$flow/prefix/include/toveng/platform/ut.h"
    configure "$here/project" "$work/$way" -DCMAKE_PREFIX_PATH="$flow/prefix" "${without_qt[@]}"
    check "$work/$way" "<flow>"
    way=$way.pkg_config
    clients_with_pkg_config "$flow/prefix"
    check "$work/$way" "<flow>"
    ;;
  *) fail "no such way" ;;
esac
