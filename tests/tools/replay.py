#!/usr/bin/env python3
"""replay.py [--update] PROGRAM_FOLDER SAMPLES_FOLDER PAGE: runs the transcripts of a page.

Every line of a console block that begins with "$ " is run by bash, in one folder for the whole page, which holds
copies of the sample files; what follows it must be what the command writes, messages included. With --update the
page gets what was written instead. A line "(exit code N)" follows a command that ends with another code than 0.
"""
import os
import re
import shutil
import subprocess
import sys
import tempfile


def run(command, folder, programs):
    environment = dict(os.environ, PATH=programs + os.pathsep + os.environ["PATH"], LC_ALL="C.UTF-8")
    environment.pop("DBENTRY_COLLECTION", None)
    result = subprocess.run(["bash", "-c", command], cwd=folder, env=environment, stdout=subprocess.PIPE,
                            stderr=subprocess.STDOUT, text=True, check=False)
    output = result.stdout
    if output and not output.endswith("\n"):
        output += "\n"
    if result.returncode != 0:
        output += f"(exit code {result.returncode})\n"
    return output


def replay(block, folder, programs):
    written = ""
    for line in block.splitlines():
        if line.startswith("$ "):
            written += line + "\n" + run(line[2:], folder, programs)
    return written


def main(arguments):
    update = arguments[:1] == ["--update"]
    programs, samples, page = arguments[update:]
    with open(page, encoding="utf-8") as file:
        text = file.read()
    with tempfile.TemporaryDirectory() as folder:
        for name in os.listdir(samples):
            shutil.copy(os.path.join(samples, name), folder)
        count = 0

        def replaced(match):
            nonlocal count
            count += match.group(1).count("$ ")
            return "```console\n" + replay(match.group(1), folder, os.path.abspath(programs)) + "```"

        replayed = re.sub(r"```console\n(.*?)```", replaced, text, flags=re.DOTALL)
    if update:
        with open(page, "w", encoding="utf-8") as file:
            file.write(replayed)
        return 0
    if replayed == text and count > 0:
        print(f"{page}: {count} commands replayed")
        return 0
    for number, (old, new) in enumerate(zip(text.splitlines(), replayed.splitlines()), 1):
        if old != new:
            print(f"{page}:{number}: the page has\n  {old}\nthe program writes\n  {new}")
            break
    else:
        print(f"{page}: the program writes more, or less, than the page has, or there is no command")
    return 1


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
