"""What the generators hand to tools/hostile-checks."""

import dataclasses

MEBIBYTE = 1 << 20


@dataclasses.dataclass
class Case:
    """Files of one directory; `main` is the one that the programs are called with."""
    name: str
    main: str
    files: dict  # name -> bytes
    limits: str = 'file'  # which bounds of tools/hostile-checks hold


def fill(unit, before=b'', after=b'', size=MEBIBYTE):
    """`before`, as many units as fit into `size` bytes, and `after`. `unit` is bytes or a function of a number."""
    parts = [before]
    left = size - len(before) - len(after)
    if isinstance(unit, bytes):
        parts.append(unit * (left // len(unit)))
    else:
        number = 0
        while left > 0:
            part = unit(number)
            number += 1
            left -= len(part)
            if left >= 0:
                parts.append(part)
    parts.append(after)
    return b''.join(parts)


def damage(content, random):
    """Flipped bits, a truncation, or a piece of the content copied over another."""
    if not content:
        return content
    changed = bytearray(content)
    kind = random.randrange(3)
    if kind == 0:
        for _ in range(random.choice((1, 4, 64))):
            changed[random.randrange(len(changed))] ^= 1 << random.randrange(8)
    elif kind == 1:
        del changed[random.randrange(len(changed)):]
    else:
        length = random.randrange(1, min(4096, len(changed)) + 1)
        source = random.randrange(len(changed) - length + 1)
        target = random.randrange(len(changed) - length + 1)
        changed[target:target + length] = content[source:source + length]
    return bytes(changed)
