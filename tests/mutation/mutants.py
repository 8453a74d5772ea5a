"""Makes mutants of a source: copies with one small change each that the tests ought to notice.

One mutant for each place and class of change, the one that is hardest to notice: what would only be a second way to
see the same thing is left out, since each mutant costs a build.
"""

import re

from tokens import Source

_RELATIONAL = {"<": "<=", "<=": "<", ">": ">=", ">=": ">", "==": "!=", "!=": "=="}
_LOGICAL = {"&&": "||", "||": "&&"}
_ARITHMETIC = {"+": "-", "-": "+", "*": "/", "/": "*", "%": "/", "&": "|", "|": "&", "<<": ">>", ">>": "<<"}
_WORDS = {"true": "false", "false": "true", "min": "max", "max": "min"}
_ENUMERATORS = {
    "left": "right",
    "right": "left",
    "constant": "linear",
    "linear": "bezier",
    "bezier": "bezierAuto",
    "bezierAuto": "constant",
}
_ENUMERATIONS = {"TangentSide", "InterpolationType"}
_NO_CALL = {"if", "for", "while", "switch", "return", "catch", "sizeof", "decltype", "noexcept"}
_NO_OPERAND_BEFORE = {"return", "(", "[", "{", ",", "=", "?", ":", "&&", "||", "<", ">", "==", "!=", "+", "-", "*", "/"}
_NOT_DELETED = {"auto", "return", "throw", "break", "continue", "using", "static_assert", "assert", "case", "default"}
# What gives the same whichever way round its arguments stand.
_SYMMETRIC = {"min", "max", "swap"}
# Checks of the developer's own, and what Qt's build reads as text.
_PASSED_OVER = {"assert", "static_assert", "SIGNAL", "SLOT", "Q_DECLARE_METATYPE", "noexcept", "alignas"}
# What only makes the program faster, or warns nobody.
_HINT = re.compile(r"[Pp]refetch|\bahead\b|_fetchAhead|\btrail\b|\breserve\(|static_cast<void>")
_HINT_FUNCTIONS = {"_fetchAhead"}


class Mutant:
    """A source with the text between two positions replaced. before and after show the lines around it on one line;
    together with file and function they name it, wherever it comes to stand."""

    def __init__(self, file, source, kind, first, last, replacement):
        self.file = file
        self.kind = kind
        self.start = source.tokens[first].start
        self.end = source.tokens[last].end
        self.replacement = replacement
        self.line = source.line_of(self.start)
        self.function = source.function_at(first)
        line_start = source.text.rfind("\n", 0, self.start) + 1
        line_end = source.text.find("\n", self.end)
        self.before = " ".join(source.text[line_start:line_end].split())
        changed = source.text[line_start : self.start] + replacement + source.text[self.end : line_end]
        self.after = " ".join(changed.split())

    @property
    def name(self):
        return (self.file, self.function, self.before, self.after)

    def apply(self, text):
        return text[: self.start] + self.replacement + text[self.end :]

    def show(self):
        return f"{self.file}:{self.line} {self.function} ({self.kind})\n  - {self.before}\n  + {self.after}"


def _changed_number(text):
    match = re.fullmatch(r"(0x[0-9a-fA-F]+|[\d.]+(?:[eE][+-]?\d+)?)([uUlLfF]*)", text)
    if match is None or (match[1].startswith("0x") and match[2].lower().startswith("f")):
        return None
    digits, suffix = match.groups()
    if digits.startswith("0x"):
        return hex(int(digits, 16) + 1) + suffix
    if digits.isdigit():
        return ("0" if digits == "1" else str(int(digits) + 1)) + suffix
    number = float(digits)
    return repr(number + 1.0 if number + 1.0 != number else 2.0 * number) + suffix


class _Maker:
    def __init__(self, file, text):
        self.file = file
        self.source = Source(text)
        self.tokens = self.source.tokens
        self.found = []
        self.skipped = self._skipped()

    # Positions inside checks, attributes, hints and loops' steps, of which the last would only run forever.
    def _skipped(self):
        skipped = set()
        tokens = self.tokens
        for i, token in enumerate(tokens[:-1]):
            opens = tokens[i + 1].text == "("
            if token.text in _PASSED_OVER and opens:
                skipped.update(range(i, tokens[i + 1].partner + 1))
            elif token.text == "[" and tokens[i + 1].text == "[":
                skipped.update(range(i, token.partner + 1))
            elif token.text in ("using", "typedef", "friend"):
                skipped.update(range(i, self._next(i, ";")))
            elif token.text in _HINT_FUNCTIONS and opens:
                skipped.update(range(i, self._end_of_function(i + 1)))
            elif token.text == "for" and opens:
                skipped.update(self._step_of_loop(i + 1))
        for first, last in self.source.statements():
            if _HINT.search(self.source.text_of(first, last)):
                skipped.update(range(first, last + 1))
        return skipped

    def _next(self, i, text):
        while i < len(self.tokens) and self.tokens[i].text != text:
            i += 1
        return i

    def _end_of_function(self, parameters):
        i = self.tokens[parameters].partner
        while self.tokens[i].text not in (";", "{"):
            i += 1
        return self.tokens[i].partner or i

    def _step_of_loop(self, opener):
        inside = range(opener + 1, self.tokens[opener].partner)
        ends = [i for i in inside if self.tokens[i].text == ";" and self.tokens[i].opener == opener]
        return range(ends[-1], self.tokens[opener].partner) if ends else ()

    def _add(self, kind, first, last, replacement):
        if not self.skipped.isdisjoint((first, last)):
            return
        mutant = Mutant(self.file, self.source, kind, first, last, replacement)
        self.found.append(mutant)

    def make(self):
        for i, token in enumerate(self.tokens):
            if token.kind == "number":
                self._number(i)
            elif token.kind == "word":
                self._word(i)
            elif token.kind == "operator" and token.is_code:
                self._operator(i)
        self._statements()
        self.found.sort(key=lambda mutant: (mutant.start, mutant.end))
        return self.found

    def _text(self, i):
        return self.tokens[i].text if 0 <= i < len(self.tokens) else ""

    def _number(self, i):
        is_pure = self._text(i - 1) == "=" and self._text(i - 2) in (")", "const", "override")
        around = [self.tokens[j] for j in (i - 1, i + 1) if self._text(j) in ("<", ">")]
        is_type_argument = any(not token.is_binary for token in around)
        changed = _changed_number(self._text(i))
        if changed is not None and not is_pure and not is_type_argument:
            self._add("constant", i, i, changed)

    def _word(self, i):
        text = self._text(i)
        if text in ("if", "while") and self._text(i + 1) == "(":
            self._condition(i + 1)
        elif text in ("true", "false"):
            self._add("constant", i, i, _WORDS[text])
        elif text in ("min", "max") and self._text(i - 1) == "::" and self._text(i + 1) == "(":
            if self._text(i + 2) != ")":
                self._add("call", i, i, _WORDS[text])
        elif self._text(i - 1) == "::" and self._text(i - 2) in _ENUMERATIONS and text in _ENUMERATORS:
            if "case" not in (self._text(i - 3), self._text(i - 5)):
                self._add("constant", i, i, _ENUMERATORS[text])

    # The hardest way to notice that a branch is not taken when it should be; the operators inside say the rest.
    def _condition(self, opener):
        first, last = opener + 1, self.tokens[opener].partner - 1
        for i in range(first, last):
            if self._text(i) == ";" and self.tokens[i].opener == opener:
                first = i + 1
        self._add("condition", first, last, "false")
        operators = _RELATIONAL.keys() | {"&&", "||", "!"}
        if operators.isdisjoint(self._text(i) for i in range(first, last)) and self._text(opener - 1) == "if":
            self._add("condition", first, last, "true")

    def _operator(self, i):
        token = self.tokens[i]
        text = token.text
        if token.is_binary:
            self._binary(i)
        elif text in ("!", "-", "~") and not token.blank_after:
            before = self.tokens[i - 1]
            if text != "-" or before.text in _NO_OPERAND_BEFORE:
                self._add("operator", i, i, "")
        elif text in ("++", "--") and not self._is_statement(i):
            self._add("operator", i, i, "--" if text == "++" else "++")
        if text == "?":
            self._choice(i)
        elif text in ("(", "{"):
            self._arguments(i)

    def _binary(self, i):
        text = self._text(i)
        for operators in (_RELATIONAL, _LOGICAL, _ARITHMETIC):
            if text in operators and not (text == "+" and self._joins_texts(i)):
                self._add("operator", i, i, operators[text])

    def _joins_texts(self, i):
        around = [self._text(j) for j in range(max(0, i - 8), min(i + 9, len(self.tokens)))]
        return any(text.startswith(('"', "'")) or text in ("string", "to_string") for text in around)

    def _is_statement(self, i):
        return self._text(i - 1) in (";", "{", "}")

    # The two values of a choice change places. With an equality before it, the other operator says the same.
    def _choice(self, i):
        level = self.tokens[i].opener
        j = i - 1
        while j > 0 and self.tokens[j].opener == level and self._text(j) not in (";", ",", "=", "return", ":"):
            if self._text(j) in ("==", "!=", "!"):
                return
            j -= 1
        depth = 0
        colon = None
        end = i + 1
        while end < len(self.tokens):
            text = self._text(end)
            if self.tokens[end].opener == level:
                if text in (";", ","):
                    break
                if text == "?":
                    depth += 1
                elif text == ":" and depth == 0 and colon is None:
                    colon = end
                elif text == ":":
                    depth -= 1
            if self.tokens[end].partner == level and text in (")", "]", "}"):
                break
            end += 1
        if colon is None:
            return
        one = self.source.text_of(i + 1, colon - 1)
        other = self.source.text_of(colon + 1, end - 1)
        if one != other:
            self._add("condition", i + 1, end - 1, f"({other}) : ({one})")

    def _arguments(self, opener):
        before = self.tokens[opener - 1]
        if self._text(opener) == "(":
            is_call = before.kind == "word" and before.text not in _NO_CALL | _SYMMETRIC
            is_list = is_call or before.text == ">"
        else:
            is_list = opener not in self.source.block and opener not in self.source.scope
        if not is_list:
            return
        items = self.source.items_between(opener)
        for (first, last), (next_first, next_last) in zip(items, items[1:]):
            one, other = self.source.text_of(first, last), self.source.text_of(next_first, next_last)
            if one != other and self._can_swap(first, last) and self._can_swap(next_first, next_last):
                between = self.source.text[self.tokens[last].end : self.tokens[next_first].start]
                self._add("argument order", first, next_last, other + between + one)

    # Ends of a range, lambdas, texts and declarations of parameters would not build, or do harm at random.
    def _can_swap(self, first, last):
        text = self.source.text_of(first, last)
        if text.startswith(("[", '"')) or re.search(r"\bc?(begin|end)\(", text):
            return False
        return not self._is_declaration(first, last)

    def _is_declaration(self, first, last):
        depth = self.tokens[first].opener
        for i in range(first, last):
            left, right = self.tokens[i], self.tokens[i + 1]
            if left.opener != depth or right.kind != "word" or not left.blank_after:
                continue
            if left.kind == "word" and left.text not in ("return", "Q_EMIT", "delete", "new"):
                return True
            if left.text in ("*", "&", "&&", ">") and not left.blank_before:
                return True
        return False

    def _statements(self):
        for first, last in self.source.statements():
            text = self._text(first)
            inside = [i for i in range(first, last) if self.tokens[i].opener == self.tokens[first].opener]
            is_set = any(self._text(i) in ("=", "+=", "-=", "*=", "/=") for i in inside)
            is_step = text in ("++", "--")
            is_call = self._text(last - 1) == ")"
            if text in _NOT_DELETED or not (is_set or is_step or is_call or text == "delete"):
                continue
            if not self._is_declaration(first, last):
                self._add("statement", first, last - 1, "")


def mutants_of(file, text):
    return _Maker(file, text).make()
