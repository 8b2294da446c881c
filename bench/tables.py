"""How figures are shown: on the terminal, beside an earlier run, and in the README."""

from figures import is_met

BEGIN = "<!-- written by ./dev bench --readme -->"
END = "<!-- end of what is written by ./dev bench --readme -->"


# What is counted has no digits behind the point, what is measured has three that count.
COUNTED = ("", "bytes")

# Two runs are further apart than the rounds of one, even when nothing was changed.
LEAST_CHANGE = 0.01


def short(number, unit):
    size = abs(number)
    if unit in COUNTED or size >= 100:
        return f"{number:,.0f}"
    # Adding zero takes the sign off a zero.
    return f"{number:.1f}" if size >= 10 else f"{round(number, 2) + 0.0:.2f}"


def with_unit(number, unit):
    return f"{short(number, unit)} {unit}".rstrip()


def line(entry):
    low, median, high = (short(entry[which], entry["unit"]) for which in ("low", "median", "high"))
    spread = f"{low} to {high}" if entry["rounds"] > 1 else ""
    verdict = ""
    if entry["target"] is not None:
        verdict = f"at most {entry['target']:,g}  {'met' if is_met(entry) else 'MISSED'}"
    indent = "    " if "of" in entry else "  "
    return f"{indent + entry['what']:<86} {median:>10} {entry['unit']:<11} {spread:<16} {verdict}".rstrip()


def comparison(then, now):
    """Lines that set two runs side by side, figure by figure."""
    earlier = {entry["name"]: entry for entry in then["figures"]}
    yield f"Then: {described(then)}"
    yield f"Now:  {described(now)}"
    if then["machine"] != now["machine"] or then["engine"] != now["engine"]:
        yield "Not the same machine or engine, so only the ratios can be compared."
    yield f"  {'':<64} {'then':>10} {'now':>10} {'':<11} {'change':>8}"
    for entry in now["figures"]:
        if entry["name"] in earlier:
            yield compared(earlier[entry["name"]], entry)


def compared(then, now):
    difference = now["median"] - then["median"]
    change = f"{difference / then['median'] * 100:+.0f} %" if then["median"] >= 0.01 else ""
    mark = ""
    spreads = then["high"] - then["low"] + now["high"] - now["low"]
    if abs(difference) > max(spreads, LEAST_CHANGE * abs(then["median"])):
        mark = "worse" if difference > 0 else "better"
    medians = " ".join(f"{short(entry['median'], entry['unit']):>10}" for entry in (then, now))
    return f"  {now['name']:<64} {medians} {now['unit']:<11} {change:>8}  {mark}".rstrip()


def described(run):
    return f"{run['date']}, commit {run['commit'][:12] or 'unknown'}, {on_what(run)}"


def on_what(run):
    about = run["machine"]
    memory = f", {about['memory_gib']:g} GiB" if about["memory_gib"] else ""
    caches = f", caches {about['caches']}" if about.get("caches") else ""
    return f"{about['cpu']}, {about['cores']} cores{caches}{memory}, Godot {run['engine']}"


def readme(run):
    """A row for each target, and for what else a reader may ask."""
    entries = {entry["name"]: entry for entry in run["figures"]}
    yield BEGIN
    yield f"Measured on {on_what(run)}, {run['date'][:10]}: medians of"
    yield f"{min(entry['rounds'] for entry in run['figures'] if entry['rounds'] > 1)} rounds or more, in each of which a figure and what stands beside it have their turn."
    yield ""
    yield "| | Costs | Beside | Ratio | At most | |"
    yield "|---|---|---|---|---|---|"
    subject = None
    for entry in run["figures"]:
        if entry["target"] is None and not entry["in_readme"]:
            continue
        of, over, *yardstick = [entries[name] for name in entry["of"]] if "of" in entry else [entry, None]
        cells = [
            run["subjects"][str(entry["subject"])] if entry["subject"] != subject else "",
            f"{of['what']}: {with_unit(of['median'], of['unit'])}",
            beside(over, yardstick),
            short(entry["median"], entry["unit"]) if over else "",
            f"{entry['target']:,g} {entry['unit']}".rstrip() if entry["target"] is not None else "",
            "" if entry["target"] is None else "met" if is_met(entry) else "**missed**",
        ]
        subject = entry["subject"]
        yield "| " + " | ".join(cells) + " |"
    yield END


def beside(over, yardstick):
    if not over:
        return ""
    said = f"{over['what']}: {with_unit(over['median'], over['unit'])}"
    if yardstick:
        larger, smaller = yardstick
        said += f"; {larger['what']}: {short(larger['median'] / smaller['median'], 'times')} times"
    return said


def put_into(text, block):
    """The text with the block in place of the one between the marks; None when the marks are not there."""
    begin, end = text.find(BEGIN), text.find(END)
    if begin < 0 or end < begin:
        return None
    return text[:begin] + block + text[end + len(END):]
