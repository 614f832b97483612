"""Files that get their name only when they are whole."""

from __future__ import annotations

import contextlib
import os
import tempfile
from typing import IO, Iterator, Union

Path = Union[str, "os.PathLike[str]"]


def make_part(path: Path) -> str:
    """An empty file in the folder of `path`, with the rights that a new file gets. Gives its name."""
    folder, name = os.path.split(os.path.abspath(path))
    descriptor, part = tempfile.mkstemp(prefix=f".{name}.", suffix=".part", dir=folder)
    os.close(descriptor)
    umask = os.umask(0)
    os.umask(umask)
    os.chmod(part, 0o666 & ~umask)
    return part


@contextlib.contextmanager
def written(path: Path) -> Iterator[IO[bytes]]:
    """A binary file to write to. Where the block ends in an exception, nothing is left of it, and a file of that
    name stays as it was. What is no regular file, such as /dev/stdout, is written to at once."""
    path = os.fspath(path)
    if os.path.exists(path) and not os.path.isfile(path):
        with open(path, "wb") as file:
            yield file
        return
    part = make_part(path)
    try:
        with open(part, "wb") as file:
            yield file
        os.replace(part, path)
    except BaseException:
        with contextlib.suppress(FileNotFoundError):
            os.unlink(part)
        raise
