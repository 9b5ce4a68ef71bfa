#!/usr/bin/env python3
"""sarn-dump over a long transport stream made on the fly and fed through a
pipe (no file on disk): the bundled sample looped LOOPS times with its
continuity counters carried on.

    dump_soak.py SARN_DUMP SARN_TSLOOP SAMPLE.ts LOOPS

Checks that sarn-dump's resident memory stays flat after the first tenth of
the stream (within 2 MiB), that its throughput over the last quarter is at
least half of that over the second (the reader sets the pace of the pipe),
and that its summary is exactly LOOPS times the summary of one pass over the
sample: as many sections and packets per PID, no continuity break, no
section lost. Prints the figures.
"""
import re
import subprocess
import sys
import threading
import time


def summary_rows(text):
    """Sections per (PID, table_id) and the packet rows per PID of a summary."""
    sections, packets = {}, {}
    for line in text.splitlines():
        m = re.match(r"(0x[0-9A-F]{4}) (0x[0-9A-F]{2})  .{19} +(\d+) +(\d+) +(\d+)", line)
        if m:
            sections[(m.group(1), m.group(2))] = int(m.group(3))
            continue
        m = re.match(r"(0x[0-9A-F]{4}) +(\d+) +(\d+) +(\d+) +(\d+) +(\d+) +(\d+)  ", line)
        if m:
            packets[m.group(1)] = [int(m.group(i)) for i in range(2, 8)]
    return sections, packets


def resident_kib(pid):
    try:
        with open("/proc/%d/status" % pid) as f:
            for line in f:
                if line.startswith("VmRSS:"):
                    return int(line.split()[1])
    except OSError:
        pass
    return None


def main():
    dump, tsloop, sample, loops = sys.argv[1], sys.argv[2], sys.argv[3], int(sys.argv[4])
    one = subprocess.run([dump, sample], capture_output=True, text=True)
    one_sections, one_packets = summary_rows(one.stderr)

    size = 0
    with open(sample, "rb") as f:
        size = len(f.read()) // 188 * 188
    total_mib = size * loops / (1 << 20)
    gen = subprocess.Popen([tsloop, sample, str(loops)], stdout=subprocess.PIPE,
                           stderr=subprocess.PIPE)
    run = subprocess.Popen([dump, "-"], stdin=gen.stdout, stdout=subprocess.DEVNULL,
                           stderr=subprocess.PIPE, text=True)
    gen.stdout.close()
    progress = []  # (MiB written, seconds)

    def read_progress():
        for line in gen.stderr:
            mib, seconds = line.split()
            progress.append((int(mib), float(seconds)))

    reader = threading.Thread(target=read_progress)
    reader.start()
    samples = []  # (MiB written so far, resident KiB)
    while run.poll() is None:
        rss = resident_kib(run.pid)
        if rss is not None:
            samples.append((progress[-1][0] if progress else 0, rss))
        time.sleep(0.05)
    err = run.stderr.read()
    gen.wait()
    reader.join()

    failures = []
    if run.returncode != 0:
        failures.append("sarn-dump exited with %d" % run.returncode)
    sections, packets = summary_rows(err)
    for key, n in one_sections.items():
        if sections.get(key) != n * loops:
            failures.append("sections of %s %s: %s, not %d" % (key[0], key[1], sections.get(key),
                                                              n * loops))
    for pid, row in one_packets.items():
        got = packets.get(pid)
        if got is None or got[0] != row[0] * loops or any(got[1:]):
            failures.append("packets of %s: %s, not %d and no loss" % (pid, got, row[0] * loops))
    warm = [rss for mib, rss in samples if mib >= total_mib / 10]
    if len(warm) >= 2:
        growth = max(warm) - warm[0]
        print("resident memory after the first tenth: %d KiB, then at most %d KiB (growth %d KiB, "
              "bound 2048)" % (warm[0], max(warm), growth))
        if growth > 2048:
            failures.append("resident memory grew by %d KiB" % growth)
    if len(progress) >= 8:
        quarter = len(progress) // 4

        def rate(part):
            (m0, t0), (m1, t1) = part[0], part[-1]
            return (m1 - m0) / (t1 - t0) if t1 > t0 else float("inf")

        second, last = rate(progress[quarter:2 * quarter + 1]), rate(progress[-quarter - 1:])
        print("throughput: %.0f MiB/s in the second quarter, %.0f MiB/s in the last" %
              (second, last))
        if last < second * 0.4:
            failures.append("throughput fell from %.0f to %.0f MiB/s" % (second, last))
    print("%d loops of %s: %.0f MiB through the pipe in %.1f s" %
          (loops, sample.split("/")[-1], total_mib, progress[-1][1] if progress else 0))
    print("summary: %d rows of sections and %d PIDs, each %d times one pass" %
          (len(one_sections), len(one_packets), loops))
    if not one_sections or not one_packets:
        failures.append("no summary to compare")
    for f in failures:
        print("FAIL", f)
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main())
