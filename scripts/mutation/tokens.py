"""C++ text as tokens, as far as it needs to be known which part of it is an expression."""

import dataclasses
import re

PATTERN = re.compile(
    r"""(?P<blank>\s+|//[^\n]*|/\*.*?\*/)
      | (?P<line>(?<![^\n])[ \t]*\#(?:\\\n|[^\n])*)
      | R"(?P<mark>[^(\s]*)\(.*?\)(?P=mark)"
      | (?:u8|[uUL])?"(?:\\.|[^"\\])*"(?:_?\w+)?
      | '(?:\\.|[^'\\])*'
      | \.?\d(?:[eEpP][+-]|'?[\w.])*
      | \w+
      | <<=|>>=|<=>|->\*|\.\.\.|::|->|\+\+|--|<<|>>|<=|>=|==|!=|&&|\|\||[-+*/%&|^]=|.""",
    re.VERBOSE | re.DOTALL,
)
OPENING = {"(": ")", "[": "]", "{": "}"}
CLOSING = {")", "]", "}"}
KEYWORDS = set(
    "return case default throw else do if while for switch new delete const auto constexpr static inline".split()
)

# How strongly a token holds its sides together: what stands between two weaker ones is an expression.
LIST, ASSIGNMENT, CHOICE, OPERAND = 1, 2, 3, 6
STRENGTH = {",": LIST, "?": CHOICE, ":": CHOICE, "||": 4, "&&": 5}
STRENGTH |= dict.fromkeys(["=", "+=", "-=", "*=", "/=", "%=", "&=", "|=", "^=", "<<=", ">>="], ASSIGNMENT)
STRENGTH |= dict.fromkeys([";", *OPENING, *CLOSING, *KEYWORDS], 0)


@dataclasses.dataclass
class Token:
    text: str
    start: int
    end: int
    partner: int = -1  # of a bracket
    outer: int = -1  # the opening bracket around it


def tokens_of(text):
    found = (match for match in PATTERN.finditer(text) if match.lastgroup not in ("blank", "line"))
    tokens = [Token(match.group(), *match.span()) for match in found]
    opened = []
    for i, token in enumerate(tokens):
        if token.text in CLOSING and opened:
            token.partner = opened.pop()
            tokens[token.partner].partner = i
        token.outer = opened[-1] if opened else -1
        if token.text in OPENING:
            opened.append(i)
    return tokens


def balanced(texts):
    opened = []
    for text in texts:
        if text in OPENING:
            opened.append(OPENING[text])
        elif text in CLOSING and (not opened or opened.pop() != text):
            return False
    return not opened


def weakest(texts):
    """The strength of the weakest token outside of brackets."""
    depth, least = 0, OPERAND
    for text in texts:
        depth -= text in CLOSING
        if depth == 0 and text not in OPENING and text not in CLOSING:
            least = min(least, STRENGTH.get(text, OPERAND))
        depth += text in OPENING
    return least


def first_of_operand(tokens, at, level):
    """Where the expression begins that goes on at token `at`."""
    while at > 0:
        before = tokens[at - 1].text
        if before in (")", "]") or (before == "}" and at < len(tokens) and tokens[at].text in (".", "->")):
            at = tokens[at - 1].partner
        elif STRENGTH.get(before, OPERAND) < level:
            return at
        else:
            at -= 1
    return at


def last_of_operand(tokens, at, level):
    """Behind which token the expression ends that has come up to token `at`."""
    while at < len(tokens):
        text = tokens[at].text
        braces = text == "{" and at > 0 and re.fullmatch(r"\w+|>|\]", tokens[at - 1].text)
        if text in ("(", "[") or braces:
            at = tokens[at].partner + 1
        elif STRENGTH.get(text, OPERAND) < level:
            return at
        else:
            at += 1
    return at


def statement_start(tokens, at):
    """The first token of the statement in which token `at` stands, out of parentheses and lists of values."""
    while at > 0:
        before = tokens[at - 1].text
        if before in (")", "]") or (before == "}" and tokens[at].text in (",", ".", "->")):
            at = tokens[at - 1].partner
        elif before in (";", "}") or (before == "{" and not is_value_list(tokens, at - 1)):
            return at
        else:
            at -= 1
    return at


def is_value_list(tokens, brace):
    """Whether an opening brace holds values and no statements: by what stands around it."""
    before = tokens[brace - 1].text if brace else ";"
    if before in ("=", ",", "{", "(", "return"):
        return True
    if not re.fullmatch(r"\w+|>", before) or before in ("else", "do", "try", "const", "noexcept", "override"):
        return False
    behind = tokens[brace].partner + 1
    kinds = {"struct", "class", "enum", "union", "namespace"}
    return (
        0 < behind < len(tokens)
        and tokens[behind].text in (";", ",", ")", "}")
        and not kinds & {token.text for token in tokens[max(0, brace - 4) : brace]}
    )
