"""Types: the stub is that of the module, and checkers find with it what is right and what is wrong."""

import os
import pathlib
import re
import runpy
import subprocess
import sys

import pytest

import database_entry as de

FOLDER = pathlib.Path(__file__).parent
STUBS = FOLDER.parent / "stubs"
PAGE = FOLDER.parents[2] / "docs" / "python.md"
PACKAGE = pathlib.Path(de.__file__).parent

if b"AddressSanitizer" in pathlib.Path("/proc/self/maps").read_bytes() or "VALGRIND" in os.environ:
    pytest.skip("checkers do not use the module itself", allow_module_level=True)


def run(*command):
    environment = {**os.environ, "MYPYPATH": str(PACKAGE.parent), "PYTHONPATH": str(PACKAGE.parent)}
    return subprocess.run([sys.executable, *map(str, command)], capture_output=True, text=True, env=environment)


@pytest.fixture(scope="module")
def cache(tmp_path_factory):
    return tmp_path_factory.mktemp("mypy")


def mypy(cache, *what):
    done = run("-m", "mypy", "--strict", "--cache-dir", cache, *what)
    return done.stdout + done.stderr


def test_the_stub_is_made_of_the_lists_of_fields():
    made = run(STUBS / "make_stubs.py")
    assert made.returncode == 0, made.stderr
    assert made.stdout == (PACKAGE / "_database_entry.pyi").read_text(encoding="utf-8"), "./dev python stubs renews it"


def test_the_stub_agrees_with_the_module(tmp_path):
    done = subprocess.run(
        [sys.executable, "-m", "mypy.stubtest", "database_entry._database_entry", "--allowlist", STUBS / "allowlist.txt"],
        capture_output=True, text=True, cwd=tmp_path,
        env={**os.environ, "PYTHONPATH": str(PACKAGE.parent), "MYPYPATH": str(PACKAGE.parent)})
    assert done.returncode == 0, done.stdout + done.stderr


def test_the_package_passes_in_strict_mode(cache):
    assert "Success" in mypy(cache, "-p", "database_entry")


def test_a_typed_program_passes_in_strict_mode(cache):
    assert "Success" in mypy(cache, FOLDER / "typed_example.py")


def test_a_typed_program_runs():
    runpy.run_path(str(FOLDER / "typed_example.py"))


def test_the_tutorial_passes_in_strict_mode(cache, tmp_path):
    blocks = re.findall(r"^```python\n(.*?)^```", PAGE.read_text(encoding="utf-8"), re.MULTILINE | re.DOTALL)
    file = tmp_path / "tutorial.py"
    file.write_text("\n".join(blocks), encoding="utf-8")
    # A tutorial has no types of its own, and the package for plots none either.
    settings = tmp_path / "mypy.ini"
    settings.write_text("[mypy]\n[mypy-matplotlib.*]\nignore_missing_imports = True\n")
    assert "Success" in mypy(cache, "--config-file", settings, "--allow-untyped-defs", "--allow-untyped-calls", file)


WRONG = [
    ("de.Publication(yaer=1979)", "Unexpected keyword argument"),
    ("de.Publication().yaer", "has no attribute"),
    ("de.Publication().year = 'late'", "Incompatible types in assignment"),
    ("de.Publication().authors = 5", "Incompatible types in assignment"),
    ("de.Cell().a = 5.0", "read-only"),
    ("de.Entry('A').cell = de.Cell()", "read-only"),
    ("de.Entry('A').publication = de.CrystalInfo()", "Incompatible types in assignment"),
    ("de.Entry('A').chemical_diagram.atoms", "has no attribute"),
    ("de.Entry('A').publication.yaer", "has no attribute"),
    ("de.connect('memory:').put(5)", "No overload variant"),
    ("de.open('x.dbe', 'q')", "No overload variant"),
    ("de.ExperimentalInfo.gamma_ray", "has no attribute"),
]


@pytest.fixture(scope="module")
def complaints(cache):
    file = cache / "wrong.py"
    file.write_text("import database_entry as de\n" + "".join(f"{line}\n" for line, _ in WRONG), encoding="utf-8")
    return mypy(cache, file)


@pytest.mark.parametrize("line, reason", WRONG)
def test_a_checker_sees_what_is_wrong(complaints, line, reason):
    number = [wrong for wrong, _ in WRONG].index(line) + 2
    assert re.search(rf"wrong.py:{number}: error: .*{reason}", complaints), complaints
