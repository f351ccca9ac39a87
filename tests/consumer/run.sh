#!/usr/bin/env bash
# run.sh WAY SOURCE BUILD WORK: builds clients of the library in one way, a function below, and runs them. SOURCE is the
# source tree, BUILD a build of it, WORK a scratch folder. Every way except stage, debian and those that build the library
# themselves needs the prefix that stage creates.
set -euo pipefail
way=$1 source=$2 build=$3 work=$4
cmake=${CMAKE:-cmake} cxx=${CXX:-c++}
prefix=$work/prefix
here=$(cd "$(dirname "$0")" && pwd)
mkdir -p "$work"

fail() { echo "$way: $*" >&2; exit 1; }

# configure SOURCE BUILD [OPTION...]: configures and builds the targets (all). Not optimised: the result only has to work.
# With ccache, what several ways have in common is compiled once.
targets=(all)
launcher=()
if command -v ccache >/dev/null; then
  launcher=(-DCMAKE_CXX_COMPILER_LAUNCHER=ccache)
  export CCACHE_DIR=${CCACHE_DIR:-$work/ccache} CCACHE_BASEDIR=$work CCACHE_NOHASHDIR=1
fi
configure() {
  {
    "$cmake" -S "$1" -B "$2" -DCMAKE_BUILD_TYPE=Release -DCMAKE_CXX_FLAGS_{DEBUG,RELEASE}= \
      -DCMAKE_CXX_COMPILER="$cxx" -DCMAKE_UNITY_BUILD=ON "${launcher[@]}" "${@:3}" &&
      "$cmake" --build "$2" --parallel "$(nproc)" --target "${targets[@]}"
  } >"$2.log" 2>&1 || { cat "$2.log" >&2; fail "cannot build $1"; }
}
# A client never needs to find Qt.
without_qt=(-DCMAKE_DISABLE_FIND_PACKAGE_Qt6=ON -DCMAKE_DISABLE_FIND_PACKAGE_Qt5=ON)

version=$(sed -n 's/^project(toveng VERSION \([0-9.]*\).*/\1/p' "$source/CMakeLists.txt")

# check FOLDER [MARK]: runs the clients of a folder and compares their output. MARK precedes each formatted text.
check() {
  diff <(sed "s/create_clock\|^missing/${2:-}&/" "$source/tests/data/consumer") <("$1/formatting") || fail "wrong output"
  diff <(printf '%s\n' "$version" "$version") <("$1/plain" | cut -d' ' -f1) || fail "wrong version"
}

# runs PROGRAM: checks that the program toveng starts and knows its version.
runs() {
  [ "$("$1" --version)" = "toveng $version" ] || fail "$1 does not run"
}

# find_libdir PREFIX: the folder of the library.
find_libdir() { dirname "$(find "$1" -name libtoveng.so)"; }

# with_pkg_config PREFIX SOURCE PROGRAM [OPTION...]: builds a program as a Makefile would, and sets its library path.
with_pkg_config() {
  local libdir
  libdir=$(find_libdir "$1")
  export PKG_CONFIG_PATH=$libdir/pkgconfig LD_LIBRARY_PATH=$libdir
  mkdir -p "$(dirname "$3")"
  # shellcheck disable=SC2046 # the flags are words
  "$cxx" -std=c++17 "$2" -o "$3" $(pkg-config --cflags --libs "${@:4}" toveng)
}

# clients_with_pkg_config PREFIX FOLDER [OPTION...]: builds the clients into a folder.
clients_with_pkg_config() {
  local program
  for program in formatting plain; do
    with_pkg_config "$1" "$here/project/$program.cpp" "$2/$program" "${@:3}"
  done
}

# The tree is installed in one place and used in another: nothing in it may contain the first path.
stage() {
  rm -rf "$prefix" "$work/first"
  "$cmake" --install "$build" --prefix "$work/first" >"$work/stage.log"
  mv "$work/first" "$prefix"
  ! grep -rlF -e "$work/first" -e "$source" --include='*.cmake' --include='*.pc' --include='*.h' \
    "$prefix" || fail "an installed file holds a path of its build"
  ! readelf -d "$(find_libdir "$prefix")/libtoveng.so" | grep -E 'RPATH|RUNPATH' ||
    fail "the library has a run path"
  runs "$prefix/bin/toveng"
}

# Each header alone, and without Qt except for the one that uses it.
headers() {
  local header flags dirs dir
  cd "$prefix/include/toveng"
  while read -r header; do
    flags=(-std=c++17 -Wall -Wextra -Wpedantic -Werror -fsyntax-only -I.)
    if [ "$header" = tov/design/mrc_dump_reader.h ]; then
      IFS=: read -ra dirs <<<"$QT_INCLUDE_DIRS"
      for dir in "${dirs[@]}"; do flags+=(-isystem "$dir"); done
      flags+=(-fPIC)
    fi
    echo "#include \"$header\"" | "$cxx" "${flags[@]}" -xc++ - ||
      fail "$header needs another header"
  done < <(find . -name '*.h' -printf '%P\n')
}

cmake_package() {
  configure "$here/project" "$work/$way" -DCMAKE_PREFIX_PATH="$prefix" "${without_qt[@]}"
  check "$work/$way"
}

pkg_config() {
  clients_with_pkg_config "$prefix" "$work/$way"
  check "$work/$way"
  with_pkg_config "$prefix" "$here/project/own_names.cpp" "$work/$way/own_names"
  [ "$("$work/$way/own_names")" = $'create_clock c\nlost word' ] || fail "a program's own names are not its own"
}

# In this mode the standard containers have a different layout.
debug_containers() {
  printf '#define _GLIBCXX_DEBUG\n#include "%s"\n' "$here/project/plain.cpp" >"$work/$way.cpp"
  ! with_pkg_config "$prefix" "$work/$way.cpp" "$work/$way" 2>"$work/$way.log" ||
    fail "a program with other containers links"
  grep 'undefined.*builtWithGlibcxxDebug' "$work/$way.log" >/dev/null || fail "the linker does not say why"
}

# The program of the README, built as the README says.
readme() {
  local file=$source/examples/constraint_tour/demo_soc.tov
  sed -n '/^```cpp$/,/^```$/{/^```/!p}' "$source/README.md" >"$work/program.cpp"
  with_pkg_config "$prefix" "$work/program.cpp" "$work/program"
  "$work/program" "$file" "$work/program.tov" >/dev/null
  test "$(grep -c '^#disable set_false_path' "$work/program.tov")" -eq \
    "$(grep -c set_false_path "$file")" || fail "wrong output"
}

# The project exports its own library; what it installs is all that a client of that library needs, whatever the build
# type of the project is.
add_subdirectory() {
  taken_with release -DCMAKE_BUILD_TYPE=Release
  taken_with debug -DCMAKE_BUILD_TYPE=Debug
  taken_with none -DCMAKE_BUILD_TYPE=
  taken_with multi -G "Ninja Multi-Config"
}
# taken_with KIND OPTION...: one such project and its client.
taken_with() {
  local project=$work/$way.$1 parent=$work/parent.$1 programs=$work/$way.$1 config=()
  rm -rf "$project" "$parent"
  configure "$here/project" "$project" -DTOVENG_SOURCE_DIR="$source" "${@:2}"
  [ "$1" != multi ] || programs=$project/Debug config=(--config Debug)
  check "$programs"
  "$cmake" --install "$project" --prefix "$parent" "${config[@]}" >"$project.log"
  configure "$here/project" "$project.client" -DCONSUMED=editor -DCMAKE_PREFIX_PATH="$parent" "${without_qt[@]}"
  check "$project.client"
}

examples() {
  local list folder name flags file=$source/examples/constraint_tour/demo_soc.tov
  export LC_ALL=C
  for list in "$source"/examples/*/CMakeLists.txt; do
    folder=$(dirname "$list")
    name=$(basename "$folder")
    flags=("${without_qt[@]}")
    [ "$name" != constraint_browser ] || flags=(-DTOVENG_BUILD_TESTS=OFF) # the one that is made of Qt
    configure "$folder" "$work/$name" -DCMAKE_PREFIX_PATH="$prefix" "${flags[@]}"
    (cd "$work/$name" && case $name in
      constraint_browser) if [ -x "$name" ]; then ldd "./$name"; else echo "not built"; fi ;;
      constraint_tour) "./$name" "$file" ;;
      design_tour) "./$name" "$folder/soc.xml" design.tov ;;
      disable_by_clock)
        "./$name" "$file" clk_usb out.tov
        test "$(grep -c '^#disable .*usb' out.tov)" -eq 6
        ;;
      *) "./$name" ;;
    esac) >"$work/$name.out" || fail "$name failed"
    test -s "$work/$name.out" || fail "$name prints nothing"
  done
}

# The installed program in Neovim, without a display.
editor() {
  command -v nvim >/dev/null || { echo "no Neovim: not run"; exit 77; }
  local folder=$work/$way
  mkdir -p "$folder"
  iconv -f latin1 -t utf8 "$source/examples/constraint_tour/demo_soc.tov" |
    sed 's/\[get_ports usb_oe\]/[get_ports usb_ooe]/' >"$folder/demo_soc.tov"
  cp "$source/examples/design_tour/soc.xml" "$folder"
  (cd "$folder" && PROGRAM=$prefix/bin/toveng DESIGN=soc.xml OUT=editor.out HOME=$folder timeout 60 \
    nvim --headless -u NONE -i NONE -n -c "luafile $here/editor.lua" demo_soc.tov >"$folder.log" 2>&1)
  grep -F '30:48 missing-name' "$folder/editor.out" >/dev/null || fail "no finding: $(cat "$folder/editor.out")"
  grep -F 'Also used in lines' "$folder/editor.out" >/dev/null || fail "no hover: $(cat "$folder/editor.out")"
  grep -Fx 'Write usb_oe' "$folder/editor.out" >/dev/null || fail "no action: $(cat "$folder/editor.out")"
  grep -F 'set_output_delay -clock clk_usb 2.0 [get_ports usb_oe]' "$folder/editor.out" >/dev/null || fail "not applied"
}

# BUILD is the folder of the packages that scripts/package made.
debian() {
  local runtime development tools flags root=$work/root
  rm -rf "$root"
  mkdir -p "$root"
  runtime=$(ls "$build"/libtoveng1_*.deb)
  development=$(ls "$build"/libtoveng-dev_*.deb)
  tools=$(ls "$build"/toveng-tools_*.deb)
  dpkg-deb -f "$runtime" Depends | grep 'libqt[56]core' >/dev/null ||
    fail "the runtime package does not depend on Qt"
  ! dpkg-deb -c "$runtime" | grep -E '/include/|\.so ->|\.so$' ||
    fail "development files in the runtime package"
  dpkg-deb -x "$runtime" "$root"
  dpkg-deb -x "$development" "$root"
  dpkg-deb -x "$tools" "$root"
  flags=$(PKG_CONFIG_PATH=$(find_libdir "$root")/pkgconfig pkg-config --cflags --libs toveng)
  [ "${flags% }" = "-I/usr/include/toveng -ltoveng" ] || fail "pkg-config says $flags"
  clients_with_pkg_config "$root" "$work/$way" --define-variable=prefix="$root/usr"
  check "$work/$way"
  runs "$root/usr/bin/toveng"
}

# One foreign library has the records of the bundled sources and another formatter.
external_platform() {
  local flow=$work/flow built=$work/external
  rm -rf "$flow" "$built"
  mkdir -p "$flow/include" "$flow/lib"
  cp -r "$here/flow/platform" "$flow/include"
  cp "$source"/platform/{dci,ppstl_list}.h "$flow/include/platform"
  "$cxx" -std=c++17 -shared -fPIC -fvisibility=hidden -I"$flow/include" -I"$source" \
    -Wl,-soname,libflow.so.3 -o "$flow/lib/libflow.so.3" \
    "$here/flow/ut.cpp" "$source/platform/bundled/dci.cpp"
  ln -s libflow.so.3 "$flow/lib/libflow.so"

  # One of each kind of program that links the library or its objects.
  targets=(toveng toveng_program tokenizer_test document_test design_tour)
  configure "$source" "$built" -DTOV_PLATFORM=external \
    -DTOV_PLATFORM_INCLUDE_DIR="$flow/include" -DTOV_PLATFORM_LIBRARIES="$flow/lib/libflow.so"
  targets=(all)
  ! nm -DC --defined-only "$built/libtoveng.so" | grep -E ' (neoform|ut_str|taDci)' ||
    fail "the library still defines what the flow's library has"
  nm -DC --undefined-only "$built/libtoveng.so" | grep ' U neoform' >/dev/null ||
    fail "neoform is not asked for"

  # The installed tree is moved, the flow's library stays and is still found.
  "$cmake" --install "$built" --prefix "$flow/first" >"$built.log"
  mv "$flow/first" "$flow/prefix"
  runs "$flow/prefix/bin/toveng"
  cmp "$flow/include/platform/ut.h" "$flow/prefix/include/toveng/platform/ut.h"
  configure "$here/project" "$work/$way" -DCMAKE_PREFIX_PATH="$flow/prefix" "${without_qt[@]}"
  check "$work/$way" "<flow>"
  clients_with_pkg_config "$flow/prefix" "$work/$way.pkg_config"
  check "$work/$way.pkg_config" "<flow>"
}

case $way in
  add_subdirectory | cmake_package | debian | debug_containers | editor | examples | external_platform | headers | pkg_config | \
    readme | stage) "$way" ;;
  *) fail "no such way" ;;
esac
