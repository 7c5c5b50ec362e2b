"""Puts mutants behind the switch: a file's text with all of them, each on when its number is asked for."""

import dataclasses
import re

from mutation import tokens as cpp

STATEMENT_WORDS = set("return throw delete break continue goto if for while switch do".split())
NO_STATEMENT = {"else", "case", "default", "catch"}


@dataclasses.dataclass
class Edit:
    start: int
    end: int
    text: str
    number: int


def is_declaration(words):
    """Whether the words of a statement declare a name: it has to be known behind the statement too."""
    if not words or not re.fullmatch(r"[A-Za-z_]\w*", words[0]) or words[0] in STATEMENT_WORDS:
        return False
    text = re.sub(r"<[^<>;()]*>", "", " ".join(words))
    typed = re.match(r"(?:\w+ (?::: )?)+(?:(?:const|[*&]|&&) )*(?:\w+|\[[^\]]*\]) (?:=|\{|\(|;|:)", text)
    return typed is not None and re.match(r"(?:\w+ :: )*\w+ [=({;:]", text) is None


def statement_form(mutant, text):
    """Both texts as blocks of an if; None where the old one is no statement of its own."""
    old = text[mutant.start : mutant.end]
    words = [token.text for token in cpp.tokens_of(old)]
    new_words = [token.text for token in cpp.tokens_of(mutant.new)]
    whole = words[-1] in (";", "}") and words[0] not in NO_STATEMENT and (not new_words or new_words[-1] in (";", "}"))
    if not whole or not cpp.balanced(words) or not cpp.balanced(new_words) or is_declaration(words):
        return None
    switched = f"{{ if (velmora_mutant({mutant.number})) {{\n{mutant.new}\n}} else {{\n{old}\n}} }}"
    return [Edit(mutant.start, mutant.end, switched, mutant.number)]


def difference(mutant, tokens, new):
    """The old tokens [a, b) that become the new ones [c, d): without what begins and ends alike, brackets in pairs."""
    a = next((i for i, token in enumerate(tokens) if token.start >= mutant.start), len(tokens))
    b = next((i for i, token in enumerate(tokens) if token.start >= mutant.end), len(tokens))
    first, last, c, d = a, b, 0, len(new)
    while a < b and c < d and tokens[a].text == new[c]:
        a, c = a + 1, c + 1
    while a < b and c < d and tokens[b - 1].text == new[d - 1]:
        b, d = b - 1, d - 1
    while not (cpp.balanced(t.text for t in tokens[a:b]) and cpp.balanced(new[c:d])) and (a > first or b < last):
        if a > first:
            a, c = a - 1, c - 1
        if b < last:
            b, d = b + 1, d + 1
    return a, b, new[c:d]


def expression_forms(mutant, text):
    """The expression that changes as a choice; then the one around it, and the next."""
    tokens = cpp.tokens_of(text)
    a, b, new = difference(mutant, tokens, [token.text for token in cpp.tokens_of(mutant.new)])
    forms = [] if new else dropped_condition(mutant, text, tokens, a, b)
    while len(forms) < 3:
        old = [token.text for token in tokens[a:b]]
        level = min(cpp.weakest(old), cpp.weakest(new))
        first, last = cpp.first_of_operand(tokens, a, level), cpp.last_of_operand(tokens, b, level)
        new = [token.text for token in tokens[first:a]] + new + [token.text for token in tokens[b:last]]
        a, b = first, last
        if level > cpp.LIST and new and a < b:
            forms.append(choice(mutant, text, tokens, a, b, new))
        around = tokens[a].outer if a < len(tokens) else -1
        if level == 0 or around < 0 or (tokens[around].text == "{" and not cpp.is_value_list(tokens, around)):
            break
        new = [t.text for t in tokens[around:a]] + new + [t.text for t in tokens[b : tokens[around].partner + 1]]
        a, b = around, tokens[around].partner + 1
    return forms


def dropped_condition(mutant, text, tokens, a, b):
    """Of a condition that is dropped with its "and" or "or", the condition alone: as if it held, or not."""
    neutral = {"&&": "true", "||": "false"}
    for word, first, last in ((a, a + 1, b), (b - 1, a, b - 1)):
        joint = tokens[word].text if a < word + 1 <= b else ""
        if joint in neutral and first < last and cpp.weakest(t.text for t in tokens[first:last]) > cpp.STRENGTH[joint]:
            return [choice(mutant, text, tokens, first, last, [neutral[joint]])]
    return []


def choice(mutant, text, tokens, a, b, new):
    start, end = tokens[a].start, tokens[b - 1].end
    switched = f"(velmora_mutant({mutant.number}) ? (\n{' '.join(new)}\n) : (\n{text[start:end]}\n))"
    return constants_as_variables(mutant, tokens, a) + [Edit(start, end, switched, mutant.number)]


def constants_as_variables(mutant, tokens, at):
    """A constexpr whose value is chosen while the program runs becomes a const."""
    first = cpp.statement_start(tokens, at)
    words = [token.text for token in tokens[first:at]]
    if "constexpr" not in words:
        return []
    word = tokens[first + words.index("constexpr")]
    in_class = word.outer >= 0 and {"struct", "class"} & {t.text for t in tokens[max(0, word.outer - 6) : word.outer]}
    storage = ["inline"] if in_class and "inline" not in words else []
    if "const" not in words:
        storage.append("const")
    elif not {"static", "inline"} & set(words + storage):
        storage.append("static")
    return [Edit(word.start, word.end, " ".join(storage), 0)]


def forms_of(mutant, text):
    """The ways to put a mutant behind the switch, the likeliest first."""
    statement = statement_form(mutant, text)
    return ([statement] if statement else []) + expression_forms(mutant, text)


def literal_form(mutant):
    """The mutant itself, without a switch."""
    return [Edit(mutant.start, mutant.end, mutant.new, mutant.number)]


def switched_text(text, edits, header):
    """The text with the edits, and of each its mutant's number and its first and last line."""
    parts, places, at, line = [f'#include "{header}"\n'], [], 0, 2
    for edit in sorted({(edit.start, edit.end, edit.text): edit for edit in edits}.values(), key=lambda e: e.start):
        between = text[at : edit.start]
        line += between.count("\n")
        places.append((edit.number, line, line + edit.text.count("\n")))
        line += edit.text.count("\n")
        parts += [between, edit.text]
        at = edit.end
    return "".join(parts + [text[at:]]), places


def clash(edits, others):
    """Whether two forms change the same text, other than alike."""
    return any(
        edit.start < other.end
        and other.start < edit.end
        and (edit.start, edit.end, edit.text) != (other.start, other.end, other.text)
        for edit in edits
        for other in others
    )
