# Prints a page with its quoted blocks as their files have them now: awk -f docs/quote.awk PAGE
# How a quote is marked: tests/house/pages_test.cpp, which holds the pages against the files.
function quote(source,    parts, line, inside, bare, indent) {
  split(source, parts, "#")
  inside = parts[2] == ""
  while ((getline line < parts[1]) > 0) {
    bare = line
    sub(/^ +/, "", bare)
    if (bare == "// end " parts[2]) break
    if (inside) print substr(line, indent + 1)
    if (bare == "// begin " parts[2]) {
      inside = 1
      indent = length(line) - length(bare)
    }
  }
  close(parts[1])
}
/^<!-- quote: / { source = $3 }
skipping && $0 != "```" { next }
{ skipping = 0; print }
/^```./ && source != "" { quote(source); source = ""; skipping = 1 }
