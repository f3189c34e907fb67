"""Writes sources that contain every mutant and select the active one at run time."""
import re

from places import read


class Mutant:
    def __init__(self, source, place, kind, changed):
        self.source, self.kind, self.text, self.comparable = source, kind, changed.text, changed.comparable
        at = place[0] if changed.at is None else changed.at
        self.line = source.text.count("\n", 0, at) + 1
        self.before = source.text[place[0]:place[1]] if changed.before is None else changed.before
        self.after = changed.text if changed.after is None else changed.after
        self.number = None

    def __str__(self):
        change = [re.sub(r"\s+", " ", text) for text in (self.before, self.after)]
        return f"{self.source.name}:{self.line}: {self.kind}: {change[0]}  ->  {change[1]}".rstrip()


class Source:
    """A file and the mutants of each of its places. A place is (start, end, shape, guard), see places.Finder.add."""

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
                            key=lambda place: (place[0], -place[1], place[2] == "expression"))
        self.out, self.length, self.written = [], 0, []
        self.put_range(0, len(self.text), 0)
        self.path.write_bytes("".join(self.out).encode("latin-1"))

    def put(self, text):
        self.out.append(text)
        self.length += len(text)

    def put_range(self, at, end, index):
        while index < len(self.order) and self.order[index][0] < end:
            place = self.order[index]
            if place[0] < at:           # overlaps the previous place
                self.places[place] = []
                index += 1
                continue
            self.put(self.text[at:place[0]])
            index = self.put_place(place, index)
            at = place[1]
        self.put(self.text[at:end])
        return index

    def put_place(self, place, index):
        start, end, shape, guard = place
        if_active, otherwise, close, inner_close = {
            "statement": ("{{ if ({}) {{ {} }} else ", "{ ", " }", " }"),
            "expression": ("({} ? {} : ", "(", ")", ")"),
            "condition": ("({} ? {} : ", "static_cast<bool>(", ")", ")"),
        }[shape]
        begin = self.length
        for mutant in self.places[place]:
            chosen = self.length
            self.put(if_active.format(self.choice(mutant, place), mutant.text))
            self.written.append((chosen, self.length, [mutant]))
        self.put(otherwise)
        index = self.put_range(start, end, index + 1)
        self.put(inner_close + close * len(self.places[place]))
        self.written.append((begin, self.length, self.places[place]))
        return index

    def choice(self, mutant, place):
        """The condition that selects a mutant. When reached mutants are recorded, it also tells, where possible,
        whether the mutant has another value than the original text."""
        start, end, _, guard = place
        if not mutant.comparable or guard != "mutant":
            return f"mutation::{guard}({mutant.number})"
        return (f"mutation::mutant({mutant.number}, mutation::records() && "
                f"static_cast<bool>({self.text[start:end]}) != static_cast<bool>({mutant.text}))"
                if place[2] == "condition" else
                f"mutation::mutant({mutant.number}, mutation::records() && ({self.text[start:end]}) != ({mutant.text}))")

    def drop(self, offset):
        """Drops the innermost mutants at the offset of a compile error; false if there are none."""
        around = [(end - start, mutants) for start, end, mutants in self.written if start <= offset <= end]
        dropped = list(min(around, key=lambda found: found[0], default=(0, []))[1])
        for place, mutants in self.places.items():
            self.places[place] = [mutant for mutant in mutants if mutant not in dropped]
        return bool(dropped)
