#!/usr/bin/env python3
"""Times opening a generated form and exporting its headers (quillon -q -g)
for growing element counts, to show that the cost grows linearly.

Usage: bench/form_open.py <build dir> [counts...]   (default 500 5000)
"""
import hashlib, os, statistics, subprocess, sys, tempfile, time

build = sys.argv[1] if len(sys.argv) > 1 else "build"
counts = [int(c) for c in sys.argv[2:]] or [500, 5000]
svd = ('<?xml version="1.0"?>\n<device><name>BENCH</name><peripherals><peripheral><name>B</name>'
       '<baseAddress>0x40000000</baseAddress><registers><register><name>R</name><addressOffset>0</addressOffset>'
       '<size>32</size></register></registers></peripheral></peripherals></device>\n')

def description(n):
    rows = []
    for i in range(n):
        kind = i % 3
        if kind == 0:
            rows.append(f'<checkbox define="P{i // 32}.R{i % 32}[0]" svd="0" header="bench.h" label="c{i}"/>')
        elif kind == 1:
            rows.append(f'<spinbox define="P{i // 32}.R{i % 32}[7:0]" svd="0" header="bench.h" range="0;255" default="{i % 256}"/>')
        else:
            rows.append(f'<combo define="P{i // 32}.R{i % 32}[3:0]" svd="0" header="bench.h"><item label="a" value="0"/><item label="b" value="1"/></combo>')
    text = ('<?xml version="1.0" encoding="UTF-8"?>\n<nvxmlcfg version="2.5.0">\n\t<checksum>' + '0' * 64 +
            '</checksum>\n<svd file="bench.svd"/>\n<gridcontainer columns="4">\n' + "\n".join(rows) +
            '\n</gridcontainer>\n</nvxmlcfg>\n')
    close = text.index("</checksum>")
    digest = hashlib.sha256(text[close:].encode()).hexdigest()
    return text.replace("0" * 64, digest, 1)

env = dict(os.environ, QT_QPA_PLATFORM="offscreen")
results = []
with tempfile.TemporaryDirectory() as tmp:
    env["XDG_CONFIG_HOME"] = env["XDG_RUNTIME_DIR"] = tmp
    open(os.path.join(tmp, "bench.svd"), "w").write(svd)
    for n in counts:
        path = os.path.join(tmp, f"form{n}.xml")
        open(path, "w").write(description(n))
        times = []
        for _ in range(3):
            t = time.perf_counter()
            subprocess.run([os.path.join(build, "quillon"), "-q", "-g", path], env=env, check=True)
            times.append(time.perf_counter() - t)
        results.append((n, statistics.median(times)))
        print(f"{n:6d} elements: median {results[-1][1] * 1000:8.1f} ms")
if len(results) >= 2:
    (n0, t0), (n1, t1) = results[0], results[-1]
    print(f"{n1 / n0:.0f}x the elements took {t1 / t0:.2f}x the time")
