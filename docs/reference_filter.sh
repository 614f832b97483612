#!/bin/sh
# Shows a header to the reference: plain comments become documentation. The comment at the head is the file's
# and its first class's, with the indented uses as code; others belong to the declaration below them or, after
# code on the line, to that code.
awk '
  # Signs that the reference would take for commands, links or markup.
  function plain(text) {
    gsub(/[\\@<>&#%]/, "\\\\&", text)
    gsub(/>::/, ">\\::", text)
    return text
  }
  function head_line(text) { print text; head_text = head_text text "\n" }
  function end_code() { if (code) head_line("/// \\endcode"); code = 0 }
  NR == 1 && /^\/\// { print "/// \\file"; in_head = 1 }
  in_head && !/^\/\// { in_head = 0; end_code() }
  in_head && /^\/\/   / { if (!code) head_line("/// \\code{.cpp}"); code = 1; head_line("///" substr($0, 3)); next }
  in_head && /^\/\/$/ { head_line("///"); next }
  in_head { end_code(); head_line("///" plain(substr($0, 3))); next }

  /^(template|class|struct) ?.*[^;]$/ && head_text != "" {
    if (!after_comment) printf "%s", head_text
    head_text = ""
  }
  { after_comment = /^ *\/\// }
  after_comment { match($0, /\/\//); print substr($0, 1, RSTART - 1) "///" plain(substr($0, RSTART + 2)); next }
  /[;,{}] +\/\/ / {
    match($0, / +\/\/ /)
    print substr($0, 1, RSTART - 1) "  ///<" plain(substr($0, RSTART + RLENGTH - 1))
    next
  }
  { print }
' "$1"
