"""What a program's --help says, taken apart: for the manual pages and the completion, which are made of it."""

import os
import re


class Item:
    """Lines such as "  --port PORT  text"; several terms may share one text."""

    def __init__(self, terms, text=""):
        self.terms = terms
        self.text = text


class Block:
    """What stands between two empty lines, or below a heading: words or items, in their order."""

    def __init__(self, heading=""):
        self.heading = heading
        self.parts = []  # str is a paragraph, Item an indented line


class HelpText:
    def __init__(self, text):
        first, *lines = text.rstrip().splitlines()
        match = re.fullmatch(r"Usage: (\S+)(.*)", first)
        if not match:
            raise ValueError(f'no help text, for it begins with "{first}"')
        self.program = os.path.basename(match[1])
        self.usage = match[2].strip()
        self.blocks = [Block()]
        for line in lines:
            self._add(line)
        self.blocks = [block for block in self.blocks if block.parts]

    def _add(self, line):
        block = self.blocks[-1]
        indented = re.match(r" *", line).end()
        if not line:
            self.blocks.append(Block())
        elif indented == 0:
            if re.fullmatch(r"[A-Z]\w*:", line):
                self.blocks.append(Block(line[:-1]))
            elif block.parts and isinstance(block.parts[-1], str):
                block.parts[-1] += " " + line
            else:
                block.parts.append(line)
        elif indented > 4 and block.parts and isinstance(block.parts[-1], Item):
            block.parts[-1].text = (block.parts[-1].text + " " + line.strip()).strip()
        else:
            term, _, text = line.strip().partition("  ")
            last = block.parts[-1] if block.parts else None
            if isinstance(last, Item) and not last.text and not text:
                last.terms.append(term)  # a text below is for all of them
            else:
                block.parts.append(Item([term], text.strip()))

    def items(self):
        return [part for block in self.blocks for part in block.parts if isinstance(part, Item)]

    def options(self):
        """(names, value) of each option; the value is "" where it takes none."""
        for item in self.items():
            for term in item.terms:
                names = re.findall(r"(?:^|, )(-[-\w]+)", term)
                if names:
                    value = re.search(r" <?([^<>]+?)>?$", term.rsplit(", ", 1)[-1])
                    yield names, value[1] if value else ""

    def commands(self):
        """The words of each command, such as ["profiles", "show", "NAME"]; of its options the list of options tells."""
        for block in self.blocks:
            if block.heading == "Commands":
                for item in block.parts:
                    for term in item.terms:
                        yield re.sub(r"\[-[^]]*\]", "", term).split()
