#!/usr/bin/env bash
# The main job on published structures: tools/demo.sh BUILD_DIR [KEEP_DIR]
# Imports the CIF files of the Debian package libavogadro-data, stores them, reads them back, shows what came of
# them, and rewrites the archive. Ends with an error when anything is not as it should be. What was made is kept
# in KEEP_DIR when one is given.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

fail() { printf 'demo: %s\n' "$*" >&2; exit 1; }
heading() { printf '\n== %s\n' "$*"; }
now() { printf '%s' "${EPOCHREALTIME/[.,]/}"; }
milliseconds_since() { printf '%d' $((($(now) - $1) / 1000)); }

[ $# -ge 1 ] || fail "which build folder? as in: tools/demo.sh build"
dbentry=$1/tools/dbentry
[ -x "$dbentry" ] || fail "$dbentry is missing; build it: cmake --build $1 --target dbentry"
crystals=$(dpkg -L libavogadro-data | grep '/crystals$') || fail "the package libavogadro-data is not installed"
if [ $# -ge 2 ]; then
  folder=$2
  mkdir -p "$folder"
else
  folder=$(mktemp -d)
  trap 'rm -rf "$folder"' EXIT
fi
archive=$folder/structures.dbe rewritten=$folder/rewritten.dbe report=$folder/report.jsonl

heading "dbentry import: $crystals"
started=$(now)
code=0
summary=$("$dbentry" import "$crystals" -o "$archive" --report "$report" 2>"$folder/messages") || code=$?
import_time=$(milliseconds_since "$started")
sed "s|$crystals/||" "$folder/messages"
echo "$summary"
# Four files of the package are mangled, so the import has problems to tell of.
[ "$code" = 1 ] || fail "import ended with $code, not with 1 (done with problems)"

entries=$("$dbentry" list "$archive" -c identifier -f text | wc -l)
rejected=$(grep -c '"status":"error"' "$report")
warnings=$(grep -c ': warning: ' "$folder/messages")
[ "$entries" = 506 ] || fail "$entries entries instead of 506"
[ "$rejected" = 4 ] || fail "$rejected files rejected instead of 4"
for name in Er-Erbium Eu-Europium Se-Selenium Bi2S3-Bismuthinite; do
  grep -q "/$name.cif:[0-9]*:[0-9]*: error: " "$folder/messages" || fail "$name.cif was not reported"
done

heading "dbentry list: the first five"
"$dbentry" list "$archive" -c identifier,formula,name,journal,year,atoms -f table | sed -n 1,6p

heading "dbentry show: summaries as the library writes them"
"$dbentry" show "$archive" C2102946 C9008478 A0012989

heading "dbentry depositions C2102946"
"$dbentry" depositions "$archive" C2102946
coeditor=$("$dbentry" depositions "$archive" C2102946 --kind "IUCR Coeditor Code" -f jsonl)
[ "$coeditor" = '{"kind":"IUCR Coeditor Code","text":"IUCr KD5005","numbers":["KD5005"]}' ] ||
  fail "the co-editor's number was not found: $coeditor"

heading "dbentry related C2102946"
related=$("$dbentry" related "$archive" C2102946 -f text)
[ -z "$related" ] || fail "CIF has no cross-references, and yet there are: $related"
echo "(none: a CIF file does not refer to other entries; the invented entry below does)"
sample=data/samples/cross_references.dbe
"$dbentry" show "$sample" ABCDEF01
echo "related to ABCDEF01:"
"$dbentry" related "$sample" ABCDEF01 -f text | sed 's/^/  /'
[ "$("$dbentry" related "$sample" ABCDEF01 -f text | tr '\n' ' ')" = "ABCDEF GHIJKL02 X1234567 " ] ||
  fail "the related identifiers were not found"

heading "dbentry verify: reads the archive and rewrites it"
started=$(now)
"$dbentry" verify "$archive" -o "$rewritten"
verify_time=$(milliseconds_since "$started")
cmp "$archive" "$rewritten" || fail "the rewritten archive differs"
echo "cmp $archive $rewritten: identical"

heading "dbentry diff: not one entry differs"
"$dbentry" diff "$archive" "$rewritten" -f text

started=$(now)
"$dbentry" show "$archive" >"$folder/summaries"
show_time=$(milliseconds_since "$started")

# Asks, says how long that took, and leaves the answer in $answer.
ask() {
  local begun
  begun=$(now)
  answer=$("$dbentry" "$@") || fail "dbentry $* failed"
  printf '%-90s %5d ms\n' "dbentry ${*/"$folder"\//}" "$(milliseconds_since "$begun")"
}

store=$folder/structures.db
heading "dbentry init, dbentry import --into: a store of the same files"
"$dbentry" init "$store"
started=$(now)
code=0
"$dbentry" import "$crystals" --into "$store" 2>/dev/null || code=$?
store_import_time=$(milliseconds_since "$started")
[ "$code" = 1 ] || fail "import --into ended with $code, not with 1 (done with problems)"

heading "dbentry find: by elements and years, with the standard's filter, and by a cell in another setting"
ask find "$store" "Ti,O,year=1950..1990" -c identifier,formula,year,journal -f table
echo "$answer"
[ "$(wc -l <<<"$answer")" -gt 1 ] || fail "no oxide of titanium was found"
ask find "$store" --filter 'elements HAS ALL "Ti","O" AND nelements=2' --count
[ "$answer" = 3 ] || fail "$answer oxides of titanium alone instead of 3"
echo "$answer"
ask find "$store" --cell 2.958,4.594,4.594,90,90,90 -c identifier,formula,a,b,c -f table
echo "$answer"
grep -q '^C9009083 ' <<<"$answer" || fail "rutile was not found by its cell"

heading "dbentry depositions: one component of one entry is fetched"
ask depositions "$store" C2102946
echo "$answer"

bytes=$(wc -c <"$archive")
cif_bytes=$(find "$crystals" -name '*.cif' -print0 | xargs -0 cat | wc -c)
atoms=$("$dbentry" list "$archive" -c atoms -f text | awk '{ sum += $1 } END { print sum }')
operators=$("$dbentry" list "$archive" -c operators -f text | awk '{ sum += $1 } END { print sum }')
heading "counts, bytes and times"
printf '%-34s %12s\n' \
  "CIF files" $((entries + rejected)) "  imported" "$entries" "  not CIF, reported" "$rejected" \
  "warnings" "$warnings" "atoms" "$atoms" "symmetry operators" "$operators" \
  "bytes of CIF" "$cif_bytes" "bytes of the archive" "$bytes" "bytes an entry" $((bytes / entries)) \
  "import, ms" "$import_time" "read, rewrite and compare, ms" "$verify_time" \
  "read and print all summaries, ms" "$show_time" \
  "bytes of the store" "$(wc -c <"$store")" "import into the store, ms" "$store_import_time"
