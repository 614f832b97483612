"""The blocks of docs/python.md, in their order."""

import pathlib
import re

PAGE = pathlib.Path(__file__).parents[3] / "docs" / "python.md"


def test_the_tutorial_runs_and_leaves_what_it_says(tmp_path, monkeypatch):
    monkeypatch.chdir(tmp_path)
    text = PAGE.read_text(encoding="utf-8")
    blocks = re.findall(r"^```python\n(.*?)^```", text, re.MULTILINE | re.DOTALL)
    assert len(blocks) == text.count("```python")
    exec(compile("\n".join(blocks), str(PAGE), "exec"), {"__name__": "tutorial"})
    left = {path.name for path in tmp_path.iterdir() if path.stat().st_size > 0}
    assert {"cell.svg", "known.db", "known.dbe", "volumes.png"} <= left
