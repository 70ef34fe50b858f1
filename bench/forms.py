#!/usr/bin/env python3
"""Whole-program benchmarks of the headless runs, on generated forms over the
nRF52840 SVD file of the bundled example:

  generate  quillon -q -g form.xml      (open, export headers) for 100, 1,000
                                        and 10,000 elements
  save      quillon -q -s form.xml      (open, save .qlnp, export headers)
                                        for 500 and 5,000 elements; then a
                                        second save in the same run must
                                        write no header
  load      quillon -q -g form.qlnp     load a saved configuration (which opens
                                        its description), export headers, for
                                        1,000 and 10,000 elements
  script    quillon -q -b s.script      a script of SET/ASSERT pairs, 1,000
                                        and 10,000 lines, on a 1,000-element
                                        form

Each figure is the median of 3 runs (process start included) with the peak
resident memory of the process. Growth is the ratio of the largest to the
smallest case, against the ratio of their sizes.

Usage: bench/forms.py <build dir> [generate|save|load|script ...]   (default: all)
"""
import hashlib, os, re, statistics, subprocess, sys, tempfile, time
import xml.etree.ElementTree as ET

HERE = os.path.dirname(os.path.abspath(__file__))
SVD = os.path.join(HERE, "..", "examples", "nrf52840", "nrf52840_completed.svd")
build = sys.argv[1] if len(sys.argv) > 1 else "build"
parts = sys.argv[2:] or ["generate", "save", "load", "script"]
NAME = re.compile(r"^[A-Za-z_][A-Za-z0-9_]*$")


def svd_fields():
    """(peripheral, register, field, width) of every field the form can bind."""
    root = ET.parse(SVD).getroot()
    out = []
    for p in root.iter("peripheral"):
        pname = p.findtext("name")
        for r in p.iter("register"):
            rname = r.findtext("name")
            if not (NAME.match(pname or "") and NAME.match(rname or "")):
                continue
            for f in r.iter("field"):
                fname, lsb, msb = f.findtext("name"), f.findtext("lsb"), f.findtext("msb")
                if NAME.match(fname or "") and lsb is not None and msb is not None:
                    out.append((pname, rname, fname, int(msb) - int(lsb) + 1))
    return out


FIELDS = svd_fields()


def element(i):
    """Element i of a form, and its define: the SVD's fields first, then
    registers of the description's own (svd="0") once the fields run out."""
    if i < len(FIELDS):
        p, r, f, width = FIELDS[i]
        define, header, bound = f"{p}.{r}.{f}", f"{p.lower()}.h", ""
    else:
        j = i - len(FIELDS)
        define, header, bound, width = f"EXTRA{j // 32}.R{j % 32}[7:0]", "extra.h", ' svd="0"', 8
    if width == 1:
        return define, f'<checkbox define="{define}"{bound} header="{header}" label="{define}"/>'
    if bound and i % 5 == 0:
        # Lists on registers of their own: on an SVD field the file's
        # enumerated values would join the items.
        return define, (f'<combo define="{define}"{bound} header="{header}">'
                        '<item label="zero" value="0"/><item label="one" value="1"/></combo>')
    top = min((1 << width) - 1, 0x7FFFFFFF)
    kind = "spinbox" if top <= 0xFFFF else "hexspinbox"
    return define, f'<{kind} define="{define}"{bound} header="{header}" range="0;{top}" default="{i % (top + 1)}"/>'


def description(n):
    rows, defines = [], []
    for i in range(n):
        define, row = element(i)
        defines.append(define)
        if i % 100 == 0:
            rows.append(f'<groupcontainer label="g{i // 100}"><gridcontainer columns="4">' if i == 0 else
                        f'</gridcontainer></groupcontainer>\n<groupcontainer label="g{i // 100}"><gridcontainer columns="4">')
        rows.append(row)
    rows.append("</gridcontainer></groupcontainer>")
    text = ('<?xml version="1.0" encoding="UTF-8"?>\n<nvxmlcfg version="2.5.0">\n\t<checksum>' + "0" * 64 +
            '</checksum>\n<svd file="nrf52840_completed.svd"/>\n<tabcontainer><verticalcontainer label="Form">\n' +
            "\n".join(rows) + "\n</verticalcontainer></tabcontainer>\n</nvxmlcfg>\n")
    close = text.index("</checksum>")
    return text.replace("0" * 64, hashlib.sha256(text[close:].encode()).hexdigest(), 1), defines


def run(args, env):
    """Seconds and peak resident KiB of one run of quillon."""
    start = time.perf_counter()
    proc = subprocess.Popen([os.path.join(build, "quillon")] + args, env=env,
                            stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
    _, status, usage = os.wait4(proc.pid, 0)
    seconds = time.perf_counter() - start
    if os.waitstatus_to_exitcode(status) != 0:
        sys.exit(f"quillon {' '.join(args)} ended with {os.waitstatus_to_exitcode(status)}")
    return seconds, usage.ru_maxrss


def measure(label, cases, make_args, env):
    results = []
    for n in cases:
        runs = [run(make_args(n), env) for _ in range(3)]
        t = statistics.median(r[0] for r in runs)
        mem = max(r[1] for r in runs)
        results.append((n, t, mem))
        print(f"{label:9s} {n:6d}   {t * 1000:9.1f} ms   {mem / 1024:7.1f} MiB", flush=True)
    (n0, t0, _), (n1, t1, _) = results[0], results[-1]
    print(f"{label:9s} {n1 / n0:.0f}x the size took {t1 / t0:.2f}x the time\n", flush=True)
    return results


def count(log, text):
    with open(log, encoding="utf-8", errors="replace") as f:
        return sum(line.count(text) for line in f)


def main():
    env = dict(os.environ, QT_QPA_PLATFORM="offscreen")
    with tempfile.TemporaryDirectory() as tmp:
        env["XDG_CONFIG_HOME"] = env["XDG_RUNTIME_DIR"] = tmp
        with open(SVD, "rb") as src, open(os.path.join(tmp, "nrf52840_completed.svd"), "wb") as dst:
            dst.write(src.read())
        forms = {}

        def form(n):
            if n not in forms:
                text, defines = description(n)
                path = os.path.join(tmp, f"form{n}.xml")
                with open(path, "w", encoding="utf-8") as f:
                    f.write(text)
                forms[n] = (path, defines)
            return forms[n][0]

        print(f"{len(FIELDS)} fields of the SVD file can be bound; larger forms add registers of their own\n")
        print(f"{'run':9s} {'size':>6s}   {'median':>12s}   {'peak':>11s}")
        if "generate" in parts:
            measure("generate", [100, 1000, 10000], lambda n: ["-q", "-g", form(n)], env)
        if "save" in parts:
            measure("save", [500, 5000], lambda n: ["-q", "-s", form(n)], env)
            # A save to the same file again, nothing changed in between: the
            # headers were written by the first and stay as they are.
            n = 5000
            qlnp = form(n)[:-4] + ".qlnp"
            script = os.path.join(tmp, "save_twice.script")
            with open(script, "w") as f:
                f.write(f"SAVE({qlnp})\n")
            log = os.path.join(tmp, "save_twice.log")
            run(["-q", f"-c{log}", f"-b{script}", f"-s{qlnp}", form(n)], env)
            saves, headers = count(log, "Saved project"), count(log, "Exported headerfile")
            with open(form(n), encoding="utf-8") as f:
                files = len(set(re.findall(r'header="([^"]+)"', f.read())))
            print(f"save twice ({n} elements): {saves} saves, {headers} headers written for {files} header files\n")
        if "load" in parts:
            def saved(n):
                qlnp = form(n)[:-4] + "-load.qlnp"
                if not os.path.exists(qlnp):
                    run(["-q", f"-s{qlnp}", form(n)], env)
                return ["-q", "-g", qlnp]

            measure("load", [1000, 10000], saved, env)
        if "script" in parts:
            n = 1000
            path = form(n)
            defines = forms[n][1]

            def script(lines):
                name = os.path.join(tmp, f"set_assert{lines}.script")
                with open(name, "w") as f:
                    for k in range(lines // 2):
                        d, v = defines[(k * 7) % len(defines)], k % 2
                        f.write(f"SET({d}, {v})\nASSERT({d}, value, {v})\n")
                    f.write("EXIT(0)\n")
                return ["-q", f"-b{name}", path]

            measure("script", [1000, 10000], script, env)


if __name__ == "__main__":
    main()
