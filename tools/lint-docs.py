#!/usr/bin/env python3
"""Reports what the documents name and does not exist: links, paths, commands, options, presets, functions.

    lint-docs.py          in all documents of the project
    lint-docs.py FOLDER   links alone, in an installed folder of documents
"""
import glob
import json
import os
import re
import shutil
import subprocess
import sys

ROOMS = "benchmarks|demo|device|docs|keypad|packaging|simulator|src|tests|tools"
ELSEWHERE = {"apt", "apt-get", "gcovr", "run-clang-tidy", "tarnixUI"}  # commands that need not be on this machine
BUILTINS = {"cd", "export", "mkdir"}


def read(path):
    with open(path, encoding="utf-8", errors="replace") as file:
        return file.read()


def anchors(page):
    """Returns the anchors that the headings of a page have on the web."""
    headings = re.findall(r"^#+ (.*)$", read(page), re.MULTILINE)
    return {re.sub(r"[^\w\- ]", "", heading.lower()).replace(" ", "-") for heading in headings}


def dead_links(page):
    for target, anchor in re.findall(r"\]\((?!https?:)([^)#]*)#?([^)]*)\)", read(page)):
        path = os.path.join(os.path.dirname(page), target) if target else page
        if not os.path.exists(path) or anchor and anchor not in anchors(path):
            yield f"link {target}#{anchor}"


def code(page):
    """Returns the code spans of a page, and the lines of its shell blocks."""
    text = read(page)
    blocks = re.findall(r"^ *```sh\n(.*?)^ *```$", text, re.DOTALL | re.MULTILINE)
    lines = [line.strip() for block in blocks for line in block.replace("\\\n", " ").splitlines()]
    return re.findall(r"`([^`\n]+)`", re.sub(r"^ *```.*?^ *```$", "", text, flags=re.DOTALL | re.MULTILINE)), lines


def is_command(word):
    return word in ELSEWHERE | BUILTINS or os.path.exists(word) or word.startswith("build/") or "=" in word or shutil.which(word)


def dead_words(page, sources):
    """Yields what a page says in code and the project does not have."""
    spans, lines = code(page)
    for line in lines:
        if re.match(r"[\w./-]+( |$)", line) and not is_command(line.split()[0]):
            yield f"command {line}"
    presets = {preset["name"] for preset in json.loads(read("CMakePresets.json"))["configurePresets"]}
    for text in spans + lines:
        for path in re.findall(rf"(?<![\w/.$-])(?:\./)?((?:{ROOMS})/[\w./*-]*[\w*/])", text):
            if not glob.glob(path) and not glob.glob(path + ".*"):
                yield f"path {path}"
        for preset in re.findall(r"--preset (\w[\w-]*)", text):
            if preset not in presets:
                yield f"preset {preset}"
        for name in re.findall(r"-D(TARNIXUI_\w+)|(?:-R|--target) (\w+)|^((?:\w|::)+)\(\)$", text):
            if not all(re.search(rf"\b{word}\b", sources) for word in "".join(name).split("::")):
                yield f"name {text}"
        for script, options in re.findall(rf"((?:(?:{ROOMS})/|\./)\S+\.(?:sh|py))((?: [^|;&]+)?)", text):
            for option in re.findall(r"--\w[\w-]*", options.split(" -- ")[0]) if os.path.exists(script) else ():
                if option not in read(script):
                    yield f"option {option} of {script}"


def disagreements():
    """Yields what the manual page has and the documents have not, or the other way round."""
    manual = re.sub(r"@\w+@", "", read("packaging/tarnixUI.1.in").replace("\\-", "-"))
    pages = "".join(map(read, glob.glob("docs/*.md")))
    for word in set(re.findall(r"/(?:etc|tmp|usr/bin)/[\w.-]+(?:/[\w.-]+)?|\b[A-Z]+(?:_[A-Z]+)+\b", manual)):
        if word not in pages:
            yield f"{word} of the manual page"
    variables = re.findall(r"^\| `([A-Z_]+)` \|", read("docs/integrating.md"), re.MULTILINE)
    commands = re.findall(r"^\| `(\w+)`", read("docs/runtime-protocol.md"), re.MULTILINE)
    for word in variables + commands:
        if not re.search(rf'^\.BI?R? (?:.*" )?{word}\b', manual, re.MULTILINE):
            yield f"{word} is missing in the manual page"
    for preset in re.findall(r'"displayName".*\n.*|"name": "(\S+)",\n +"displayName"', read("CMakePresets.json")):
        if preset and f"`{preset}`" not in read("README.md"):
            yield f"preset {preset} is missing in README.md"


def main():
    if len(sys.argv) > 1:
        findings = [f"{page}: {what}" for page in glob.glob(sys.argv[1] + "/*.md") for what in dead_links(page)]
    else:
        os.chdir(os.path.dirname(__file__) + "/..")
        tracked = subprocess.check_output(["git", "ls-files"], text=True).splitlines()
        sources = "".join(read(path) for path in tracked if os.path.exists(path) and
                          re.search(r"\.(cpp|h|ui|py|sh|xml|json|in)$|CMakeLists.txt$", path))
        findings = [f"{page}: {what}" for page in tracked if page.endswith(".md") and os.path.exists(page)
                    for what in [*dead_links(page), *dead_words(page, sources)]]
        findings += [f"documents: {what}" for what in disagreements()]
    sys.exit("\n".join(findings) or 0)


if __name__ == "__main__":
    main()
