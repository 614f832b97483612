#include "exchange/cif/markup.h"

#include <array>
#include <charconv>
#include <cstdint>
#include <map>
#include <optional>
#include <system_error>

#include "exchange/cif/letters.h"
#include "exchange/cif/readable_text.h"

namespace {

// A code, the letters it may stand before, and what comes of each, in the same order.
struct Accent {
  char code;
  std::string_view letters;
  std::string_view composed;
};

constexpr std::array accents = {
    Accent{'\'', "aeiouyAEIOUYcnszlrCNSZLR", "áéíóúýÁÉÍÓÚÝćńśźĺŕĆŃŚŹĹŔ"},
    Accent{'`', "aeiouAEIOU", "àèìòùÀÈÌÒÙ"},
    Accent{'^', "aeiouAEIOUcghjswyCGHJSWY", "âêîôûÂÊÎÔÛĉĝĥĵŝŵŷĈĜĤĴŜŴŶ"},
    Accent{'"', "aeiouyAEIOUY", "äëïöüÿÄËÏÖÜŸ"},
    Accent{'~', "anoiuANOIU", "ãñõĩũÃÑÕĨŨ"},
    Accent{',', "cstCSTkglnrKGLNR", "çşţÇŞŢķģļņŗĶĢĻŅŖ"},
    Accent{';', "aeiuAEIU", "ąęįųĄĘĮŲ"},
    Accent{'>', "ouOU", "őűŐŰ"},
    Accent{'=', "aeiouAEIOU", "āēīōūĀĒĪŌŪ"},
    Accent{'.', "cegzICEGZ", "ċėġżİĊĖĠŻ"},
    Accent{'<', "cdenrstzCDENRSTZ", "čďěňřšťžČĎĚŇŘŠŤŽ"},
    Accent{'(', "aguAGU", "ăğŭĂĞŬ"},
    Accent{'%', "auAU", "åůÅŮ"},
    Accent{'/', "odlODL", "øđłØĐŁ"},
    Accent{'?', "i", "ı"},
    Accent{'&', "s", "ß"},
};

constexpr Accent greek = {'\\', "abcdefghiklmnopqrstuwxyzABCDEFGHIKLMNOPQRSTUWXYZ",
                          "αβχδεφγηικλμνοπθρστυωξψζΑΒΧΔΕΦΓΗΙΚΛΜΝΟΠΘΡΣΤΥΩΞΨΖ"};

// What the letter becomes after the code; empty when the table does not have it.
std::string_view composed_letter(const Accent& accent, char letter) {
  const std::size_t index = accent.letters.find(letter);
  return index == std::string_view::npos ? std::string_view() : accent.composed.substr(2 * index, 2);
}

// All letters of all tables take two bytes of UTF-8.
constexpr bool tables_are_even() {
  for (const Accent& accent : accents) {
    if (accent.composed.size() != 2 * accent.letters.size()) return false;
  }
  return greek.composed.size() == 2 * greek.letters.size();
}
static_assert(tables_are_even());

struct Word {
  std::string_view code;
  std::string_view character;
};

// After two backslashes; a longer word comes before one that it begins with. \\ddb, a delocalised bond, has
// no character of its own.
constexpr std::array words = {
    Word{"rightarrow", "→"}, Word{"leftarrow", "←"}, Word{"langle", "⟨"}, Word{"rangle", "⟩"},
    Word{"square", "□"},     Word{"simeq", "≃"},     Word{"infty", "∞"},  Word{"times", "×"},
    Word{"sim", "∼"},        Word{"neq", "≠"},       Word{"db", "="},     Word{"tb", "≡"},
};

constexpr std::array signs = {
    Word{"---", "—"},
    Word{"--", "–"},
    Word{"+-", "±"},
    Word{"-+", "∓"},
};

constexpr std::string_view script_letters = "0123456789+-=()n";
constexpr std::string_view raised = "⁰¹²³⁴⁵⁶⁷⁸⁹⁺⁻⁼⁽⁾ⁿ";
constexpr std::string_view lowered = "₀₁₂₃₄₅₆₇₈₉₊₋₌₍₎ₙ";

// Of U+00A0 to U+00FF, in order.
constexpr std::array<std::string_view, 96> latin_names = {
    "nbsp",   "iexcl",  "cent",   "pound",  "curren", "yen",    "brvbar", "sect",   "uml",    "copy",
    "ordf",   "laquo",  "not",    "shy",    "reg",    "macr",   "deg",    "plusmn", "sup2",   "sup3",
    "acute",  "micro",  "para",   "middot", "cedil",  "sup1",   "ordm",   "raquo",  "frac14", "frac12",
    "frac34", "iquest", "Agrave", "Aacute", "Acirc",  "Atilde", "Auml",   "Aring",  "AElig",  "Ccedil",
    "Egrave", "Eacute", "Ecirc",  "Euml",   "Igrave", "Iacute", "Icirc",  "Iuml",   "ETH",    "Ntilde",
    "Ograve", "Oacute", "Ocirc",  "Otilde", "Ouml",   "times",  "Oslash", "Ugrave", "Uacute", "Ucirc",
    "Uuml",   "Yacute", "THORN",  "szlig",  "agrave", "aacute", "acirc",  "atilde", "auml",   "aring",
    "aelig",  "ccedil", "egrave", "eacute", "ecirc",  "euml",   "igrave", "iacute", "icirc",  "iuml",
    "eth",    "ntilde", "ograve", "oacute", "ocirc",  "otilde", "ouml",   "divide", "oslash", "ugrave",
    "uacute", "ucirc",  "uuml",   "yacute", "thorn",  "yuml"};

struct Entity {
  std::string_view name;
  std::uint32_t character;
};
constexpr std::array entities = {
    Entity{"amp", '&'},       Entity{"lt", '<'},        Entity{"gt", '>'},        Entity{"quot", '"'},
    Entity{"apos", '\''},     Entity{"Alpha", 0x391},   Entity{"Beta", 0x392},    Entity{"Gamma", 0x393},
    Entity{"Delta", 0x394},   Entity{"Epsilon", 0x395}, Entity{"Zeta", 0x396},    Entity{"Eta", 0x397},
    Entity{"Theta", 0x398},   Entity{"Iota", 0x399},    Entity{"Kappa", 0x39A},   Entity{"Lambda", 0x39B},
    Entity{"Mu", 0x39C},      Entity{"Nu", 0x39D},      Entity{"Xi", 0x39E},      Entity{"Omicron", 0x39F},
    Entity{"Pi", 0x3A0},      Entity{"Rho", 0x3A1},     Entity{"Sigma", 0x3A3},   Entity{"Tau", 0x3A4},
    Entity{"Upsilon", 0x3A5}, Entity{"Phi", 0x3A6},     Entity{"Chi", 0x3A7},     Entity{"Psi", 0x3A8},
    Entity{"Omega", 0x3A9},   Entity{"alpha", 0x3B1},   Entity{"beta", 0x3B2},    Entity{"gamma", 0x3B3},
    Entity{"delta", 0x3B4},   Entity{"epsilon", 0x3B5}, Entity{"zeta", 0x3B6},    Entity{"eta", 0x3B7},
    Entity{"theta", 0x3B8},   Entity{"iota", 0x3B9},    Entity{"kappa", 0x3BA},   Entity{"lambda", 0x3BB},
    Entity{"mu", 0x3BC},      Entity{"nu", 0x3BD},      Entity{"xi", 0x3BE},      Entity{"omicron", 0x3BF},
    Entity{"pi", 0x3C0},      Entity{"rho", 0x3C1},     Entity{"sigmaf", 0x3C2},  Entity{"sigma", 0x3C3},
    Entity{"tau", 0x3C4},     Entity{"upsilon", 0x3C5}, Entity{"phi", 0x3C6},     Entity{"chi", 0x3C7},
    Entity{"psi", 0x3C8},     Entity{"omega", 0x3C9},   Entity{"OElig", 0x152},   Entity{"oelig", 0x153},
    Entity{"Scaron", 0x160},  Entity{"scaron", 0x161},  Entity{"Yuml", 0x178},    Entity{"ensp", 0x2002},
    Entity{"emsp", 0x2003},   Entity{"thinsp", 0x2009}, Entity{"ndash", 0x2013},  Entity{"mdash", 0x2014},
    Entity{"lsquo", 0x2018},  Entity{"rsquo", 0x2019},  Entity{"sbquo", 0x201A},  Entity{"ldquo", 0x201C},
    Entity{"rdquo", 0x201D},  Entity{"bdquo", 0x201E},  Entity{"dagger", 0x2020}, Entity{"Dagger", 0x2021},
    Entity{"bull", 0x2022},   Entity{"hellip", 0x2026}, Entity{"prime", 0x2032},  Entity{"Prime", 0x2033},
    Entity{"euro", 0x20AC},   Entity{"trade", 0x2122},  Entity{"larr", 0x2190},   Entity{"uarr", 0x2191},
    Entity{"rarr", 0x2192},   Entity{"darr", 0x2193},   Entity{"harr", 0x2194},   Entity{"part", 0x2202},
    Entity{"sum", 0x2211},    Entity{"minus", 0x2212},  Entity{"radic", 0x221A},  Entity{"infin", 0x221E},
    Entity{"sim", 0x223C},    Entity{"cong", 0x2245},   Entity{"asymp", 0x2248},  Entity{"ne", 0x2260},
    Entity{"equiv", 0x2261},  Entity{"le", 0x2264},     Entity{"ge", 0x2265},     Entity{"lang", 0x27E8},
    Entity{"rang", 0x27E9},
};

// Tags that say how letters look and nothing else.
constexpr std::array<std::string_view, 10> inline_tags = {"i",  "b",     "u",   "em",   "strong",
                                                          "tt", "small", "big", "span", "font"};

std::string utf8(std::uint32_t character) {
  const auto byte = [](std::uint32_t bits) { return static_cast<char>(bits); };
  if (character < 0x80) return {byte(character)};
  if (character < 0x800) return {byte(0xC0 | character >> 6), byte(0x80 | (character & 0x3F))};
  if (character < 0x10000) {
    return {byte(0xE0 | character >> 12), byte(0x80 | (character >> 6 & 0x3F)),
            byte(0x80 | (character & 0x3F))};
  }
  return {byte(0xF0 | character >> 18), byte(0x80 | (character >> 12 & 0x3F)),
          byte(0x80 | (character >> 6 & 0x3F)), byte(0x80 | (character & 0x3F))};
}

std::size_t length_at(std::string_view text, std::size_t place) {
  const auto lead = static_cast<unsigned char>(text[place]);
  return lead < 0x80 ? 1 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
}

std::uint32_t code_point(std::string_view character) {
  const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(character[i]); };
  std::uint32_t value = character.size() == 1   ? byte(0)
                        : character.size() == 2 ? byte(0) & 0x1FU
                        : character.size() == 3 ? byte(0) & 0x0FU
                                                : byte(0) & 0x07U;
  for (std::size_t i = 1; i < character.size(); ++i) value = value << 6 | (byte(i) & 0x3FU);
  return value;
}

// The character number `index` of a text.
std::string_view nth(std::string_view text, std::size_t index) {
  std::size_t place = 0;
  for (; index > 0; --index) place += length_at(text, place);
  return text.substr(place, length_at(text, place));
}

// ---- Reading

// What a code at the start of a text is written for, and how long the code is; 0 when it is none.
struct Decoded {
  std::string text;
  std::size_t length = 0;
};

Decoded script(std::string_view letters, std::string_view table) {
  Decoded result;
  for (const char letter : letters) {
    const std::size_t index = script_letters.find(letter);
    if (index == std::string_view::npos) return {};
    result.text += nth(table, index);
  }
  result.length = letters.size();
  return result;
}

// "^2+^", "~3~"
Decoded decoded_script(std::string_view text) {
  const std::size_t end = text.find(text[0], 1);
  if (end == std::string_view::npos || end == 1) return {};
  Decoded result = script(text.substr(1, end - 1), text[0] == '^' ? raised : lowered);
  if (result.length != 0) result.length = end + 1;
  return result;
}

Decoded decoded_backslash(std::string_view code) {
  if (code.size() >= 3 && code[1] == '\\') {
    for (const Word& word : words) {
      if (code.substr(2, word.code.size()) == word.code)
        return {std::string(word.character), 2 + word.code.size()};
    }
    return {"\\\\", 2};
  }
  if (code.size() >= 3) {
    for (const Accent& accent : accents) {
      if (accent.code != code[1]) continue;
      const std::string_view letter = composed_letter(accent, code[2]);
      if (!letter.empty()) return {std::string(letter), 3};
    }
  }
  if (code.size() >= 2) {
    if (code[1] == '%') return {"°", 2};
    const std::string_view letter = composed_letter(greek, code[1]);
    if (!letter.empty()) return {std::string(letter), 2};
  }
  return {};
}

bool is_character(std::uint32_t number) {
  return number >= 0x20 && number != 0x7F && number <= 0x10FFFF && (number < 0xD800 || number > 0xDFFF);
}

std::optional<std::uint32_t> entity(std::string_view name) {
  if (name.size() > 1 && name[0] == '#') {
    const bool is_hexadecimal = name[1] == 'x' || name[1] == 'X';
    const std::string_view digits = name.substr(is_hexadecimal ? 2 : 1);
    std::uint32_t number = 0;
    const auto [end, error] =
        std::from_chars(digits.data(), digits.data() + digits.size(), number, is_hexadecimal ? 16 : 10);
    if (digits.empty() || error != std::errc() || end != digits.data() + digits.size()) return std::nullopt;
    return is_character(number) ? std::optional(number) : std::nullopt;
  }
  for (std::size_t i = 0; i < latin_names.size(); ++i) {
    if (latin_names[i] == name) return static_cast<std::uint32_t>(0xA0 + i);
  }
  for (const Entity& known : entities) {
    if (known.name == name) return known.character;
  }
  return std::nullopt;
}

Decoded decoded_entity(std::string_view text) {
  constexpr std::size_t longest = 10;
  const std::size_t end = text.substr(0, longest).find(';');
  if (end == std::string_view::npos) return {};
  const auto character = entity(text.substr(1, end - 1));
  if (!character) return {};
  return {*character == 0xA0 ? " " : utf8(*character), end + 1};
}

// "<i>" and "</i>" go, "<br>" is a blank, "<sub>2</sub>" is lowered.
Decoded decoded_tag(std::string_view text) {
  constexpr std::size_t longest = 40;
  const std::size_t end = text.substr(0, longest).find('>');
  if (end == std::string_view::npos) return {};
  const bool is_closing = text.size() > 1 && text[1] == '/';
  const std::size_t begin = is_closing ? 2 : 1;
  const std::string name =
      lower_case(text.substr(begin, text.substr(begin, end - begin).find_first_of(" /")));
  const std::string bare = name.substr(0, name.find('>'));
  for (const std::string_view known : inline_tags) {
    if (bare == known) return {"", end + 1};
  }
  if (bare == "br" || bare == "p") return {" ", end + 1};
  if (is_closing || (bare != "sub" && bare != "sup")) return {};
  const std::size_t close = lower_case(text.substr(0, end + longest)).find("</" + bare + ">", end);
  if (close == std::string::npos) return {};
  const std::string_view inside = text.substr(end + 1, close - end - 1);
  Decoded result = script(inside, bare == "sup" ? raised : lowered);
  const char mark = bare == "sup" ? '^' : '~';
  if (result.length == 0) result.text = mark + std::string(inside) + mark;
  result.length = close + bare.size() + 3;
  return result;
}

Decoded decoded_sign(std::string_view text, char before) {
  for (const Word& sign : signs) {
    if (text.substr(0, sign.code.size()) != sign.code) continue;
    const char after = text.size() > sign.code.size() ? text[sign.code.size()] : ' ';
    const bool is_alone = before != '-' && after != '-' && before != '+' && after != '+';
    return is_alone ? Decoded{std::string(sign.character), sign.code.size()} : Decoded();
  }
  return {};
}

Decoded decoded(std::string_view text, char before) {
  switch (text[0]) {
    case '\\':
      return decoded_backslash(text);
    case '&':
      return decoded_entity(text);
    case '<':
      return decoded_tag(text);
    case '^':
    case '~':
      return decoded_script(text);
    case '-':
    case '+':
      return decoded_sign(text, before);
    default:
      return {};
  }
}

// ---- Writing

// The codes of CIF by their characters; of several the first in the tables.
std::map<std::string, std::string, std::less<>> made_codes() {
  std::map<std::string, std::string, std::less<>> codes;
  for (const Accent& accent : accents) {
    for (std::size_t i = 0; i < accent.letters.size(); ++i) {
      codes.emplace(accent.composed.substr(2 * i, 2), std::string{'\\', accent.code, accent.letters[i]});
    }
  }
  for (std::size_t i = 0; i < greek.letters.size(); ++i) {
    codes.emplace(greek.composed.substr(2 * i, 2), std::string{'\\', greek.letters[i]});
  }
  for (const Word& word : words) {
    if (word.character.size() > 1) codes.emplace(word.character, "\\\\" + std::string(word.code));
  }
  for (const Word& sign : signs) codes.emplace(sign.character, sign.code);
  codes.emplace("°", "&#xB0;");
  return codes;
}

std::string numbered(std::string_view character) {
  std::array<char, 8> digits = {};
  const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), code_point(character), 16);
  return "&#x" + std::string(digits.data(), end.ptr) + ";";
}

// The letter that is raised or lowered, or NUL.
char script_letter(std::string_view character, std::string_view table) {
  for (std::size_t i = 0; i < script_letters.size(); ++i) {
    if (nth(table, i) == character) return script_letters[i];
  }
  return '\0';
}

std::string encoded(std::string_view text, bool escape_ascii) {
  static const auto codes = made_codes();
  std::string result;
  char open = '\0';  // the mark of the raised or lowered run that has begun
  for (std::size_t place = 0; place < text.size();) {
    const std::string_view character = text.substr(place, length_at(text, place));
    place += character.size();
    char mark = '\0';
    char letter = script_letter(character, raised);
    if (letter != '\0') {
      mark = '^';
    } else if (letter = script_letter(character, lowered); letter != '\0') {
      mark = '~';
    }
    if (mark != open) {
      if (open != '\0') result += open;
      if (mark != '\0') result += mark;
      open = mark;
    }
    if (mark != '\0') {
      result += letter;
    } else if (character.size() == 1) {
      const bool is_markup = begins_markup(character[0]) || character[0] == '-' || character[0] == '+';
      result += escape_ascii && is_markup ? numbered(character) : std::string(character);
    } else {
      const auto code = codes.find(character);
      result += code == codes.end() ? numbered(character) : code->second;
    }
  }
  if (open != '\0') result += open;
  return result;
}

}  // namespace

std::string without_markup(std::string_view text) {
  std::string result;
  char before = ' ';
  while (!text.empty()) {
    const Decoded code = decoded(text, before);
    if (code.length == 0) {
      result += text[0];
      before = text[0];
      text.remove_prefix(1);
    } else {
      result += code.text;
      before = ' ';
      text.remove_prefix(code.length);
    }
  }
  return result;
}

std::string cif_markup(std::string_view text) {
  if (!is_utf8(text)) return encoded(from_latin_1(text), true);
  std::string plain = encoded(text, false);
  return readable_text(plain) == text ? plain : encoded(text, true);
}
