"""Which one-line changes can be made to a C++ source: other operators, other constants, removed calls."""

import re
from dataclasses import dataclass

# Binary operators stand between blanks in this code base; template brackets and pointers do not.
OPERATORS = {
    "==": "!=", "!=": "==", "<": "<=", "<=": "<", ">": ">=", ">=": ">", "&&": "||", "||": "&&",
    "+": "-", "-": "+", "*": "/", "/": "*", "%": "*", "&": "|", "|": "&", "<<": ">>", ">>": "<<",
    "+=": "-=", "-=": "+=", "*=": "/=", "/=": "*=", "|=": "&=", "&=": "|=",
}
OPERATOR = re.compile(r"(?<=[\w)\]] )(==|!=|<=|>=|&&|\|\||<<|>>|[-+*/|&]=|[-+*/%&|<>])(?= |$)")
NEGATION = re.compile(r"(?<![\w)])!(?=[\w(])")
STEP = re.compile(r"\+\+|--")
WORDS = {"true": "false", "false": "true"}
WORD = re.compile(r"\b(true|false)\b")
NUMBER = re.compile(r"(?<![\w.])(0[xX][0-9a-fA-F]+|\d+\.\d*(?:[eE][-+]?\d+)?|\d+)(?=[fFuUlL]*\b)")
CALL = re.compile(r"^(\s*)(?!(?:return|if|for|while|switch|delete|throw|else|case|new|sizeof)\b)"
                  r"(?:[\w:]|\.|->|\[[^\]]*\])+\(.*\);$")
LITERAL = re.compile(r'//[^\n]*|/\*.*?\*/|R"\((?:.|\n)*?\)"|"(?:\\.|[^"\\\n])*"|(?<!\w)\'(?:\\.|[^\'\\\n])+\'',
                     re.DOTALL)
LEFT_ALONE = re.compile(r"^\s*(#|using\b|static_assert\b|template\b|namespace\b|friend\b)")


@dataclass(frozen=True)
class Change:
    """Line `number` (from 1) of `path` becomes `after`."""
    path: str
    number: int
    before: str
    after: str

    def __str__(self):
        return f"{self.path}:{self.number}: {self.before.strip()}  ->  {self.after.strip() or '(removed)'}"


def blanked(text):
    """The text with comments and literals blanked, so that nothing inside them is changed."""
    def blank(match):
        return re.sub(r"[^\n]", "_" if match.group().startswith(('"', "'", "R")) else " ", match.group())
    return LITERAL.sub(blank, text)


def other_number(text):
    """Another value of the same kind: 0 and 1 are swapped, any other is increased by one."""
    if text.lower().startswith("0x"):
        return hex(int(text, 16) ^ 1)
    if "." in text or "e" in text.lower():
        return "1.0" if float(text) == 0 else repr(float(text) + 1)
    return {"0": "1", "1": "0"}.get(text, str(int(text, 8 if text.startswith("0") else 10) + 1))


def replacements(code):
    """(start, end, text) for each change that the blanked line allows."""
    for match in OPERATOR.finditer(code):
        yield match.start(), match.end(), OPERATORS[match.group()]
    for match in NEGATION.finditer(code):
        yield match.start(), match.end(), ""
    for match in STEP.finditer(code):
        yield match.start(), match.end(), "--" if match.group() == "++" else "++"
    for match in WORD.finditer(code):
        yield match.start(), match.end(), WORDS[match.group()]
    for match in NUMBER.finditer(code):
        yield match.start(), match.end(), other_number(match.group())
    match = CALL.match(code)
    if match:
        yield len(match.group(1)), len(code), ";"


def changes_of_line(path, number, line, code):
    if LEFT_ALONE.match(code):
        return []
    return [Change(path, number, line, line[:start] + text + line[end:])
            for start, end, text in replacements(code)]


def changes_of_file(path, text):
    """A list of changes for each line that allows any."""
    pairs = zip(text.split("\n"), blanked(text).split("\n"))
    found = (changes_of_line(path, number, line, code.rstrip())
             for number, (line, code) in enumerate(pairs, 1))
    return [changes for changes in found if changes]
