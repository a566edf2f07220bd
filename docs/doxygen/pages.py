"""pages.py PAGE: a page as Doxygen reads it, which neither gives headings the names by which links call
them, nor follows links to a heading of another page, to a header or to what is not in the reference."""
import pathlib
import re
import sys

ROOT = pathlib.Path(__file__).resolve().parents[2]
page = pathlib.Path(sys.argv[1]).resolve()
seen = []


def name(path, heading=""):
    """What Doxygen is to call a page, or a heading of it."""
    words = f"page-{path.relative_to(ROOT).with_suffix('')}".replace("-docs/", "-")
    slug = re.sub(r"[^\w -]", "", heading.lower()).replace(" ", "-")
    return re.sub(r"[/_.]", "-", words.lower()) + (f"-{slug}" if slug else "")


def link(found):
    picture, text, path, anchor = found.groups()
    target = (page.parent / path).resolve() if path else page
    if picture:
        return f'<img src="{target.relative_to(ROOT / "docs")}" alt="{text}"/>'
    if target.suffix == ".md":
        return f"[{text}](@ref {name(target, anchor or '')})"
    if target.suffix in (".h", ".hpp"):
        return f"[{text}](@ref {target.name})"
    return text


def prose(lines):
    heading = re.match(r"(#+) +(.*)$", lines)
    if heading and len(heading[1]) > 1:
        anchor = name(page, heading[2])
        seen.append(anchor)
        # As the forges do with headings of one name: C and C++.
        again = seen.count(anchor) - 1
        return f"{lines} {{#{anchor}{f'-{again}' if again else ''}}}"
    if heading:
        return lines if page.stem == "reference" else f"{lines} {{#{name(page)}}}"
    return re.sub(r"(!?)\[([^]]*)\]\((?!https?:|@ref)([^)#\s]*)(?:#([^)\s]*))?\)", link, lines)


# A link may be broken across lines, a block of code has none.
for part in re.split(r"(^ *```.*?^ *```$|^#[^\n]*$)", page.read_text(), flags=re.S | re.M):
    print(part if part.lstrip().startswith("```") else prose(part), end="")
