# SPDX-License-Identifier: MIT
"""Where the sources of the library can be mutated, and into what: by libclang."""

import hashlib
import json
import pickle
import re
import shlex
from dataclasses import dataclass, field, replace
from pathlib import Path

from clang.cindex import Config, CursorKind, Index

Config.set_library_file("/usr/lib/llvm-14/lib/libclang.so.1")

OPERATORS = {
    "+": ["-"], "-": ["+"], "*": ["/"], "/": ["*"], "%": ["*"],
    "<": ["<=", ">="], "<=": ["<", ">"], ">": [">=", "<="], ">=": [">", "<"],
    "==": ["!="], "!=": ["=="],
    "&&": ["||"], "||": ["&&"],
    "&": ["|"], "|": ["&"], "^": ["|"], "<<": [">>"], ">>": ["<<"],
    "+=": ["-="], "-=": ["+="], "*=": ["/="], "/=": ["*="], "%=": ["*="],
    "&=": ["|="], "|=": ["&="], "^=": ["|="], "<<=": [">>="], ">>=": ["<<="],
}
CALLS = {
    "std::min": "std::max", "std::max": "std::min",
    "hn::Add": "hn::Sub", "hn::Sub": "hn::Add",
    "hn::And": "hn::Or", "hn::Or": "hn::And",
    "hn::ShiftLeft": "hn::ShiftRight", "hn::ShiftRight": "hn::ShiftLeft",
    "hn::ShiftLeftSame": "hn::ShiftRightSame", "hn::ShiftRightSame": "hn::ShiftLeftSame",
    "hn::InterleaveLower": "hn::InterleaveUpper", "hn::InterleaveUpper": "hn::InterleaveLower",
}
FUNCTIONS = {CursorKind.FUNCTION_DECL, CursorKind.CXX_METHOD, CursorKind.CONSTRUCTOR,
             CursorKind.DESTRUCTOR, CursorKind.CONVERSION_FUNCTION, CursorKind.FUNCTION_TEMPLATE}
BODIES = {CursorKind.COMPOUND_STMT, CursorKind.IF_STMT, CursorKind.FOR_STMT,
          CursorKind.WHILE_STMT, CursorKind.DO_STMT, CursorKind.CXX_FOR_RANGE_STMT,
          CursorKind.CASE_STMT, CursorKind.DEFAULT_STMT}
DECLARATIONS = {CursorKind.VAR_DECL, CursorKind.FIELD_DECL, CursorKind.PARM_DECL}
# What no schema can hold: the compiler must know it.
CONSTANTS = {CursorKind.ENUM_CONSTANT_DECL, CursorKind.STATIC_ASSERT,
             CursorKind.ALIGNED_ATTR, CursorKind.TYPE_ALIAS_DECL}
DEFAULTS = {"0", "0.0", "false", "nullptr", "{}", "QString()", "QStringRef()", "QByteArray()"}
SPACE = re.compile(r"\s|//[^\n]*|/\*.*?\*/", re.S)
LITERAL = re.compile(r"(0[xX][0-9a-fA-F']+|[0-9][0-9'.]*(?:[eE][-+]?\d+)?)[uUlLfF]*\Z")
# Brackets in these close nothing; the ' between digits is none.
QUOTED = re.compile(rb"\"(?:[^\"\\\n]|\\.)*\"|(?<![0-9A-Fa-f])'(?:[^'\\\n]|\\.)*'")
STRING = re.compile(r'(QStringLiteral|QLatin1String)\("((?:[^"\\\n]|\\.)*)"\)')


@dataclass
class Mutant:
    what: str  # of the mutation, for people
    text: str  # what stands in place of the original; of a statement, whether it is "deleted"


@dataclass
class Point:
    """A range of a file's bytes, and what may stand there."""
    start: int
    end: int
    kind: str  # expression, condition, statement, return, constant (a word to be replaced)
    function: str
    constexpr: bool
    mutants: list = field(default_factory=list)
    variable: tuple = None  # the range of the variable that must not be a constant for it

    def level(self):
        return ["constant", "statement", "return", "condition", "expression"].index(self.kind)


class File:
    """The points of one file."""

    def __init__(self, path, name):
        self.name = name
        self.data = path.read_bytes()
        self.bare = QUOTED.sub(lambda text: b"_" * len(text.group()), self.data)
        self.points = {}
        self.bodies = []  # ranges of function bodies, whether constexpr, names

    def text(self, start, end):
        return self.data[start:end].decode()

    def is_type(self, start, end, context):
        """Whether a literal stands in a template argument or in the type of a variable."""
        around = self.text(max(0, start - 2), start), self.text(end, end + 2)
        return start < context.name or (around[0][-1:] == "<" or around[0] == ", ") \
            and around[1] in (">(", ">{", ">:", "> ")

    def add(self, start, end, kind, context, *mutants):
        if kind == "expression" and self.is_type(start, end, context):
            return
        key = (start, end, kind)
        if key not in self.points:
            self.points[key] = Point(start, end, kind, context.function, context.constexpr,
                                     variable=context.variable)
            self.points[key].mutants = [Mutant(*mutant) for mutant in mutants]
        else:
            known = {mutant.text for mutant in self.points[key].mutants}
            self.points[key].mutants += [Mutant(*m) for m in mutants if m[1] not in known]

    def place(self, offset):
        line = self.data.count(b"\n", 0, offset) + 1
        column = len(self.data[self.data.rfind(b"\n", 0, offset) + 1:offset].decode()) + 1
        return line, column

    def line(self, offset):
        start = self.data.rfind(b"\n", 0, offset) + 1
        end = self.data.find(b"\n", offset)
        return self.text(start, end).strip()


@dataclass
class Context:
    function: str = ""
    constexpr: bool = False
    variable: tuple = None
    name: int = 0  # where that of the variable stands
    deduced: bool = False  # what is returned has the type of the expression


class Finder:
    """Walks the declarations of one translation unit that stand in one file."""

    def __init__(self, file):
        self.file = file

    def offsets(self, cursor):
        return cursor.extent.start.offset, cursor.extent.end.offset

    def own(self, cursor):
        return self.file.text(*self.offsets(cursor))

    def between(self, left, right):
        start, end = left.extent.end.offset, right.extent.start.offset
        text = self.file.text(start, end) if start <= end else ""
        return SPACE.sub("", text), start, end

    def walk(self, cursor, context):
        kind = cursor.kind
        if kind in CONSTANTS:
            return
        if kind in FUNCTIONS:
            context = self.of_function(cursor, context)
        elif kind in (CursorKind.VAR_DECL, CursorKind.FIELD_DECL):
            context = self.of_variable(cursor, context)
        elif kind == CursorKind.LAMBDA_EXPR:
            head = self.own(cursor).partition("{")[0]
            context = replace(context, deduced="->" not in head, name=0)
        children = list(cursor.get_children())
        visit = getattr(self, "visit_" + kind.name.lower(), None)
        if visit:
            visit(cursor, children, context)
        if kind in BODIES:
            for child in children:
                self.statement(cursor, child, context)
        if kind == CursorKind.CASE_STMT:
            children = children[1:]
        if kind == CursorKind.IF_STMT and self.own(cursor).startswith("if constexpr"):
            children = [c for c in children if c.kind.is_statement()]
        for child in children:
            if kind in DECLARATIONS and self.is_bound(child):
                continue
            if child.location.file is None or self.here(child):
                self.walk(child, context)

    def here(self, cursor):
        return Path(cursor.location.file.name).name == Path(self.file.name).name

    def is_bound(self, cursor):
        """Whether something that belongs to a declaration is how many elements its array has."""
        start, end = self.offsets(cursor)
        return self.file.data[start - 1:start] == b"[" and self.file.data[end:end + 1] == b"]"

    def of_function(self, cursor, context):
        start, end = self.offsets(cursor)
        body = next((c for c in cursor.get_children() if c.kind == CursorKind.COMPOUND_STMT), None)
        head = self.file.text(start, body.extent.start.offset if body else end)
        inner = Context(cursor.spelling, re.search(r"\bconstexpr\b", head) is not None)
        if body:
            self.file.bodies.append((start, end, inner))
        return inner

    def of_variable(self, cursor, context):
        start, end = self.offsets(cursor)
        inner = Context(context.function or cursor.spelling, context.constexpr, context.variable,
                        cursor.location.offset)
        head = self.file.text(start, cursor.location.offset)
        word = re.search(r"\bconstexpr\b", head)
        if cursor.kind == CursorKind.FIELD_DECL:
            inner.constexpr = True
        elif word and not context.constexpr:
            place = start + len(head[:word.start()].encode())
            inner.variable = (start, end)
            parent = cursor.semantic_parent.kind
            inline = parent in (CursorKind.CLASS_DECL, CursorKind.STRUCT_DECL,
                                CursorKind.CLASS_TEMPLATE)
            self.file.add(place, place + len("constexpr"), "constant", inner,
                          ("", "inline const" if inline else "const"))
        return inner

    # Statements.

    def statement(self, parent, child, context):
        if parent.kind == CursorKind.IF_STMT and not self.is_body(parent, child):
            return
        if parent.kind in (CursorKind.FOR_STMT, CursorKind.WHILE_STMT,
                           CursorKind.CXX_FOR_RANGE_STMT, CursorKind.DO_STMT):
            bodies = list(parent.get_children())
            if child != bodies[0 if parent.kind == CursorKind.DO_STMT else -1]:
                return
        if parent.kind == CursorKind.CASE_STMT and child == next(parent.get_children()):
            return
        start, end = self.offsets(child)
        rest = self.file.data[end:end + 1]
        if child.kind in (CursorKind.BREAK_STMT, CursorKind.CONTINUE_STMT):
            pass
        elif not child.kind.is_expression() or child.kind == CursorKind.LAMBDA_EXPR:
            return
        if rest != b";" or not self.own(child):
            return
        self.file.add(start, end + 1, "statement", context, ("is deleted", "deleted"))

    def is_body(self, statement, child):
        _, close = self.parentheses(statement)
        return close is not None and child.extent.start.offset > close

    def parentheses(self, cursor, after=0):
        """The offsets of the parentheses behind a keyword."""
        start, end = self.offsets(cursor)
        data = self.file.bare
        opening = data.find(b"(", start + after, end)
        depth = 0
        for at in range(opening, end) if opening >= 0 else []:
            if data[at:at + 1] in b"([{":
                depth += 1
            elif data[at:at + 1] in b")]}":
                depth -= 1
                if depth == 0:
                    return opening, at
        return None, None

    def visit_return_stmt(self, cursor, children, context):
        start, end = self.offsets(cursor)
        text = self.own(cursor)
        if not text.startswith("return") or self.file.data[end:end + 1] != b";":
            return
        if not children:
            self.file.add(start, end + 1, "statement", context, ("is deleted", "deleted"))
        elif not context.deduced and text[len("return"):].strip() not in DEFAULTS:
            self.file.add(start, end + 1, "return", context, ("returns {}", "return {};"))

    # Conditions.

    def condition(self, start, end, context, loop):
        text = self.file.text(start, end)
        if not text.strip() or text.strip() in ("true", "false"):
            return
        start += len(text) - len(text.lstrip())
        text = text.strip()
        mutants = [("is negated", f"!({text})"), ("is false", "false")]
        if not loop:
            mutants.append(("is true", "true"))
        self.file.add(start, start + len(text.encode()), "condition", context, *mutants)

    def visit_if_stmt(self, cursor, children, context):
        text = self.own(cursor)
        if not re.match(r"if\s*\(", text):
            return
        opening, close = self.parentheses(cursor)
        inside = [c for c in children if opening < c.extent.start.offset < close]
        if not inside or inside[-1].kind in (CursorKind.VAR_DECL, CursorKind.DECL_STMT):
            return
        start = inside[-1].extent.start.offset
        self.condition(start, close, context, False)

    def visit_while_stmt(self, cursor, children, context):
        if not re.match(r"while\s*\(", self.own(cursor)):
            return
        opening, close = self.parentheses(cursor)
        if children[0].kind.is_expression():
            self.condition(opening + 1, close, context, True)

    def visit_do_stmt(self, cursor, children, context):
        start, end = self.offsets(children[-1])
        if children[-1].kind.is_expression():
            self.condition(start, end, context, True)

    def visit_for_stmt(self, cursor, children, context):
        if not re.match(r"for\s*\(", self.own(cursor)):
            return
        opening, close = self.parentheses(cursor)
        head = self.file.text(opening + 1, close).split(";")
        if len(head) == 3:
            start = opening + 1 + len(head[0].encode()) + 1
            self.condition(start, start + len(head[1].encode()), context, True)

    def visit_conditional_operator(self, cursor, children, context):
        sign, _, _ = self.between(children[0], children[1])
        if sign == "?":
            self.condition(*self.offsets(children[0]), context, False)

    # Expressions.

    def visit_binary_operator(self, cursor, children, context):
        if len(children) == 2:
            self.binary(cursor, children[0], children[1], context)

    visit_compound_assignment_operator = visit_binary_operator

    def binary(self, cursor, left, right, context):
        sign, at, end = self.between(left, right)
        if sign not in OPERATORS:
            return
        first, last = left.extent.start.offset, right.extent.end.offset
        mutants = []
        for other in OPERATORS[sign]:
            middle = self.file.text(at, end).replace(sign, other, 1)
            text = self.file.text(first, at) + middle + self.file.text(end, last)
            mutants.append((f"{sign} becomes {other}", text))
        self.file.add(first, last, "expression", context, *mutants)

    def visit_unary_operator(self, cursor, children, context):
        text = self.own(cursor)
        start, end = self.offsets(cursor)
        for sign, other in (("++", "--"), ("--", "++")):
            if text.startswith(sign):
                self.file.add(start, end, "expression", context,
                              (f"{sign} becomes {other}", other + text[2:]))
                return
            if text.endswith(sign):
                self.file.add(start, end, "expression", context,
                              (f"{sign} becomes {other}", text[:-2] + other))
                return
        if text[:1] in ("!", "-", "~") and len(text) > 1:
            self.file.add(start, end, "expression", context,
                          (f"{text[0]} is left out", text[1:]))

    def visit_call_expr(self, cursor, children, context):
        name = cursor.spelling
        if name.startswith("operator") and name[8:] in OPERATORS and len(children) == 3:
            self.binary(cursor, children[0], children[-1], context)
        text = self.own(cursor)
        called = re.match(r"[\w:]+", text)
        if called and called.group() in CALLS:
            other = CALLS[called.group()]
            self.file.add(*self.offsets(cursor), "expression", context,
                          (f"{called.group()} becomes {other}", other + text[called.end():]))

    def visit_integer_literal(self, cursor, children, context):
        text = self.own(cursor)
        if LITERAL.match(text):
            self.file.add(*self.offsets(cursor), "expression", context,
                          (f"{text} becomes {text} + 1", f"{text} + 1"))

    visit_floating_literal = visit_integer_literal

    def visit_character_literal(self, cursor, children, context):
        text = self.own(cursor)
        if re.match(r"u?'", text):
            self.file.add(*self.offsets(cursor), "expression", context,
                          (f"{text} becomes {text} + 1", f"decltype({text})({text} + 1)"))

    def visit_cxx_bool_literal_expr(self, cursor, children, context):
        text = self.own(cursor)
        if text in ("true", "false"):
            other = "false" if text == "true" else "true"
            self.file.add(*self.offsets(cursor), "expression", context,
                          (f"{text} becomes {other}", other))

    def visit_string_literal(self, cursor, children, context):
        text = self.own(cursor)
        if re.match(r'u?"', text) and text not in ('""', 'u""'):
            self.file.add(*self.offsets(cursor), "expression", context,
                          ("the text becomes empty", text[:text.index('"')] + '""'))

    def strings(self):
        """Literals within macros and the like, which the syntax tree does not show."""
        for found in STRING.finditer(self.file.data.decode()):
            start = len(self.file.data.decode()[:found.start()].encode())
            end = start + len(found.group().encode())
            inside = [b for b in self.file.bodies if b[0] <= start and end <= b[1]]
            if not inside or inside[-1][2].constexpr:
                continue
            other = "mutant" if not found.group(2) else ""
            self.file.points = {key: point for key, point in self.file.points.items()
                                if not (start < point.start and point.end < end)}
            self.file.add(start, end, "expression", inside[-1][2],
                          ("the text becomes " + (other or "empty"),
                           f'{found.group(1)}("{other}")'))


def arguments(command, root, tree):
    """What libclang has to know of a compilation, with the plain sources before the mutated ones."""
    words, taken = shlex.split(command["command"]), []
    skip = False
    for word in words[1:]:
        if skip:
            skip = False
        elif word in ("-o", "-c", "-MF", "-MT", "-include"):
            skip = word != "-c"
        elif word.startswith(("-I", "-D", "-std", "-U")) or word == "-isystem":
            taken.append(word.replace(str(tree), str(root)))
        elif taken and taken[-1] == "-isystem":
            taken.append(word)
    plain = [f"-I{folder}" for folder in sorted((root / "src").iterdir()) if folder.is_dir()]
    plain += [f"-I{root}/companions/kpbx", f"-I{root}/companions/kpgraphics"]
    # One set of instructions has every line.
    return plain + taken + ["-DHWY_COMPILE_ONLY_STATIC", "-ferror-limit=0"]


def names_in(root):
    return sorted(str(path.relative_to(root)) for top in ("src", "companions")
                  for path in (root / top).rglob("*") if path.suffix in (".cpp", ".h"))


def known(root, tree, commands, memory):
    """What find() gives, from the last time if nothing has changed."""
    digest = hashlib.sha256(Path(__file__).read_bytes())
    for name in names_in(root):
        digest.update(name.encode() + (root / name).read_bytes())
    memory = memory.with_suffix("." + digest.hexdigest()[:16])
    if not memory.exists():
        files = find(root, tree, commands)
        memory.write_bytes(pickle.dumps(files))
    return pickle.loads(memory.read_bytes())


def find(root, tree, commands):
    """All files of the library with their points, by name."""
    names = names_in(root)
    files = {name: File(root / name, name) for name in names}
    compilations = {}
    for command in json.loads(commands.read_text()):
        try:
            name = str(Path(command["file"]).relative_to(tree))
        except ValueError:
            continue
        if name in files:
            compilations[name] = arguments(command, root, tree)
    # One that sees every folder.
    some = compilations["src/outline/kppoint.cpp"]
    done = set()
    for name in [n for n in names if n in compilations] + names:
        if name in done:
            continue
        unit = Index.create().parse(
            str(root / name), args=compilations.get(name, ["-xc++"] + some))
        wrong = [d for d in unit.diagnostics if d.severity >= 3]
        if wrong:
            raise SystemExit(f"{name}: libclang does not understand it: {wrong[0]}")
        found = set()
        for cursor in unit.cursor.get_children():
            if cursor.location.file is None:
                continue
            path = Path(cursor.location.file.name)
            path = path.resolve()
            if root not in path.parents:
                continue
            own = str(path.relative_to(root))
            if own in files and own not in done:
                found.add(own)
                Finder(files[own]).walk(cursor, Context())
        done |= found | {name}
    for file in files.values():
        Finder(file).strings()
    return files
