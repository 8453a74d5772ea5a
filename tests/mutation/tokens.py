"""C++ sources as tokens, with what their brackets enclose.

There is no parse tree: the sources are formatted by clang-format, whose blanks tell an operator from a template's
bracket or a pointer's star.
"""

import re

_TOKEN = re.compile(
    r"""
    (?P<comment>//[^\n]*|/\*.*?\*/)
  | (?P<directive>^[ \t]*\#(?:[^\n\\]|\\\n|\\.)*)
  | (?P<blank>\s+)
  | (?P<string>"(?:[^"\\\n]|\\.)*"|'(?:[^'\\\n]|\\.)*')
  | (?P<number>\.?\d(?:[eE][+-]|[\w.'])*)
  | (?P<word>[A-Za-z_]\w*)
  | (?P<operator><<=|>>=|\.\.\.|->|::|\+\+|--|&&|\|\||<=|>=|==|!=|<<|>>|[-+*/%&|^]=|.)
    """,
    re.X | re.S | re.M,
)

_OPENING = {"(": ")", "[": "]", "{": "}"}
_SCOPES = {"namespace", "class", "struct", "enum", "union"}
# What stands before the brace of a block, where another word or a bracket would begin a list of values.
_BEFORE_BLOCK = {"else", "do", "try", "const", "noexcept", "override", "final", "mutable"}


class Token:
    """One token that is neither blank, comment nor directive."""

    __slots__ = ("kind", "text", "start", "end", "blank_before", "blank_after", "partner", "opener", "is_code")

    def __init__(self, kind, text, start):
        self.kind = kind
        self.text = text
        self.start = start
        self.end = start + len(text)
        self.blank_before = False
        self.blank_after = False
        self.partner = None  # of a bracket: the position of the other one
        self.opener = None  # the position of the innermost bracket around it
        self.is_code = False  # inside a function

    @property
    def is_binary(self):
        """Whether the formatting shows an operator between two operands."""
        return self.kind == "operator" and self.blank_before and self.blank_after


class Source:
    """A file's tokens. block holds the positions of the braces that enclose statements, scope those of namespaces and
    classes; all other braces enclose values."""

    def __init__(self, text):
        self.text = text
        self.tokens = []
        self.block = set()
        self.scope = set()
        self._tokenize()
        self._match_brackets()

    def _tokenize(self):
        blank = True
        for match in _TOKEN.finditer(self.text):
            if match.lastgroup in ("comment", "directive", "blank"):
                blank = True
                if self.tokens:
                    self.tokens[-1].blank_after = True
                continue
            token = Token(match.lastgroup, match.group(), match.start())
            token.blank_before = blank
            blank = False
            self.tokens.append(token)

    def _match_brackets(self):
        stack = []
        for i, token in enumerate(self.tokens):
            token.opener = stack[-1] if stack else None
            outer = self.tokens[token.opener] if stack else None
            token.is_code = outer is not None and (outer.is_code or token.opener in self.block)
            if token.kind != "operator":
                continue
            if token.text in _OPENING:
                if token.text == "{":
                    self._classify_brace(i)
                stack.append(i)
            elif token.text in _OPENING.values():
                opener = stack.pop()
                if _OPENING[self.tokens[opener].text] != token.text:
                    raise ValueError(f"brackets do not match at position {token.start}")
                self.tokens[opener].partner = i
                token.partner = opener
                token.opener = self.tokens[opener].opener
                token.is_code = self.tokens[opener].is_code

    def _classify_brace(self, i):
        token = self.tokens[i]
        before = self.tokens[i - 1] if i else None
        if not token.is_code and self._names_scope(i):
            self.scope.add(i)
        elif before is None or self._begins_block(i, before):
            self.block.add(i)

    def _begins_block(self, i, before):
        if before.text == "}" and not self.tokens[i].is_code:
            return before.partner not in self.scope  # A constructor's body behind its initialisers.
        if before.text == "{":
            return i - 1 in self.block
        if before.kind == "word":
            return before.text in _BEFORE_BLOCK
        return before.text not in ("(", ",", "=", ">")

    def _names_scope(self, i):
        for j in self.statement_before(i):
            if self.tokens[j].text in _SCOPES and self.tokens[j - 1].text not in ("<", ","):
                return True
        return False

    def statement_before(self, i):
        """The positions from position i back to where its statement begins."""
        j = i - 1
        while j >= 0:
            text = self.tokens[j].text
            if text in (";", "{", "}") or (text in ("(", "[") and self.tokens[j].partner is None):
                return
            if text in (")", "]"):
                j = self.tokens[j].partner
            yield j
            j -= 1

    def statements(self):
        """The simple statements of functions as (first, last) positions; last is that of the semicolon."""
        firsts = {}  # where the statement at hand of each block began
        for i, token in enumerate(self.tokens):
            block = token.opener
            if block not in self.block:
                continue
            first = firsts.get(block)
            ends_label = token.text == ":" and first is not None and self.tokens[first].text in ("case", "default")
            if token.text == ";" and first is not None:
                yield first, i
            if token.text == ";" or ends_label or i in self.block or token.partner in self.block:
                firsts[block] = None
            elif first is None:
                firsts[block] = i

    def text_of(self, first, last):
        return self.text[self.tokens[first].start : self.tokens[last].end]

    def line_of(self, position):
        return self.text.count("\n", 0, position) + 1

    def items_between(self, opener):
        """What the commas separate between a bracket and its partner, as (first, last) positions."""
        items = []
        first = i = opener + 1
        close = self.tokens[opener].partner
        while i < close:
            if self.tokens[i].text == "," and self.tokens[i].opener == opener:
                items.append((first, i - 1))
                first = i + 1
            i += 1
        if first < close:
            items.append((first, close - 1))
        return items

    def function_at(self, i):
        """The qualified name of the outermost function around a token, or ""."""
        block = None
        while self.tokens[i].opener is not None:
            i = self.tokens[i].opener
            block = i if i in self.block else block
        if block is None:
            return ""
        first = min(self.statement_before(block), default=block)
        name = ""
        for token in self.tokens[first:block]:
            if token.text == "(" and token.opener == self.tokens[block].opener:
                return name
            is_part = token.kind == "word" or token.text in ("::", "~")
            name = name + token.text if is_part and not token.blank_before else token.text
        return ""
