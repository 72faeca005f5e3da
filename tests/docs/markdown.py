"""Code blocks of the project's Markdown documents, with the comment that stands before them."""

import dataclasses
import re
import textwrap

FENCE = re.compile(r"^( *)```(\S*)\s*$")
MARK = re.compile(r"^\s*<!-- (.+?) -->\s*$")


@dataclasses.dataclass
class Block:
    line: int      # of its first line of code, from 1
    language: str  # of a fence; "" for an indented block
    mark: str      # text of the comment right before the block, "" without
    text: str      # without the indentation that its lines share


def blocks(document):
    """All code blocks of a document, in order. Indented ones are four columns deeper than the text around them."""
    lines = document.splitlines()
    found, mark, depth, at = [], "", 0, 0
    while at < len(lines):
        line = lines[at]
        fence, comment, item = FENCE.match(line), MARK.match(line), re.match(r"^( *)(?:[-*]|\d+\.) +", line)
        indent = len(line) - len(line.lstrip())
        start = at
        if fence:
            at = lines.index(fence[1] + "```", start + 1)
            found.append(Block(start + 2, fence[2], mark, textwrap.dedent("\n".join(lines[start + 1:at]))))
            mark = ""
        elif comment:
            mark = comment[1]
        elif line.strip() and indent >= depth + 4 and not lines[at - 1].strip():
            while at + 1 < len(lines) and (lines[at + 1].startswith(" " * (depth + 4)) or not lines[at + 1].strip()):
                at += 1
            found.append(Block(start + 1, "", mark, textwrap.dedent("\n".join(lines[start:at + 1])).rstrip()))
            mark = ""
        elif item:
            depth, mark = len(item[0]), ""
        elif line.strip():
            depth, mark = min(depth, indent), ""
        at += 1
    return found
