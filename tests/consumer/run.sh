#!/usr/bin/env bash
# Builds and runs programs of somebody else against what BUILD_DIRs install, and with the tree as a subdirectory.
#   tests/consumer/run.sh build/release build/static
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/../.."
tree=$PWD
work=$tree/build/consumers
rm -rf "$work"
mkdir -p "$work"
passed=0
# The companion libraries of the tree.
companions=()
for companion in lattice exchange stores perception; do
  [ ! -f "$companion/CMakeLists.txt" ] || companions+=("$companion")
done

# expect WHAT EXPECTED COMMAND...: the command's output is what was expected.
expect() {
  local what=$1 expected=$2 output
  shift 2
  output=$("$@") || { echo "consumers: $what: failed: $*" >&2; exit 1; }
  [ "$output" = "$expected" ] || { echo "consumers: $what: expected '$expected', got '$output'" >&2; exit 1; }
  passed=$((passed + 1))
  echo "consumers: $what: passed"
}

# with_cmake WHAT ARG...: builds tests/consumer by CMake and runs both programs.
with_cmake() {
  local what=$1 build
  build="$work/$(echo "$what" | tr ' ,:' '___')"  # a comma would end a path for the linker
  shift
  cmake -S tests/consumer -B "$build" -G Ninja --log-level=WARNING \
    -DCMAKE_CXX_COMPILER=g++ -DCMAKE_CXX_COMPILER_LAUNCHER=ccache "$@" >"$build.log" &&
    cmake --build "$build" --parallel >>"$build.log" || { cat "$build.log" >&2; exit 1; }
  expect "$what" "$expected" "$build/consumer"
  expect "$what, a sibling alone" 2003-05-17 "$build/sibling_consumer"
}

expected=$(cat tests/consumer/expected.txt)
for build in "$@"; do
  kind=$(basename "$build")
  cmake --install "$build" --prefix "$work/first" >/dev/null
  prefix="$work/moved $kind"  # a blank in the path, and not where it was installed
  mv "$work/first" "$prefix"

  expect "$kind: the installed program starts" "dbentry 1.0.0" "$prefix/bin/dbentry" --version
  with_cmake "$kind: find_package" "-DCMAKE_PREFIX_PATH=$prefix"

  plain_prefix="$work/$kind"  # flags of pkg-config are split at blanks by the shell
  mv "$prefix" "$plain_prefix"
  export PKG_CONFIG_PATH
  PKG_CONFIG_PATH=$(dirname "$(find "$plain_prefix" -name database_entry.pc)")
  libraries=$(pkg-config --variable=libdir database_entry)
  static_flag=$([ "$kind" = static ] && echo --static || true)
  g++ -std=c++20 tests/consumer/consumer.cpp -o "$work/$kind-pkg-config" \
    $(pkg-config --cflags --libs $static_flag database_entry)
  expect "$kind: pkg-config" "$expected" env "LD_LIBRARY_PATH=$libraries" "$work/$kind-pkg-config"
  expect "$kind: pkg-config knows the version" 1.0.0 pkg-config --modversion database_entry

  folders=$(cd "$plain_prefix/include" && find . -mindepth 1 -maxdepth 2 -type d | sort | tr '\n' ' ')
  root=./database_entry-1
  expected_folders=$(for library in chemistry database_entry mathematics regex symmetry utilities "${companions[@]}"; do
    echo "$root/$library"
  done | sort | tr '\n' ' ')
  expect "$kind: one include root, one folder a library" "$root $expected_folders" echo "$folders"
done

with_cmake "subdirectory, static" "-DSOURCE_TREE=$tree"
with_cmake "subdirectory, shared" "-DSOURCE_TREE=$tree" -DBUILD_SHARED_LIBS=ON

# A journal list of somebody's own, in the last of these builds.
own_build=$work/subdirectory__shared
own_list=$work/own_list.txt
set_line_7() { sed "7s/.*/$1/" data/journal_list.txt >"$own_list"; }
build_with_own_list() {
  { cmake "-DDATABASE_ENTRY_JOURNAL_LIST=$own_list" "$own_build" && cmake --build "$own_build"; } >"$own_build.log" 2>&1
}
# expect_refusal WHAT MESSAGE: the build stops with the message, which CMake may have broken into lines.
expect_refusal() {
  ! build_with_own_list || { echo "consumers: $1: nothing was refused" >&2; exit 1; }
  expect "$1" "$2" grep -oF "$2" <(tr -s '\n ' ' ' <"$own_build.log")
}
expect "the journal list of the tree" Unknown "$own_build/journal_consumer" 7
set_line_7 "0007 OWNJRN  1990   0   0   0   1Own J."
build_with_own_list || { cat "$own_build.log" >&2; exit 1; }
expect "a journal list of one's own" "Own J." "$own_build/journal_consumer" 7
set_line_7 "0007 OWN-RN  1990   0   0   0   1Own J."
expect_refusal "a damaged journal list" "own_list.txt:7:9: error: a CODEN is six letters and digits"
rm "$own_list"
expect_refusal "a missing journal list" "own_list.txt does not exist."
echo "consumers: $passed passed"
