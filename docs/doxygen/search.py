"""search.py HTML: has the search of the reference find a function by any part of its name, nextFile of
vantiro_peach_nextFile say. Doxygen's own finds beginnings alone."""
import ast
import pathlib
import re
import sys

SEARCH = pathlib.Path(sys.argv[1]) / "search"

text = (SEARCH / "searchdata.js").read_text()
letters = re.search(r'0: "([^"]*)"', text)[1]
entries = []
for number in range(len(letters)):
    data = (SEARCH / f"all_{number:x}.js").read_text()
    entries += ast.literal_eval(data[data.index("["):].rstrip().rstrip(";"))
page = (SEARCH / "all_0.html").read_text()
for key, found in list(entries):
    if found[0].startswith("vantiro_"):
        for part in re.finditer(r"(?<=_)\w|(?<=[a-z])[A-Z]", found[0]):
            tail = found[0][part.start():].lower().replace("_", "_5f")
            entries.append((tail + "_", found))
by_letter = {}
for number, (key, found) in enumerate(sorted(entries, key=lambda entry: entry[0])):
    # Keys end in a number, so that they differ.
    entry = [re.sub(r"_\d*$", f"_{number}", key), found]
    by_letter.setdefault(key[0], []).append(entry)
for number, letter in enumerate(sorted(by_letter)):
    (SEARCH / f"all_{number:x}.js").write_text(f"var searchData={by_letter[letter]!r};\n")
    (SEARCH / f"all_{number:x}.html").write_text(page.replace("all_0.js", f"all_{number:x}.js"))
(SEARCH / "searchdata.js").write_text(
    re.sub(r'0: "[^"]*"', f'0: "{"".join(sorted(by_letter))}"', text, count=1))
