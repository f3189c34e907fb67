"""Finds the places in C++ sources that can be mutated, with libclang."""
import pathlib
import re
import typing

from clang import cindex
from clang.cindex import CursorKind as Kind

OPERATORS = {
    "==": ["!="], "!=": ["=="], "<": ["<=", ">="], ">": [">=", "<="], "<=": ["<", ">"], ">=": [">", "<"],
    "+": ["-"], "-": ["+"], "*": ["/"], "/": ["*"],
    "%": ["/"], "&": ["|"], "|": ["&"], "^": ["|"], "<<": [">>"], ">>": ["<<"],
    "+=": ["-="], "-=": ["+="], "*=": ["/="], "/=": ["*="], "&=": ["|="], "|=": ["&="], "<<=": [">>="], ">>=": ["<<="],
}
COMPARISONS = {"==", "!=", "<", ">", "<=", ">="}
FUNCTIONS = {Kind.FUNCTION_DECL, Kind.CXX_METHOD, Kind.CONSTRUCTOR, Kind.DESTRUCTOR, Kind.CONVERSION_FUNCTION,
             Kind.FUNCTION_TEMPLATE}
CLASSES = {Kind.CLASS_DECL, Kind.STRUCT_DECL, Kind.CLASS_TEMPLATE, Kind.CLASS_TEMPLATE_PARTIAL_SPECIALIZATION}
NAMED = FUNCTIONS | CLASSES
LOOPS = {Kind.WHILE_STMT, Kind.DO_STMT, Kind.FOR_STMT, Kind.CXX_FOR_RANGE_STMT}
BRANCHES = LOOPS | {Kind.IF_STMT, Kind.SWITCH_STMT}
EXITS = {Kind.RETURN_STMT, Kind.BREAK_STMT, Kind.CONTINUE_STMT, Kind.CXX_THROW_EXPR}
EVALUATED_BY_COMPILER = {Kind.STATIC_ASSERT, Kind.CXX_UNARY_EXPR, Kind.ENUM_CONSTANT_DECL, Kind.PARM_DECL,
                         Kind.TEMPLATE_NON_TYPE_PARAMETER, Kind.ALIGNED_ATTR}
HARMLESS = {Kind.DECL_REF_EXPR, Kind.MEMBER_REF_EXPR, Kind.UNEXPOSED_EXPR, Kind.PAREN_EXPR, Kind.INTEGER_LITERAL,
            Kind.CHARACTER_LITERAL, Kind.CXX_BOOL_LITERAL_EXPR, Kind.CXX_NULL_PTR_LITERAL_EXPR, Kind.CXX_THIS_EXPR,
            Kind.ARRAY_SUBSCRIPT_EXPR, Kind.CXX_STATIC_CAST_EXPR}
LITERALS = {Kind.INTEGER_LITERAL, Kind.CHARACTER_LITERAL}
NUMBER = re.compile(r"\d[\da-fA-FxX']*[uUlLzZ]*|u?8?U?L?'.*'", re.DOTALL)


def read(path):
    """The text of a file with one character for each byte, so that clang's offsets apply."""
    return pathlib.Path(path).read_bytes().decode("latin-1")


def parse(path, arguments):
    return cindex.Index.create().parse(str(path), [*arguments, "-ferror-limit=0", "-w", "-Wno-c++11-narrowing"])


def find(path, arguments, wanted):
    """The mutants in those files of `wanted` that a translation unit includes: (file, place, kind, change)."""
    finders = {}
    for cursor in parse(path, arguments).cursor.get_children():
        name = cursor.location.file.name if cursor.location.file else None
        if name in wanted:
            finders.setdefault(name, Finder(read(name))).visit(cursor, None)
    return {(name, *found) for name, finder in finders.items() for found in finder.found}


def errors(path, arguments, wanted):
    """The errors of a translation unit: (message, [(file, offset)...]), with the place of the error first."""
    found = []
    for error in parse(path, arguments).diagnostics:
        if error.severity >= cindex.Diagnostic.Error:
            places = [part.location for part in [error, *error.children] if part.location.file]
            around = [(place.file.name, place.offset) for place in places if place.file.name in wanted]
            found.append((str(error), around))
    return found


class Place(typing.NamedTuple):
    start: int
    end: int
    shape: str      # expression, condition or statement
    guard: str      # see Finder
    around: str     # the name of the function or class around it


class Changed(typing.NamedTuple):
    """The new text of a place. `at`, `before` and `after` are what the report shows, if that is something else.
    `comparable`: both texts can be evaluated and compared without an effect."""
    text: str
    at: int = None
    before: str = None
    after: str = None
    comparable: bool = False


def as_bool(text, comparable=False):
    return Changed(f"static_cast<bool>({text})", after=text, comparable=comparable)


def start(cursor):
    return cursor.extent.start.offset


def end(cursor):
    return cursor.extent.end.offset


class Finder:
    """Finds the places of one file. `guard` is the name of the function that tells at run time whether a mutant is
    active; None outside of functions, in code that the compiler evaluates."""

    def __init__(self, text):
        self.text = text
        self.around = ""            # the name of the function or class around the current place
        self.found = set()
        self.fixed = set()          # where the constants begin that are not changed by themselves
        self.conditions = set()     # where the conditions of branches begin

    def of(self, cursor):
        return self.text[start(cursor):end(cursor)]

    def before(self, cursor):
        return self.text[:start(cursor)].rstrip()

    def after(self, cursor):
        return self.text[end(cursor):].lstrip()

    def add(self, guard, first, last, shape, kind, *replacements):
        """Adds replacements for the range from `first` to `last`; its shape is expression, condition or statement."""
        if guard and first <= last and "\n#" not in self.text[first:last]:
            changes = [each if isinstance(each, Changed) else Changed(each) for each in replacements]
            place = Place(first, last, shape, guard, self.around)
            self.found.update((place, kind, change) for change in changes)

    def visit(self, cursor, guard):
        kind = cursor.kind
        if kind in EVALUATED_BY_COMPILER or kind == Kind.VAR_DECL and self.is_constant(cursor, guard):
            return
        children = [child for child in cursor.get_children() if not self.is_part_of_type(child, cursor)]
        outside = self.around
        if kind in NAMED and cursor.spelling:
            self.around = qualified_name(cursor)
        if kind in FUNCTIONS:
            guard = self.function(cursor, children)
        elif kind == Kind.FIELD_DECL:
            guard = "constexpr_mutant"
        elif kind == Kind.COMPOUND_STMT:
            self.order(children, guard)
        if kind.is_expression():
            self.expression(cursor, children, guard)
        self.condition(cursor, children, guard)
        self.dropped(cursor, children, guard)
        for child in children:
            self.visit(child, guard)
        self.around = outside

    def is_part_of_type(self, cursor, parent):
        """Whether the cursor is a template argument or the size of an array."""
        around = self.text[start(cursor) - 1:start(cursor)] + self.text[end(cursor):end(cursor) + 1]
        return cursor.kind.is_expression() and ("<" in around or ">" in around or
                                                around == "[]" and parent.kind in (Kind.VAR_DECL, Kind.FIELD_DECL))

    def is_constant(self, variable, guard):
        return not guard or re.search(r"\bconst(expr|init)\b", self.of(variable).split("=")[0])

    def function(self, cursor, children):
        if not children or children[-1].kind != Kind.COMPOUND_STMT or self.text[start(children[-1])] != "{":
            return None
        body = children[-1]
        head = self.text[start(cursor):start(body)]
        guard = "constexpr_mutant" if re.search(r"\bconstexpr\b", head) else "mutant"
        result = cursor.result_type.spelling
        statements = list(body.get_children())
        if result in ("", "void"):
            early = ["return;"] if len(statements) > 1 else []
        elif result == "bool":
            early = ["return true;", "return false;"]
        else:
            early = [] if result.endswith("&") or "auto" in result else ["return {};"]
            if statements and self.statement(statements[0]) in ("return 0;", "return nullptr;", "return std::nullopt;"):
                early = []
        if statements:
            early = [text for text in early if text != self.statement(statements[0])]
            self.add(guard, start(body) + 1, start(body) + 1, "statement", "return", *early)
        return guard

    def expression(self, cursor, children, guard):
        text = self.of(cursor)
        add = lambda kind, *replacements: self.add(guard, start(cursor), end(cursor), "expression", kind, *replacements)
        if cursor.kind in LITERALS and NUMBER.fullmatch(text) and start(cursor) not in self.fixed:
            add("constant", Changed(f"mutation::next({text})", after=f"{text} + 1"))
        elif text in ("true", "false") and cursor.kind == Kind.CXX_BOOL_LITERAL_EXPR:
            add("constant", "false" if text == "true" else "true")
        elif cursor.kind == Kind.UNARY_OPERATOR and children:
            self.unary(cursor, children[0], add)
        operator, left, right = self.binary(cursor, children)
        if operator is None:
            return
        comparable = has_no_effect(cursor)
        if operator in ("&&", "||"):
            comparable = comparable and not re.search(r"[*\[]|->|\b(front|back)\b", text)  # one side may guard the other
            add("condition", as_bool(left, comparable), as_bool(right, comparable))
        for other in self.other_operators(cursor, operator):
            add("operator", Changed(f"({left}) {other} ({right})", after=f"{left} {other} {right}",
                                    comparable=comparable and other not in ("/", "%")))
        if operator in COMPARISONS and children[-1].kind in LITERALS and NUMBER.fullmatch(right):
            self.fixed.add(start(children[-1]))
            if operator not in ("<", ">="):     # x < 1 + 1 is x <= 1
                add("constant", Changed(f"({left}) {operator} mutation::next({right})",
                                        after=f"{left} {operator} {right} + 1", comparable=comparable))

    def other_operators(self, cursor, operator):
        """The operators to use instead; the last one for a comparison is its opposite, see condition()."""
        others = OPERATORS.get(operator, [])
        return others[:-1] if operator in COMPARISONS and start(cursor) in self.conditions else others

    def unary(self, cursor, operand, add):
        prefix = self.text[start(cursor):start(operand)].strip()
        postfix = self.text[end(operand):end(cursor)].strip()
        if prefix == "!":
            add("operator", as_bool(self.of(operand)))
        elif prefix in ("-", "~"):
            add("operator", self.of(operand))
            self.fixed.add(start(operand))       # most callers only ask whether -1 is negative
        elif prefix in ("++", "--") or postfix in ("++", "--"):
            add("operator", self.of(cursor).replace(prefix or postfix, "--" if (prefix or postfix) == "++" else "++"))

    def binary(self, cursor, children):
        """The operator and its operands; none for an overloaded operator, which is a call."""
        if len(children) > 1 and start(children[0]) == start(cursor) and end(children[-1]) == end(cursor):
            operator = self.text[end(children[0]):start(children[-1])].strip()
            if operator in OPERATORS:
                return operator, self.of(children[0]), self.of(children[-1])
        return None, None, None

    def condition(self, cursor, children, guard):
        """A branch: always, never. A loop: never. Not made are changes that a test can hardly miss when it detects
        another one: the opposite of a condition; `true` for `a && b`, which is also changed to `a` and to `b`."""
        ends = {Kind.IF_STMT: ")", Kind.WHILE_STMT: ")", Kind.DO_STMT: ")", Kind.FOR_STMT: ";",
                Kind.CONDITIONAL_OPERATOR: "?"}.get(cursor.kind)
        if not ends or re.match(r"if\s+constexpr", self.of(cursor)):
            return
        asked = [child for child in children if child.kind.is_expression() and self.after(child).startswith(ends)][:1]
        for child in asked:
            if self.of(child) in ("true", "false") or cursor.kind == Kind.FOR_STMT and self.before(child)[-1] != ";":
                continue
            operator = self.binary(child, list(child.get_children()))[0]
            constants = {"&&": ["false"], "||": ["true"]}.get(operator, ["true", "false"])
            if cursor.kind in LOOPS:
                constants = ["false"]
            elif operator in COMPARISONS:
                self.conditions.add(start(child))
            self.add(guard, start(child), end(child), "condition", "condition",
                     *(Changed(text, comparable=has_no_effect(child)) for text in constants))

    def dropped(self, parent, children, guard):
        """Statements that can be dropped: calls, assignments, jumps."""
        if parent.kind in LOOPS:
            children = children[:1] if parent.kind == Kind.DO_STMT else children[-1:]
        elif parent.kind not in (Kind.COMPOUND_STMT, Kind.IF_STMT, Kind.CASE_STMT, Kind.DEFAULT_STMT):
            return
        for child in children:
            is_jump = child.kind in (Kind.BREAK_STMT, Kind.CONTINUE_STMT) or self.statement(child) == "return;"
            stands_alone = self.after(child).startswith(";") and \
                self.before(child).endswith((")", "{", "}", ";", ":", "else", "do"))
            # A throw is kept: without it a function could end without a value, which the compiler assumes to be
            # impossible.
            is_droppable = is_jump or child.kind.is_expression() and not self.of(child).startswith("throw")
            if stands_alone and is_droppable:
                self.add(guard, start(child), self.end_of_statement(child), "statement", "statement", "")

    def end_of_statement(self, cursor):
        rest = self.text[end(cursor):]
        return end(cursor) + len(rest) - len(rest.lstrip()) + 1 if rest.lstrip().startswith(";") else end(cursor)

    def statement(self, cursor):
        return self.text[start(cursor):self.end_of_statement(cursor)]

    def order(self, statements, guard):
        """Adjacent statements whose order may matter."""
        runs = [[]]
        for cursor in statements:
            if cursor.kind in BRANCHES or cursor.kind.is_expression() and cursor.kind != Kind.CXX_THROW_EXPR:
                runs[-1].append(cursor)
            else:
                runs.append([])
        for run in runs:
            texts = [self.statement(cursor) for cursor in run]
            for at in range(len(run) - 1):
                if self.depend(run[at], run[at + 1]):
                    swapped = [*texts[:at], texts[at + 1], texts[at], *texts[at + 2:]]
                    self.add(guard, start(run[0]), self.end_of_statement(run[-1]), "statement", "order",
                             Changed("\n".join(swapped), start(run[at]), " ".join(texts[at:at + 2]),
                                     " ".join(reversed(texts[at:at + 2]))))

    def depend(self, one, other):
        """Whether one of two statements may change a variable that the other uses, or may leave the block."""
        (used, changed, leaves), (used2, changed2, leaves2) = self.uses(one), self.uses(other)
        return leaves or leaves2 or overlap(changed, used2) or overlap(used, changed2)

    def uses(self, statement):
        """The source text of the variables that a statement uses, of those that it may change, and whether it may leave
        the block."""
        used, changed, leaves, open_ = set(), set(), False, [(statement, None)]
        while open_:
            cursor, parent = open_.pop()
            leaves |= cursor.kind in EXITS
            children = list(cursor.get_children())
            name, target = None, cursor.referenced
            if cursor.kind in (Kind.MEMBER_REF_EXPR, Kind.DECL_REF_EXPR) and target is not None:
                if cursor.kind == Kind.MEMBER_REF_EXPR and not children:
                    name = "this" if target.kind == Kind.CXX_METHOD else "this." + cursor.spelling
                elif target.kind in (Kind.VAR_DECL, Kind.PARM_DECL, Kind.FIELD_DECL) and not is_constant(target.type):
                    name, children = self.of(cursor).replace("->", "."), []
            if name is not None:
                used.add(name)
                if may_change(cursor, parent):
                    changed.add(name)
            open_ += [(child, cursor) for child in children]
        return used, changed, leaves


def qualified_name(cursor):
    """The name of a function or class, with that of the class around it."""
    parent = cursor.semantic_parent
    name = cursor.spelling.split("<")[0]
    return f"{parent.spelling}::{name}" if parent is not None and parent.kind in CLASSES and parent.spelling else name


def overlap(names, others):
    """Whether one of the variables is, or is a part of, one of the others, or the reverse."""
    return any((name + ".").startswith(other + ".") or (other + ".").startswith(name + ".")
               for name in names for other in others)


def may_change(reference, parent):
    """Whether a variable may be changed where it is used. Reading its value is an implicit cast."""
    if reference.referenced.kind == Kind.CXX_METHOD:
        return not reference.referenced.is_const_method()
    if reference.type.kind == cindex.TypeKind.POINTER:
        return True
    if parent is not None and parent.kind == Kind.MEMBER_REF_EXPR and parent.referenced is not None and \
            parent.referenced.kind == Kind.CXX_METHOD:
        return not parent.referenced.is_const_method()
    return parent is None or parent.kind != Kind.UNEXPOSED_EXPR


def has_no_effect(expression):
    """Whether evaluating an expression once more changes nothing: it calls only constant member functions."""
    children = list(expression.get_children())
    if expression.kind == Kind.CALL_EXPR:
        called = expression.referenced
        if called is None or not called.is_const_method():
            return False
    elif expression.kind in (Kind.UNARY_OPERATOR, Kind.BINARY_OPERATOR):
        if any(token.spelling in ("++", "--", "=") for token in expression.get_tokens()):
            return False
    elif expression.kind not in HARMLESS:
        return False
    return all(has_no_effect(child) for child in children if child.kind.is_expression())


def is_constant(variable):
    target = variable.get_pointee()
    return (variable if target.kind == cindex.TypeKind.INVALID else target).is_const_qualified()
