#!/usr/bin/env python3
"""check_links.py SITE PAGE.md...: checks that the target of every link and picture exists, headings included, in the
pages and in the generated site in the folder SITE.

A page may link to any file of the project, for example a source. Such a file is copied into the site, and the link in
the site is changed to the copy. Links to other hosts are not checked.
"""
import html.parser
import os
import re
import shutil
import sys
import urllib.parse


def is_elsewhere(target):
    return bool(urllib.parse.urlsplit(target).scheme or target.startswith("//"))


def split(target):
    path, _, fragment = target.partition("#")
    return urllib.parse.unquote(path), urllib.parse.unquote(fragment)


def prose(page):
    """The text of a page without its code."""
    with open(page, encoding="utf-8") as file:
        text = re.sub(r"^```.*?^```", "", file.read(), flags=re.M | re.S)
    return re.sub(r"`[^`\n]*`", "", text), text


def headings(page):
    found = re.findall(r"^#+ +(.*?) *$", prose(page)[1], re.M)
    return {re.sub(r"[^\w -]", "", heading.lower()).replace(" ", "-") for heading in found}


def check_page(page):
    for target in re.findall(r"\]\(([^)\s]+)\)", prose(page)[0]):
        if is_elsewhere(target):
            continue
        path, fragment = split(target)
        file = os.path.join(os.path.dirname(page), path) if path else page
        if not os.path.exists(file):
            yield f"{page}: there is no {target}"
        elif fragment and fragment not in headings(file):
            yield f"{page}: {path or 'it'} has no heading {fragment}"


class Anchors(html.parser.HTMLParser):
    def __init__(self, file):
        super().__init__()
        self.targets, self.names = set(), set()
        with open(file, encoding="utf-8") as text:
            self.feed(text.read())

    def handle_starttag(self, tag, attrs):
        for name, value in attrs:
            if name in ("href", "src", "data") and value:
                self.targets.add(value)
            elif name in ("id", "name"):
                self.names.add(value)


def source_of(path, folders):
    for folder in folders:
        file = os.path.normpath(os.path.join(folder, path))
        if not file.startswith("..") and os.path.isfile(file):
            return file
    return None


def check_site(site, folders):
    documents = {
        os.path.relpath(os.path.join(folder, name), site): None
        for folder, _, names in os.walk(site) for name in names if name.endswith(".html")
    }
    if "index.html" not in documents:
        yield f"{site}: there is no site"
    for document in documents:
        documents[document] = Anchors(os.path.join(site, document))
    for document, anchors in sorted(documents.items()):
        copied = {}
        for target in sorted(anchors.targets):
            if is_elsewhere(target) or target == "#":
                continue
            path, fragment = split(target)
            file = os.path.normpath(os.path.join(os.path.dirname(document), path)) if path else document
            if os.path.exists(os.path.join(site, file)):
                if fragment and file in documents and fragment not in documents[file].names:
                    yield f"{site}/{document}: {file} has no {fragment}"
            elif source := source_of(path, folders):
                copied[target] = os.path.join("files", source)
            else:
                yield f"{site}/{document}: there is no {target}"
        if copied:
            copy_into_site(site, document, copied)


def copy_into_site(site, document, copied):
    name = os.path.join(site, document)
    with open(name, encoding="utf-8") as file:
        text = file.read()
    for target, file in copied.items():
        os.makedirs(os.path.join(site, os.path.dirname(file)), exist_ok=True)
        shutil.copyfile(os.path.relpath(file, "files"), os.path.join(site, file))
        text = text.replace(f'"{target}"', f'"{os.path.relpath(file, os.path.dirname(document) or ".")}"')
    with open(name, "w", encoding="utf-8") as file:
        file.write(text)


def main():
    if len(sys.argv) < 3:
        sys.exit("usage: tools/check_links.py SITE PAGE.md...")
    site, pages = sys.argv[1], sys.argv[2:]
    faults = [fault for page in pages for fault in check_page(page)]
    faults += check_site(site, sorted({os.path.dirname(page) or "." for page in pages}))
    print("\n".join(faults), end="\n" if faults else "", file=sys.stderr)
    sys.exit(1 if faults else 0)


main()
