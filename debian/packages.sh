#!/usr/bin/env bash
# Builds the packages from a copy of the tree, lets lintian judge them, and tries them in a clean root:
#   debian/packages.sh        everything is below build/package; the packages stay there
# A clean root is made of the package sources that this system has. Where none can be made (that takes root's rights and
# the network), the script says so and tries what the packages hold unpacked in a folder.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
work=$PWD/build/package
tree=$work/tree root=$work/root
version=$(dpkg-parsechangelog -S Version)

say() { printf '\n== %s\n' "$*" >&2; }
fail() { printf 'package: %s\n' "$*" >&2; exit 1; }

rm -rf "$work"
mkdir -p "$tree"
git ls-files -z --cached --others --exclude-standard | tar --null --files-from=- --create | tar -x -C "$tree"

say "building $version"
# The same compiler flags as ./dev test has, so that what it compiled is taken from the cache; a plain
# dpkg-buildpackage takes those of Debian.
(
  cd "$tree"
  export CCACHE_NOHASHDIR=1 CCACHE_BASEDIR=$tree DEB_BUILD_OPTIONS="parallel=$(nproc) nocheck"
  export DEB_CXXFLAGS_SET="" DEB_CFLAGS_SET="" DEB_CPPFLAGS_SET=""
  export DATABASE_ENTRY_CMAKE_OPTIONS="-DCMAKE_CXX_COMPILER=g++ -DCMAKE_CXX_COMPILER_LAUNCHER=ccache \
    -DDATABASE_ENTRY_WARNINGS_AS_ERRORS=ON"
  dpkg-buildpackage --unsigned-changes --unsigned-source --build=binary >"$work/build.log" 2>&1 ||
    { tail -n 40 "$work/build.log" >&2; fail "dpkg-buildpackage stopped; its messages: build/package/build.log"; }
)

say "lintian"
lintian --allow-root --fail-on error,warning --info --no-tag-display-limit "$work"/*.changes
ls -1 "$work"/*.deb | xargs -n 1 basename

# What runs there: programs of somebody else, the demo, the tutorial.
cat >"$work/try.sh" <<'TRY'
set -euo pipefail
cd /tree
echo "== consumer test"
for way in cmake pkg-config; do
  case $way in
    cmake) cmake -S tests/consumer -B /tmp/consumer -G Ninja --log-level=WARNING >/dev/null && cmake --build /tmp/consumer >/dev/null
           program=/tmp/consumer/consumer ;;
    pkg-config) program=/tmp/consumer/by_pkg_config
           g++ -std=c++20 tests/consumer/consumer.cpp -o $program $(pkg-config --cflags --libs database_entry) ;;
  esac
  [ "$($program)" = "$(cat tests/consumer/expected.txt)" ] || { echo "consumer test, $way: another output"; exit 1; }
  echo "$way: passed"
done
echo "== program, manual page, completions"
dbentry --version
for file in man/man1/dbentry.1.gz bash-completion/completions/dbentry zsh/vendor-completions/_dbentry \
    fish/vendor_completions.d/dbentry.fish; do
  [ -s /usr/share/$file ] || { echo "/usr/share/$file is missing"; exit 1; }
done
echo "== demo"
mkdir -p /tmp/demo/tools && ln -sf /usr/bin/dbentry /tmp/demo/tools/dbentry
tools/demo.sh /tmp/demo
echo "== Python, from where it is installed"
/usr/bin/python3 bindings/python/tests/installed_example.py
DBENTRY=/usr/bin/dbentry PYTHONDONTWRITEBYTECODE=1 /usr/bin/python3 -m pytest -q -p no:cacheprovider \
  bindings/python/tests/test_tutorial.py bindings/python/tests/test_exchange.py
TRY

needed="cmake ninja-build g++ pkg-config libavogadro-data python3-pytest python3-hypothesis python3-pandas python3-ase
  python3-gemmi python3-matplotlib"
sources=()
for file in /etc/apt/sources.list /etc/apt/sources.list.d/*.sources /etc/apt/sources.list.d/*.list; do
  [ ! -s "$file" ] || sources+=("$file")
done
say "a clean root"
if [ "$(id -u)" = 0 ] && mmdebstrap --variant=apt --mode=root --include="$(echo $needed | tr ' \n' ',,' | tr -s ,)" \
    --aptopt='APT::Install-Recommends "false"' "$(. /etc/os-release; echo "$VERSION_CODENAME")" "$root" "${sources[@]}" \
    >"$work/root.log" 2>&1; then
  mkdir -p "$root/packages"
  cp "$work"/*.deb "$root/packages"
  cp -r "$tree" "$root/tree"
  rm -rf "$root/tree/build"
  chroot "$root" sh -c 'apt-get update -qq && apt-get install -y -qq --no-install-recommends /packages/*.deb' \
    >"$work/install.log" 2>&1 || { tail -n 20 "$work/install.log" >&2; fail "the packages cannot be installed"; }
  cp "$work/try.sh" "$root/try.sh"
  chroot "$root" env -i PATH=/usr/sbin:/usr/bin:/sbin:/bin HOME=/root LC_ALL=C.UTF-8 bash /try.sh
  chroot "$root" sh -c 'apt-get purge -y -qq libdatabase-entry1 libdatabase-entry-doc >/dev/null 2>&1 &&
    ! find /usr -name "*database_entry*" -o -name "dbentry*" | grep .' || fail "files are left after the packages are removed"
  rm -rf "$root"
  say "packages: installed in a clean root, tried and removed"
else
  tail -n 3 "$work/root.log" 2>/dev/null >&2 || true
  say "no clean root can be made here; what follows runs on this system, with the packages unpacked in a folder"
  mkdir -p "$root"
  for package in "$work"/*.deb; do dpkg-deb --extract "$package" "$root"; done
  libraries=$(dirname "$(find "$root/usr/lib" -name 'libdatabase_entry.so.1')")
  LD_LIBRARY_PATH=$libraries "$root/usr/bin/dbentry" --version
  mkdir -p "$work/demo/tools"
  ln -sf "$root/usr/bin/dbentry" "$work/demo/tools/dbentry"
  LD_LIBRARY_PATH=$libraries tools/demo.sh "$work/demo"
  LD_LIBRARY_PATH=$libraries PYTHONPATH=$root/usr/lib/python3/dist-packages PYTHONDONTWRITEBYTECODE=1 \
    /usr/bin/python3 -m pytest -q -p no:cacheprovider bindings/python/tests/test_tutorial.py
  say "packages: tried unpacked; not installed"
fi
