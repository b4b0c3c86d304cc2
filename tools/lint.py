#!/usr/bin/env python3
"""Checks what the compiler does not: format, generated files, include layers, marks in comments.

Exits with 1 and a line per finding when something is wrong. Run as `./dev lint`.
"""

import pathlib
import re
import shutil
import subprocess
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent

# Folders of the filter from the bottom up. A folder includes itself and what stands below it; tree
# and style meet as equals.
LAYERS = {
    "support": 0,
    "containers": 1,
    "input": 2,
    "scanner": 3,
    "tree": 4,
    "style": 4,
    "output": 5,
    "filter": 6,
}
# Headers that only declare, which every layer may include.
OPEN_HEADERS = {
    "filter/html_filter_context.h",
    "filter/filter_internals.h",
    "filter/entry_table.h",
    "output/host_calls.h",
    "output/host_routines.h",
}
# What reads the tree's payloads without being above the tree.
PAYLOAD_HEADERS = {"tree/html_tree.h", "tree/html_node_data.h", "tree/html_value.h"}
# Installed headers: all that a host sees.
INSTALLED_HEADERS = {
    "output/host_routines.h",
    "filter/entry_table.h",
    "support/engine_options.h",
    "support/exception.h",
    "support/export.h",
}
BANNED = re.compile(r"\b(TODO|FIXME|XXX)\b")
INCLUDE = re.compile(r'^\s*#include "([^"]+)"', re.M)
QUIRK = re.compile(r"QUIRK\(([^)]*)\)")
TEST_NAME = re.compile(
    r"\b(?:TEST|TEST_F|TEST_P|TYPED_TEST)\(\s*(\w+)\s*,\s*(\w+)\s*\)", re.S
)


def project_files(*patterns):
    command = ["git", "ls-files", "--cached", "--others", "--exclude-standard", "--", *patterns]
    listing = subprocess.run(command, cwd=ROOT, check=True, capture_output=True, text=True).stdout
    return [path for path in sorted(set(listing.split("\n"))) if path and (ROOT / path).exists()]


def check_format(files):
    tool = shutil.which("clang-format")
    if tool is None:
        yield "clang-format is not installed: ./dev setup"
        return
    result = subprocess.run(
        [tool, "--dry-run", "-Werror", *files], cwd=ROOT, capture_output=True, text=True
    )
    seen = set()
    for line in result.stderr.splitlines():
        match = re.match(r"([^:]+):\d+:\d+: error", line)
        if match and match.group(1) not in seen:
            seen.add(match.group(1))
            yield f"{match.group(1)}: not formatted (./dev format)"


def check_generated():
    for script in project_files("tools/make_*.py"):
        result = subprocess.run(
            [sys.executable, str(ROOT / script), "--check"], cwd=ROOT, capture_output=True, text=True
        )
        if result.returncode != 0:
            yield f"{script}: {(result.stdout + result.stderr).strip() or 'output is stale'}"


def check_layers(path, text):
    folder = path.split("/")[0]
    for included in INCLUDE.findall(text):
        target = included.split("/")[0]
        if folder == "host":
            if target != "host" and included not in INSTALLED_HEADERS:
                yield f"{path}: includes {included}, which is not installed"
            continue
        if folder not in LAYERS or target not in LAYERS or included in OPEN_HEADERS:
            continue
        if LAYERS[target] > LAYERS[folder] and included not in PAYLOAD_HEADERS:
            yield f"{path}: includes {included}, a layer above"


def check_quirks(texts, tests):
    names = set()
    for path in tests:
        for suite, name in TEST_NAME.findall(texts[path]):
            names.add(f"{suite}.{name}")
    for path, text in texts.items():
        for mark in QUIRK.findall(text):
            fixtures = (
                ROOT / "tests" / "traces" / f"{mark}.trace",
                ROOT / "tests" / "trees" / f"{mark}.tree",
            )
            if mark not in names and not any(fixture.exists() for fixture in fixtures):
                yield f"{path}: QUIRK({mark}) names no test"


def check_words(texts):
    for path, text in texts.items():
        for number, line in enumerate(text.splitlines(), 1):
            if BANNED.search(line):
                yield f"{path}:{number}: {line.strip()}"


def main():
    files = project_files("*.cpp", "*.h", "*.c")
    texts = {path: (ROOT / path).read_text(encoding="utf-8") for path in files}
    tests = [path for path in files if path.startswith("tests/")]
    findings = list(check_format(files))
    findings += check_generated()
    for path, text in texts.items():
        findings += check_layers(path, text)
    findings += check_quirks(texts, tests)
    findings += check_words(texts)
    for finding in findings:
        print(finding)

    stand_ins = [path for path, text in texts.items() if "STAND-IN:" in text]
    count = sum(texts[path].count("STAND-IN:") for path in stand_ins)
    print(f"lint: {len(files)} files, {len(findings)} findings, {count} stand-ins in {len(stand_ins)} files")
    return 1 if findings else 0


if __name__ == "__main__":
    sys.exit(main())
