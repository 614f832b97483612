"""The small changes that mutate.py makes: which there are in a line of code, and in which order they are made."""
import collections
import hashlib
import re

# A pattern in a line of code and what it becomes; each match is one possible change.
CHANGES = [
    (r"(?<=\w|\)|\]) < (?=[\w(-])", " <= "),
    (r" <= ", " < "),
    (r"(?<=\w|\)|\]) > (?=[\w(-])", " >= "),
    (r" >= ", " > "),
    (r" == ", " != "),
    (r" != ", " == "),
    (r" && ", " || "),
    (r" \|\| ", " && "),
    (r"\btrue\b", "false"),
    (r"\bfalse\b", "true"),
    (r"if \(", "if (!("),
    (r"(?<!\") \+ (?!\"|text|reason|std::to_string)", " - "),  # not of texts
    (r" - ", " + "),
    (r"\+\+(?=\w)", "--"),
    (r"\bstd::min\b", "std::max"),
    (r"\bstd::max\b", "std::min"),
    (r"(?<![\w.\"'])0(?![\w.\"'])", "1"),
    (r"(?<![\w.\"'])1(?![\w.\"'])", "2"),
    (r"(?<![\w.\"'x])(\d{2,})(?![\w.\"'])", lambda m: str(int(m[1]) + 1)),
    (r"^\s+(?!return|throw|using|case|default|static|const|std::size_t|auto|int |unsigned)\w[\w.:>-]*\(.*\);$", ""),
    (r"\breturn (?=\w.*;)(?!\w+\(\*this|single|range|static_cast|std::move|std::nullopt|text|std::string)", "return !"),
    (r"\bcontinue;", "break;"),
    (r"\bbreak;", "continue;"),
    # In expressions.
    (r"(?<=\"|\w)\\\\d", r"\\\\w"),
    (r"\{6\}", "{5}"),
    (r"\{7\}", "{8}"),
    (r"(?<=\))\?(?=\))", ""),
    (r"\+\)\"", "*)\""),
    (r"\\\\s", "\\\\\\\\s?"),
    (r"A-Z", "A-Y"),
    (r"a-z", "b-z"),
    # Numbers and texts on a stream: another format than its own, one that stays behind, a line end that does not
    # flush or one that does, a text that ends at its first NUL. What a value does not offer does not compile.
    (r"(?<=<< )([a-z]\w*(?:\+\+)?)(?=[ ;]|$)", r"std::to_string(\1)"),
    (r"(?<=<< )static_cast<(?:int|std::int32_t)>\(([\w.]+)\)", r"std::to_string(\1)"),
    (r"\bos << ", "os << std::dec << "),
    (r"\bos << ", "os << std::boolalpha << "),
    (r"(?<=<< )std::endl\b", r"'\\n'"),
    (r"(?<=\bos << )(.*?)'\\n'", r"\1std::endl"),
    (r"(?<=<< )([a-z]\w*)(?=[ ;]|$)", r"\1.c_str()"),
    (r"\((text_?), ", r"(\1.c_str(), "),
    # What is asked for twice, set when something else counts, kept from before, or made at its first use only.
    (r"(\bentry\.\w+\(\)|\bcomponent\.(?:get\(\*this\)|fetch\(source\)))", r"(static_cast<void>(\1), \1)"),
    (r"((?<![\w:.>])identifier\(\))(?! const| override)", r"(static_cast<void>(\1), \1)"),
    (r"^\s+(?:\w+(?:\.|->))?\w+ = [^{]*;$", ""),
    (r"^\[\[maybe_unused\]\] .*;$", ""),
    # Letters, digits and white space beyond those of ASCII.
    (r"A-Za-z0-9", r"\\\\w"),
    (r"A-Z(?=\]|a-z)", r"A-Z\\xc0-\\xde"),
    (r"0-9(?=\])", r"0-9\\xb2"),
    (r"\\\\s(?!\?)", r"[\\\\s\\xa0]"),
    (r'(?<=")( \\t)(?=")', r"\1\\n"),
    (r'(?<=")( \\t\\n[^"]*)(?=")', r"\1\\xa0"),
    # The order of fields.
    (r"(record\.\w+), (record\.\w+)", r"\2, \1"),
]

# Declarations, and room that is only reserved: no test can see how much, except of lists that stay.
NO_CODE = re.compile(r"^\s*(//|#|template|namespace|static_assert|enum |class |struct |friend )|operator[<>=]|"
                     r"\[\[likely\]\]|virtual .* = 0;|(?<!\bentries_\.)(?<!\blist\.)reserve\(")


class Change:
    def __init__(self, path, number, column, old, new):
        self.path, self.number, self.column, self.old, self.new = path, number, column, old, new
        self.nth = 1  # of the changes that read alike

    @property
    def key(self):
        """Says the same wherever in its file the line moves."""
        return f"{self.path} ({self.nth}, column {self.column}): {self.old.strip()}  =>  {self.new.strip()}"

    @property
    def rank(self):
        return hashlib.sha256(self.key.encode()).hexdigest()


def changes_of(source, path):
    for number, line in enumerate((source / path).read_text().splitlines(), 1):
        if NO_CODE.search(line):
            continue
        code = line.split(" //")[0]
        for pattern, replacement in CHANGES:
            for match in re.finditer(pattern, code):
                new = code[:match.start()] + match.expand(replacement) if isinstance(replacement, str) else \
                    code[:match.start()] + replacement(match)
                new += code[match.end():]
                if replacement == "if (!(":
                    # Negates the whole condition: closes after the bracket that pairs with the first.
                    new = negated(code, match.end())
                if new is not None and new != code:
                    yield Change(path, number, match.start() + 1, code, new)


def negated(code, start):
    depth = 1
    for index in range(start, len(code)):
        depth += {"(": 1, ")": -1}.get(code[index], 0)
        if depth == 0:
            return code[:start] + "!(" + code[start:index] + ")" + code[index:]
    return None


def all_changes(source, rooms, only):
    """All possible changes to the files of the rooms whose path holds `only`, in the order in which they are made."""
    found, times = [], collections.Counter()
    for room in rooms:
        for path in sorted((source / room).glob("*")):
            relative = str(path.relative_to(source))
            if path.suffix in (".cpp", ".h") and path.name != "export.h" and only in relative:
                for change in changes_of(source, relative):
                    times[change.key] += 1
                    change.nth = times[change.key]
                    found.append(change)
    return sorted(found, key=lambda change: change.rank)
