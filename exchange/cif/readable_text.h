// A CIF value as a text for people.
// Internal: callers want exchange/cif_reader.h.
#pragma once

#include <optional>
#include <string>
#include <string_view>

// The text of a raw value: without its quotes or semicolons, folded lines joined, line prefixes removed
// (International Tables for Crystallography, volume G, section 2.2.7.4.11). Empty for '?' and '.'.
[[nodiscard]] std::string cif_string(std::string_view raw);

// The text of a raw value that needs no reading: one line of ASCII, without markup and without blanks to be
// taken away. Empty for '?' and '.'.
[[nodiscard]] std::optional<std::string_view> plain_cif_text(std::string_view raw);

// The text on one line. Runs of white space and control characters become one blank, at the ends none.
[[nodiscard]] std::string one_line(std::string_view text);

// The text on one line of letters: one_line() with the markup of CIF (\"o is "ö", \a is "α", ~2~ is "₂", --
// is a dash) and of HTML (&eacute;, &#233;, <i>, <sub>2</sub>) as characters. What is not in the tables stays
// as it is. ISO 8859-1 becomes UTF-8 first.
[[nodiscard]] std::string readable_text(std::string_view text);

[[nodiscard]] bool is_utf8(std::string_view text);
// Every byte is a character of ISO 8859-1.
[[nodiscard]] std::string from_latin_1(std::string_view text);

// The other way round, in ASCII: readable_text() gives the text back, unless it holds control characters or
// runs of blanks. Characters without a code of CIF's become "&#x3C0;".
[[nodiscard]] std::string cif_markup(std::string_view text);
