"""Writes sources that contain every mutant and select the active one at run time."""
import re

from places import read


NOTHING = "(nothing)"
SHORT = 20      # characters of code that do not tell their place


def shortened(text):
    """Text on one line, of moderate length."""
    text = re.sub(r"\s+", " ", text).encode("latin-1").decode()
    return text if len(text) <= 90 else f"{text[:60]} ... {text[-25:]}"


class Mutant:
    def __init__(self, source, place, kind, changed):
        self.source, self.kind, self.text, self.comparable = source, kind, changed.text, changed.comparable
        at = place.start if changed.at is None else changed.at
        self.line = source.text.count("\n", 0, at) + 1
        before = source.text[place.start:place.end] if changed.before is None else changed.before
        after = changed.text if changed.after is None else changed.after
        before, after = shortened(before), shortened(after)
        line = source.text[source.text.rfind("\n", 0, at) + 1:].split("\n")[0].split("  //")[0]
        where = f"  in  {shortened(line).strip()}" if 0 < len(before) <= SHORT else ""
        # Has no number of a line, so that it stays the same when lines are added.
        self.name = f"{source.name}: {place.around}: {kind}: {before or NOTHING}  ->  {after or NOTHING}{where}"
        self.number = None

    def __str__(self):
        return f"{self.name}    MUTANT={self.number}, line {self.line}"


class Source:
    """A file and the mutants of each of its places."""

    def __init__(self, path, name):
        self.path, self.name, self.text = path, name, read(path)
        self.places = {}
        self.written = []       # the ranges of the mutants in the written file: (start, end, mutants)

    def add(self, place, kind, changed):
        mutants = self.places.setdefault(place, [])
        if all(mutant.text != changed.text for mutant in mutants):
            mutants.append(Mutant(self, place, kind, changed))

    def mutants(self):
        return [mutant for place in sorted(self.places) for mutant in self.places[place]]

    def write(self):
        """Replaces each place by a choice between its mutants and the original text, in which places can be nested."""
        self.order = sorted((place for place in self.places if self.places[place]),
                            key=lambda place: (place.start, -place.end, place.shape == "expression"))
        self.out, self.length, self.written = [], 0, []
        self.put_range(0, len(self.text), 0)
        self.path.write_bytes("".join(self.out).encode("latin-1"))

    def put(self, text):
        self.out.append(text)
        self.length += len(text)

    def put_range(self, at, end, index):
        while index < len(self.order) and self.order[index].start < end:
            place = self.order[index]
            if place.start < at:           # overlaps the previous place
                self.places[place] = []
                index += 1
                continue
            self.put(self.text[at:place.start])
            index = self.put_place(place, index)
            at = place.end
        self.put(self.text[at:end])
        return index

    def put_place(self, place, index):
        if_active, otherwise, close, inner_close = {
            "statement": ("{{ if ({}) {{ {} }} else ", "{ ", " }", " }"),
            "expression": ("({} ? {} : ", "(", ")", ")"),
            "condition": ("({} ? {} : ", "static_cast<bool>(", ")", ")"),
        }[place.shape]
        begin = self.length
        for mutant in self.places[place]:
            chosen = self.length
            self.put(if_active.format(self.choice(mutant, place), mutant.text))
            self.written.append((chosen, self.length, [mutant]))
        self.put(otherwise)
        index = self.put_range(place.start, place.end, index + 1)
        self.put(inner_close + close * len(self.places[place]))
        self.written.append((begin, self.length, self.places[place]))
        return index

    def choice(self, mutant, place):
        """The condition that selects a mutant. When reached mutants are recorded, it also tells, where possible,
        whether the mutant has another value than the original text."""
        if not mutant.comparable or place.guard != "mutant":
            return f"mutation::{place.guard}({mutant.number})"
        original = self.text[place.start:place.end]
        differs = (f"static_cast<bool>({original}) != static_cast<bool>({mutant.text})"
                   if place.shape == "condition" else f"({original}) != ({mutant.text})")
        return f"mutation::mutant({mutant.number}, mutation::records() && {differs})"

    def drop(self, offset):
        """Drops the innermost mutants at the offset of a compile error; false if there are none."""
        around = [(end - start, mutants) for start, end, mutants in self.written if start <= offset <= end]
        dropped = list(min(around, key=lambda found: found[0], default=(0, []))[1])
        self.leave_out(dropped)
        return bool(dropped)

    def leave_out(self, left_out):
        for place, mutants in self.places.items():
            self.places[place] = [mutant for mutant in mutants if mutant not in left_out]
