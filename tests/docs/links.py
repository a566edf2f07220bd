"""links.py PROJECT: every link of a page leads to a file of the tree and a heading in it."""
import pathlib
import re
import subprocess
import sys

project = pathlib.Path(sys.argv[1]).resolve()
pages = subprocess.run(["git", "ls-files", "--cached", "--others", "--exclude-standard", "*.md"],
                       cwd=project, check=True, capture_output=True, text=True).stdout.split()
found, faults = 0, []


def prose(page):
    """A page without its blocks of code, in which a # begins no heading and a ( no link."""
    return re.sub(r"^\s*```.*?^\s*```$", "", page.read_text(), flags=re.S | re.M)


def anchors(page):
    """As the forges name headings."""
    headings = re.findall(r"^#+ +(.*)$", prose(page), re.M)
    return {re.sub(r"[^\w -]", "", heading.lower()).replace(" ", "-") for heading in headings}


for name in pages:
    page = project / name
    for target in re.findall(r"\]\(([^)\s]+)\)", prose(page)):
        if re.match(r"https?:", target):
            continue
        found += 1
        path, _, anchor = target.partition("#")
        other = (page.parent / path).resolve() if path else page
        if project not in other.parents or not other.exists():
            faults.append(f"{name}: there is no {target}")
        elif anchor and anchor not in anchors(other):
            faults.append(f"{name}: there is no heading for {target}")
if found < 60:
    faults.append(f"only {found} links were found")
for fault in faults:
    print("FAILED:", fault)
sys.exit(bool(faults))
