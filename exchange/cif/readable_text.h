// A CIF value as a text for people.
// Internal: callers want exchange/cif_import.h.
#pragma once

#include <string>

// The text on one line. CIF writes letters beyond ASCII as a code before the letter: \"o is "ö", \'e is "é",
// \a is "α"; they become UTF-8. Runs of white space and control characters become one blank, at the ends
// none. Raised and lowered text (^2+^, ~3~) stays as it stands, as does a code that is not in the tables.
[[nodiscard]] std::string readable_text(const std::string& text);
