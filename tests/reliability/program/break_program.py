#!/usr/bin/env python3
"""break_program.py DBENTRY SAMPLE_FOLDER [--kills N] [--files N]: nothing breaks dbentry.

Kills imports at N (200) moments: the old archive or the new one is there, never half. Fills disks, hands it folders
and files that cannot be read, closes its pipes, and imports N (10000) CIF files with damage: a message that names the
file, the right exit code, and never a signal or "terminate called". Prints what was done; exit code 1 at a finding.
"""
import argparse
import pathlib
import random
import resource
import subprocess
import sys
import tempfile
import time

TIME_LIMIT = 60  # seconds for any run


class Finding(Exception):
    pass


def require(holds, what):
    if not holds:
        raise Finding(what)


class Dbentry:
    def __init__(self, program):
        self.program = program

    def run(self, *arguments, limit=None, **options):
        """Runs the program. No end but an exit code, and no message of the language's own run time, is right."""
        command = [self.program, *map(str, arguments)]
        options.setdefault("stdout", subprocess.PIPE)
        done = subprocess.run(command, stderr=subprocess.PIPE, timeout=TIME_LIMIT, preexec_fn=limit, **options)
        messages = done.stderr.decode(errors="replace")
        require(done.returncode >= 0, f"{command}: ended by signal {-done.returncode}")
        require("terminate called" not in messages, f"{command}: {messages}")
        return done.returncode, messages


def samples(folder):
    found = [path.read_bytes() for path in sorted(folder.rglob("*.cif"))]
    require(found, f"{folder} holds no .cif file")
    return found


def filled(folder, contents):
    folder.mkdir()
    for index, content in enumerate(contents):
        (folder / f"{index:05}.cif").write_bytes(content)
    return folder


def kill(dbentry, folder, contents, kills, choose):
    sources = filled(folder / "sources", (contents * 1000)[:1000])
    old, new, target = folder / "old", folder / "new", folder / "target"
    dbentry.run("import", sources / "00000.cif", "-o", old)
    start = time.monotonic()
    dbentry.run("import", sources, "-o", new)
    whole = time.monotonic() - start
    ends = {old.read_bytes(): 0, new.read_bytes(): 0}
    require(len(ends) == 2, "the old and the new archive are the same")
    for _ in range(kills):
        target.write_bytes(old.read_bytes())
        run = subprocess.Popen([dbentry.program, "import", sources, "-o", target], stdout=subprocess.DEVNULL,
                               stderr=subprocess.DEVNULL)
        time.sleep(choose.uniform(0, 1.1 * whole))
        run.kill()
        run.wait()
        require(target.read_bytes() in ends, "an import that was killed left something else than the old or new file")
        ends[target.read_bytes()] += 1
        for left in folder.glob(".dbentry-*"):
            left.unlink()
    return f"{kills} kills of an import of {whole:.2f} s: {list(ends.values())[0]} old archives, {list(ends.values())[1]} new"


def refuse_bad_files(dbentry, folder, contents):
    source = filled(folder / "one", contents[:1]) / "00000.cif"
    archive = folder / "archive"
    dbentry.run("import", source, "-o", archive)
    before = archive.read_bytes()

    def tiny_files():
        resource.setrlimit(resource.RLIMIT_FSIZE, (100, 100))

    cases = [
        ("a full disk", 4, ["import", source, "-o", "/dev/full"], {}),
        ("a full disk for the output", 4, ["list", archive], {"stdout": open("/dev/full", "wb")}),
        ("a file that may not grow", 4, ["import", source, "-o", archive], {"limit": tiny_files}),
        ("a folder as the target", 4, ["import", source, "-o", folder], {}),
        ("a folder as an archive", 4, ["list", folder], {}),
        ("a folder without CIF files", 4, ["import", filled(folder / "empty", []), "-o", archive], {}),
        ("a missing file", 4, ["import", folder / "nothing.cif", "-o", archive], {}),
        ("a missing archive", 4, ["show", folder / "nothing"], {}),
        ("a file that cannot be read", 4, ["list", "/proc/self/mem"], {}),
        ("a CIF file that cannot be read", 1, ["import", "/proc/self/mem", "-o", archive], {}),
        ("a CIF file as an archive", 4, ["verify", source], {}),
    ]
    for name, expected, arguments, options in cases:
        code, messages = dbentry.run(*arguments, **options)
        require(code == expected, f"{name}: exit code {code}, not {expected}: {messages}")
        require(messages.strip(), f"{name}: no message")
        require(archive.read_bytes() == before, f"{name}: the old archive is gone")
    return f"{len(cases)} files that cannot be used: the right exit code and a message each"


def close_pipe(dbentry, folder, contents):
    archive = folder / "long"
    dbentry.run("import", filled(folder / "many", contents * 20), "-o", archive)
    for command in ("list", "show"):
        run = subprocess.Popen([dbentry.program, command, archive], stdout=subprocess.PIPE, stderr=subprocess.PIPE)
        run.stdout.readline()
        run.stdout.close()
        messages = run.stderr.read()
        require(run.wait(TIME_LIMIT) == 0 and not messages, f"{command} | head -1: {messages}")
    return "2 pipes closed after the first line: exit code 0, no message"


def damaged(content, choose):
    """One to three damages: bytes changed, removed, doubled, cut off, or tokens that CIF gives a meaning."""
    tokens = [b"loop_", b"data_", b"global_", b"save_", b"stop_", b"'", b'"', b"\n;", b"?", b".", b"\r", b"\0", b"#",
              b"_", b"1e999", b"-", b"(", b"\xff", b"_atom_site_label", b"99999999999999999999"]
    result = bytearray(content)
    for _ in range(choose.randint(1, 3)):
        at = choose.randrange(len(result) + 1)
        length = choose.choice([1, 1, 2, 10, 100])
        kind = choose.choices(range(6), weights=[6, 3, 2, 2, 1, 1])[0]
        if kind == 0 and result:
            result[at % len(result)] = choose.randrange(256)
        elif kind == 1:
            del result[at:at + length]
        elif kind == 2:
            result[at:at] = result[at:at + length]
        elif kind == 3:
            result[at:at] = choose.choice(tokens)
        elif kind == 4:
            del result[at:]
        else:
            other = choose.randrange(len(result) + 1)
            result[at:at] = result[other:other + length]
    return bytes(result)


def import_damaged_files(dbentry, folder, contents, files, choose):
    batch = 100
    entries = refused = 0
    for first in range(0, files, batch):
        sources = filled(folder / f"damaged{first}",
                         [damaged(choose.choice(contents), choose) for _ in range(min(batch, files - first))])
        archive = folder / "damaged.archive"
        code, messages = dbentry.run("import", sources, "-o", archive)
        require(code in (0, 1), f"{sources}: exit code {code}: {messages}")
        for line in messages.splitlines():
            require(line.startswith((str(sources), "  hint: ")), f"a message without its file: {line}")
        refused += messages.count(": error: ")
        require(dbentry.run("verify", archive)[0] == 0, f"{sources}: what was imported does not verify")
        entries += 1
    return f"{files} damaged CIF files in {entries} imports: {refused} refused with file and reason, all archives verify"


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("program")
    parser.add_argument("samples", type=pathlib.Path)
    parser.add_argument("--kills", type=int, default=200)
    parser.add_argument("--files", type=int, default=10_000)
    arguments = parser.parse_args()
    dbentry = Dbentry(arguments.program)
    choose = random.Random(20031211)  # the same run every time
    with tempfile.TemporaryDirectory() as folder:
        folder = pathlib.Path(folder)
        contents = samples(arguments.samples)
        good = [content for content in contents if b"_cell_length_a" in content]
        try:
            print(refuse_bad_files(dbentry, folder, good), flush=True)
            print(close_pipe(dbentry, folder, good), flush=True)
            print(kill(dbentry, folder, good, arguments.kills, choose), flush=True)
            print(import_damaged_files(dbentry, folder, contents, arguments.files, choose), flush=True)
        except Finding as finding:
            print(f"finding: {finding}")
            return 1
    return 0


if __name__ == "__main__":
    sys.exit(main())
