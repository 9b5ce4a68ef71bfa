#!/usr/bin/env python3
"""Plant single small faults in the library and see whether the unit tests notice.

Each mutant is one small change to one line of src/: a comparison flipped
(< <=, > >=, == !=), an integer constant off by one, a mask or shift changed
(0x1F -> 0x0F, >> 4 -> >> 3), an assignment or call statement deleted, or a
returned true/false or 0/1 flipped. Mutants are drawn at random (reproducibly
with --seed) from every such site outside comments, string literals and
preprocessor lines. For each one the script rewrites the file, rebuilds the
test binary incrementally, runs it with a time limit and puts the file back,
whatever happens (Ctrl-C included). A mutant the tests fail on is "killed";
one they pass is "survived" and points at a gap in the tests. A mutant that
does not compile (warnings are errors in a developer build) is discarded and
another is drawn in its place.

    nice -n 19 scripts/mutate.py --build build/dev --seed 1 --count 40

The build directory must already be configured (a developer build, with
ccache as compiler launcher to keep rebuilds short). The script refuses to
start while src/ has uncommitted changes, since it restores files from the
copy it read and a stray mutant would be hard to tell from a real edit.
"""

import argparse
import fnmatch
import os
import random
import re
import signal
import subprocess
import sys
import time
from dataclasses import dataclass
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent

# ---------------------------------------------------------------------------
# Which characters of a source file are code
# ---------------------------------------------------------------------------


def code_only(text):
    """The text with comments, string and character literals and preprocessor
    lines blanked out (same length, newlines kept), so that patterns matched on
    it can only hit code. A blanked literal keeps its quotes so the code around
    it still reads as an expression."""
    out = list(text)
    i, n = 0, len(text)
    line_start = True
    while i < n:
        c = text[i]
        if c == "\n":
            line_start = True
            i += 1
            continue
        if line_start and c in " \t":
            i += 1
            continue
        if line_start and c == "#":
            # A preprocessor directive, with its continuation lines.
            while i < n and not (text[i] == "\n" and text[i - 1] != "\\"):
                if text[i] != "\n":
                    out[i] = " "
                i += 1
            continue
        line_start = False
        if text.startswith("//", i):
            while i < n and text[i] != "\n":
                out[i] = " "
                i += 1
        elif text.startswith("/*", i):
            end = text.find("*/", i + 2)
            end = n if end < 0 else end + 2
            for k in range(i, end):
                if text[k] != "\n":
                    out[k] = " "
            i = end
        elif c in "\"'":
            k = i + 1
            while k < n and text[k] != c and text[k] != "\n":
                k += 2 if text[k] == "\\" else 1
            for m in range(i + 1, min(k, n)):
                out[m] = " "
            i = k + 1
        else:
            i += 1
    return "".join(out)


# ---------------------------------------------------------------------------
# Mutation sites
# ---------------------------------------------------------------------------


@dataclass
class Mutant:
    path: Path  # relative to ROOT
    line: int  # 1-based, first line changed
    kind: str
    before: str  # the changed lines, as in the file
    after: object  # what replaces them (or a list of choices, until drawn)
    count: int = 1  # number of lines replaced

    def where(self):
        return f"{self.path}:{self.line}"


COMPARISONS = {"<": "<=", "<=": "<", ">": ">=", ">=": ">", "==": "!=", "!=": "=="}
# A binary comparison as the project's formatting writes it: spaced on both
# sides. Templates (vector<T>), shifts, arrows and streams never are.
COMPARISON_RE = re.compile(r"(?<=\s)(<=|>=|==|!=|<|>)(?=\s)")
INTEGER_RE = re.compile(r"(?<![\w.])(0[xX][0-9A-Fa-f]+|\d+)[uUlL]*(?![\w.])")
MASK_RE = re.compile(r"(?:[^&|]|^)[&|]=?\s+$")
SHIFT_RE = re.compile(r"(?:<<|>>)=?\s*$")
RETURN_RE = re.compile(r"\breturn\s+(true|false|0|1)\s*;")
RETURN_FLIP = {"true": "false", "false": "true", "0": "1", "1": "0"}

NOT_EXPRESSION = re.compile(
    r"^(return|delete|break|continue|goto|case|default|if|for|while|do|switch|else|"
    r"using|namespace|typedef|static_assert|template|class|struct|enum|public|private|"
    r"protected|friend|throw|try|catch|operator)\b"
)
# A declaration: a type (possibly qualified, templated, const, pointer) then a name.
DECLARATION = re.compile(
    r"^(?:(?:const|static|constexpr|inline|volatile|mutable)\s+)*"
    r"(?:(?:unsigned|signed|long|short)\s+)*[A-Za-z_][\w:]*(?:<[^;=]*>)?[\s*&]+"
    r"[A-Za-z_]\w*\s*(?:=|\(|\{|;|\[|,)"
)


def format_integer(digits, value):
    """value written the way digits was: hexadecimal of at least the same width
    and case, or decimal."""
    if digits[:2] in ("0x", "0X"):
        lower = any(ch in "abcdef" for ch in digits[2:])
        body = format(value, "x" if lower else "X")
        return digits[:2] + body.rjust(len(digits) - 2, "0")
    return str(value)


def integer_value(digits):
    return int(digits, 16) if digits[:2] in ("0x", "0X") else int(digits)


def line_sites(path, lines, code_lines):
    """The one-line mutants of a file: comparisons, constants, masks, shifts and
    returned values."""
    sites = []
    for idx, (line, code) in enumerate(zip(lines, code_lines)):
        if not code.strip():
            continue

        def add(kind, start, end, replacement):
            if isinstance(replacement, list):
                after = [line[:start] + r + line[end:] for r in replacement]
            else:
                after = line[:start] + replacement + line[end:]
            sites.append(Mutant(path, idx + 1, kind, line, after))

        for m in COMPARISON_RE.finditer(code):
            add("comparison", m.start(1), m.end(1), COMPARISONS[m.group(1)])
        for m in INTEGER_RE.finditer(code):
            digits = m.group(1)
            value = integer_value(digits)
            prefix = code[: m.start()]
            if SHIFT_RE.search(prefix):
                new = value - 1 if value > 1 else value + 1
                add("shift", m.start(1), m.end(1), format_integer(digits, new))
                continue
            if MASK_RE.search(prefix):
                new = value >> 1 if value > 1 else value << 1
                add("mask", m.start(1), m.end(1), format_integer(digits, new))
            # Off by one, upwards or downwards (never below zero): one site per
            # literal, its direction drawn with the seed (see main).
            options = [value + 1, value - 1] if value > 0 else [value + 1]
            add("constant", m.start(1), m.end(1),
                [format_integer(digits, new) for new in options])
        for m in RETURN_RE.finditer(code):
            add("return", m.start(1), m.end(1), RETURN_FLIP[m.group(1)])
    return sites


def statement_sites(path, lines, code_lines):
    """Expression statements (assignments, calls, increments) that can be
    deleted, each replaced by an empty block so that the statement around it,
    say a one-line if, keeps its shape."""
    sites = []
    previous_end, prev_code = "{", ""
    idx = 0
    while idx < len(lines):
        code = code_lines[idx].strip()
        if not code:
            idx += 1
            continue
        starts = previous_end in (";", "{", "}") or previous_end == "else" or (
            previous_end == ")" and re.match(r"^(\}\s*)?(if|for|while|else\s+if)\b", prev_code)
        )
        if starts and not NOT_EXPRESSION.match(code) and not DECLARATION.match(code) and \
                not code.startswith(("{", "}", ":", ",")) and code[0] not in ")]":
            # Gather the statement up to its semicolon at depth zero.
            depth, end, text = 0, idx, ""
            while end < len(lines) and end < idx + 8:
                piece = code_lines[end].strip()
                depth += piece.count("(") - piece.count(")")
                text += " " + piece
                if depth == 0 and piece.endswith(";"):
                    break
                end += 1
            if end < len(lines) and end < idx + 8 and depth == 0 and \
                    re.search(r"[=(]|\+\+|--|<<", text) and not re.search(r"[{}]", text):
                original = lines[idx:end + 1]
                indent = re.match(r"\s*", lines[idx]).group(0)
                replacement = [indent + "{}"] + [""] * (end - idx)
                sites.append(Mutant(path, idx + 1, "statement", "\n".join(original),
                                    "\n".join(replacement), end - idx + 1))
        prev_code = code
        previous_end = "else" if re.search(r"\belse$", code) else code[-1]
        idx += 1
    return sites


INCLUDE_RE = re.compile(r'^\s*#\s*include\s+"([^"]+)"', re.M)


def reachable_sources():
    """Every source file of the library, and the headers of src/ that one of
    them includes (directly or through another): a header nothing includes
    yet is not reachable by parsing."""
    sources = sorted((ROOT / "src").rglob("*.cpp"))
    headers = {p.name: p for p in (ROOT / "src").rglob("*.h")}
    seen, todo = set(sources), list(sources)
    while todo:
        for name in INCLUDE_RE.findall(todo.pop().read_text()):
            header = headers.get(Path(name).name)
            if header is not None and header not in seen:
                seen.add(header)
                todo.append(header)
    return sorted(seen)


def outside_sources(patterns):
    """The source files outside src/ that a pattern names by its first
    directory (tools/*, say): the tool's code, built into the test binary too."""
    found = set()
    for pattern in patterns:
        top = pattern.split("/")[0]
        if "/" in pattern and top != "src" and not any(c in top for c in "*?["):
            for path in (ROOT / top).rglob("*"):
                if path.suffix in (".cpp", ".h"):
                    found.add(path)
    return sorted(found)


def collect(patterns):
    files = []
    for path in reachable_sources() + outside_sources(patterns):
        rel = path.relative_to(ROOT).as_posix()
        if any(fnmatch.fnmatch(rel, p) for p in patterns):
            files.append(path.relative_to(ROOT))
    sites = []
    for rel in files:
        text = (ROOT / rel).read_text()
        lines = text.split("\n")
        code_lines = code_only(text).split("\n")
        sites += line_sites(rel, lines, code_lines)
        sites += statement_sites(rel, lines, code_lines)
    return files, sites


# ---------------------------------------------------------------------------
# Building and testing
# ---------------------------------------------------------------------------


def run(cmd, timeout, cwd=None):
    """Runs cmd in its own process group; returns (exit code or None on
    timeout, output)."""
    proc = subprocess.Popen(cmd, cwd=cwd, stdout=subprocess.PIPE, stderr=subprocess.STDOUT,
                            start_new_session=True, text=True, errors="replace")
    try:
        out, _ = proc.communicate(timeout=timeout)
        return proc.returncode, out
    except subprocess.TimeoutExpired:
        os.killpg(proc.pid, signal.SIGKILL)
        out, _ = proc.communicate()
        return None, out
    except BaseException:
        os.killpg(proc.pid, signal.SIGKILL)
        proc.wait()
        raise


class Runner:
    def __init__(self, args):
        self.build_dir = Path(args.build).resolve()
        self.binary = self.build_dir / "tests" / args.target
        self.build_cmd = ["cmake", "--build", str(self.build_dir), "--target", args.target,
                          "-j", str(args.jobs)]
        self.build_timeout = args.build_timeout
        self.test_timeout = args.timeout
        self.every_failure = args.every_failure

    def build(self):
        code, out = run(self.build_cmd, self.build_timeout)
        return code == 0, out

    def test(self, timeout):
        cmd = [str(self.binary), "--gtest_brief=1"]
        if not self.every_failure:
            cmd.append("--gtest_fail_fast")
        code, out = run(cmd, timeout, cwd=self.binary.parent)
        failed = re.findall(r"^\[  FAILED  \] (\S+?)(?:,| \(|$)", out, re.M)
        return code, failed


def first_error(output):
    for line in output.splitlines():
        if "error:" in line:
            return line.strip()[:160]
    return "build failed"


def apply(mutant, original):
    lines = original.split("\n")
    i = mutant.line - 1
    lines[i:i + mutant.count] = mutant.after.split("\n")
    path = ROOT / mutant.path
    path.write_text("\n".join(lines))
    now = time.time()
    os.utime(path, (now, now))


def restore(mutant, original):
    path = ROOT / mutant.path
    path.write_text(original)
    now = time.time()
    os.utime(path, (now, now))  # newer than the mutant's objects: rebuilt next time


def show(text):
    return " / ".join(part.strip() for part in text.split("\n") if part.strip()) or "(nothing)"


def src_is_clean(dirs):
    res = subprocess.run(["git", "status", "--porcelain", "--"] + dirs, cwd=ROOT,
                         capture_output=True, text=True)
    if res.returncode != 0:
        sys.exit("mutate.py: not a git work tree: " + res.stderr.strip())
    return res.stdout.strip()


def main():
    ap = argparse.ArgumentParser(description=__doc__.split("\n\n")[0])
    ap.add_argument("--build", default="build/dev", help="configured build directory")
    ap.add_argument("--target", default="sarn_tests", help="test binary target (in BUILD/tests)")
    ap.add_argument("--seed", type=int, default=None, help="random seed (default: random)")
    ap.add_argument("--count", type=int, default=10, help="mutants to test")
    ap.add_argument("--files", action="append", default=None, metavar="GLOB",
                    help="files to mutate, relative to the checkout (repeatable; "
                         "default src/*.cpp and src/*.h, at any depth; tools/* for the tool)")
    ap.add_argument("--timeout", type=float, default=None,
                    help="seconds a test run may take (default: 5x the clean run, at least 30)")
    ap.add_argument("--build-timeout", type=float, default=900, help="seconds a rebuild may take")
    ap.add_argument("--jobs", type=int, default=2, help="parallel build jobs")
    ap.add_argument("--every-failure", action="store_true",
                    help="run the whole suite on each mutant and name every test that fails "
                         "(to see which tests are the only ones to catch a fault)")
    ap.add_argument("--list", action="store_true",
                    help="only count the sites and print the mutants that would be drawn")
    args = ap.parse_args()

    seed = args.seed if args.seed is not None else random.randrange(1 << 30)
    patterns = args.files or ["src/*.cpp", "src/*.h"]
    files, sites = collect(patterns)
    if not sites:
        sys.exit("mutate.py: no mutation site in " + " ".join(patterns))
    kinds = {}
    for s in sites:
        kinds[s.kind] = kinds.get(s.kind, 0) + 1
    print(f"{len(sites)} sites in {len(files)} files (" +
          ", ".join(f"{k} {v}" for k, v in sorted(kinds.items())) + f"); seed {seed}")
    rng = random.Random(seed)
    for s in sites:
        if isinstance(s.after, list):
            s.after = rng.choice(s.after)
    order = list(sites)
    rng.shuffle(order)

    if args.list:
        for m in order[:args.count]:
            print(f"{m.where()} ({m.kind}) {show(m.before)}  ->  {show(m.after)}")
        return 0

    dirs = sorted({f.parts[0] for f in files} | {"src"})
    dirty = src_is_clean(dirs)
    if dirty:
        sys.exit(f"mutate.py: {', '.join(dirs)} has uncommitted changes; commit or stash them "
                 f"first (a run killed hard leaves its mutant: git checkout -- {' '.join(dirs)})\n"
                 + dirty)
    runner = Runner(args)
    if not (runner.build_dir / "CMakeCache.txt").exists():
        sys.exit(f"mutate.py: {runner.build_dir} is not a configured build directory")

    print("building and running the unmutated suite...", flush=True)
    ok, out = runner.build()
    if not ok:
        sys.exit("mutate.py: the unmutated tree does not build:\n" + out[-2000:])
    start = time.monotonic()
    code, failed = runner.test(timeout=args.timeout or 3600)
    clean_time = time.monotonic() - start
    if code != 0:
        sys.exit("mutate.py: the unmutated suite fails (" + ", ".join(failed[:5]) + ")")
    timeout = args.timeout or max(30.0, 5 * clean_time)
    print(f"clean suite passes in {clean_time:.1f}s; test time limit {timeout:.0f}s", flush=True)

    # A terminated run puts the file back too.
    def interrupt(signum, frame):
        raise KeyboardInterrupt

    signal.signal(signal.SIGINT, signal.default_int_handler)
    signal.signal(signal.SIGTERM, interrupt)
    signal.signal(signal.SIGHUP, interrupt)

    killed, survivors, discarded = 0, [], 0
    tested = 0
    sources = {}
    try:
        for mutant in order:
            if tested == args.count:
                break
            original = sources.setdefault(mutant.path, (ROOT / mutant.path).read_text())
            try:
                apply(mutant, original)
                built, out = runner.build()
                if built:
                    code, failed = runner.test(timeout)
            finally:
                restore(mutant, original)
            label = f"{mutant.where()} ({mutant.kind}) {show(mutant.before)}  ->  {show(mutant.after)}"
            if not built:
                discarded += 1
                print(f"  -- {label} ... does not compile, discarded ({first_error(out)})", flush=True)
                continue
            tested += 1
            if code == 0:
                survivors.append(label)
                verdict = "survived"
            else:
                killed += 1
                if code is None:
                    verdict = "killed (timeout)"
                elif code < 0:
                    verdict = f"killed (crash, signal {-code})"
                elif failed:
                    verdict = "killed by " + ", ".join(
                        sorted(set(failed)) if args.every_failure else failed[:1])
                else:
                    verdict = f"killed (exit {code})"
            print(f"[{tested}/{args.count}] {label} ... {verdict}", flush=True)
    except KeyboardInterrupt:
        print("\ninterrupted; the source file is restored", flush=True)
    finally:
        # Every file back as it was read (a no-op unless interrupted mid-write).
        for rel, text in sources.items():
            if (ROOT / rel).read_text() != text:
                (ROOT / rel).write_text(text)

    if tested == args.count and sources:
        # The objects of the last mutant are stale: leave the build as the tree is.
        print("rebuilding the unmutated tree...", flush=True)
        runner.build()
    if tested < args.count:
        print(f"only {tested} mutants tested (sites exhausted or interrupted)")
    share = 100.0 * killed / tested if tested else 0.0
    print(f"{tested} mutants: {killed} killed ({share:.1f}%), {len(survivors)} survived"
          + (f"; {discarded} discarded (did not compile)" if discarded else "")
          + f"; seed {seed}")
    if survivors:
        print("survivors:")
        for label in survivors:
            print("  " + label)
    return 0


if __name__ == "__main__":
    sys.exit(main())
