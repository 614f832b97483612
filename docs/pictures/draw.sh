#!/bin/sh
# Draws the picture of the pages from structures.cif, or compares it with what the program draws now.
# usage: draw.sh DBENTRY [compare]
set -e
here=$(cd "$(dirname "$0")" && pwd)
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
"$1" import "$here/structures.cif" -o "$work/structures.dbe" --id-from name >/dev/null 2>&1
"$1" picture "$work/structures.dbe" --sheet --columns 4 --width 200 --height 180 -o "$work/structures.svg" >/dev/null
if [ "$2" = compare ]; then
  cmp "$work/structures.svg" "$here/structures.svg" || {
    echo "docs/pictures/structures.svg is not what the program draws; docs/pictures/draw.sh DBENTRY draws it again" >&2
    exit 1
  }
else
  cp "$work/structures.svg" "$here/structures.svg"
fi
