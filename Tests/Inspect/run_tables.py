"""Runs the tables of requests and answers in this folder against quillary-inspect.

A table is a JSON file: a list of cases {"name", "request" or "line", "answer"}. "line" is sent as it stands, "request" as
JSON. In the expected answer {"$any": true} stands for any value and {"$contains": TEXT} for a text that holds TEXT;
"setup" may list files to make in a fresh directory, whose path replaces "$DIR" in the request: a text is a file's
contents, {"size": N} an empty stretch of N bytes, null a directory. "after" lists what must be there afterwards in the same
way, and false for what must not. What goes to the trash goes to one of the run's own.
"""

import json
import os
import pathlib
import subprocess
import sys
import tempfile


def matches(expected, actual):
    if isinstance(expected, dict) and "$any" in expected:
        return True
    if isinstance(expected, dict) and "$contains" in expected:
        return isinstance(actual, str) and expected["$contains"] in actual
    if isinstance(expected, dict):
        return isinstance(actual, dict) and expected.keys() == actual.keys() and all(
            matches(expected[key], actual[key]) for key in expected)
    if isinstance(expected, list):
        return isinstance(actual, list) and len(expected) == len(actual) and all(
            matches(e, a) for e, a in zip(expected, actual))
    if isinstance(expected, bool) or isinstance(actual, bool):
        return expected is actual
    return expected == actual


def with_directory(value, directory):
    if isinstance(value, str):
        return value.replace("$DIR", directory)
    if isinstance(value, list):
        return [with_directory(each, directory) for each in value]
    if isinstance(value, dict):
        return {key: with_directory(each, directory) for key, each in value.items()}
    return value


def make(path, content):
    path.parent.mkdir(parents=True, exist_ok=True)
    if content is None:
        path.mkdir()
    elif isinstance(content, dict):
        with path.open("wb") as file:
            file.truncate(content["size"])
    else:
        path.write_bytes(content.encode("utf-8"))


def is_there(path, content):
    if isinstance(content, dict) and "$any" in content:
        return path.exists()
    if content is False:
        return not path.exists()
    if content is None:
        return path.is_dir()
    return path.is_file() and path.read_bytes() == content.encode("utf-8")


def main():
    with tempfile.TemporaryDirectory() as data:
        run(data)


def run(data):
    program, tables = sys.argv[1], sorted(pathlib.Path(sys.argv[2]).glob("*.json"))
    process = subprocess.Popen([program], stdin=subprocess.PIPE, stdout=subprocess.PIPE,
                               env={**os.environ, "XDG_DATA_HOME": data})
    passed = failed = 0
    for table in tables:
        for case in json.loads(table.read_text(encoding="utf-8")):
            with tempfile.TemporaryDirectory() as directory:
                for name, content in case.get("setup", {}).items():
                    make(pathlib.Path(directory, name), content)
                line = case["line"] if "line" in case else json.dumps(with_directory(case["request"], directory))
                process.stdin.write(line.encode("utf-8") + b"\n")
                process.stdin.flush()
                answer = json.loads(process.stdout.readline())
                expected = with_directory(case["answer"], directory)
                wrong = [name for name, content in case.get("after", {}).items()
                         if not is_there(pathlib.Path(directory, name), content)]
                if matches(expected, answer) and not wrong:
                    passed += 1
                else:
                    failed += 1
                    print(f"{table.name}: {case['name']}\n  request  {line}\n  expected {json.dumps(expected)}"
                          f"\n  answered {json.dumps(answer)}"
                          + "".join(f"\n  wrong    {name}" for name in wrong))
    process.stdin.close()
    status = process.wait()
    print(f"{passed} passed, {failed} failed")
    sys.exit(1 if failed or status or not passed else 0)


main()
