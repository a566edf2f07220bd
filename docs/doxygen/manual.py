"""manual.py XML MAN: writes a manual page for each function, and vantiro(3) with the rules of all,
from what Doxygen makes of the headers."""
import pathlib
import re
import sys
import xml.etree.ElementTree as xml

SOURCE, TARGET = map(pathlib.Path, sys.argv[1:])


def escaped(text):
    return re.sub(r"(?m)^([.'])", r"\\&\1", text.replace("\\", r"\e").replace("-", r"\-"))


def inline(element):
    """The text of a paragraph, in one line."""
    text = escaped(element.text or "")
    for child in element:
        if child.tag == "sp":
            text += " "
        elif child.tag == "computeroutput":
            text += rf"\fB{inline(child)}\fP"
        elif child.tag == "emphasis":
            text += rf"\fI{inline(child)}\fP"
        else:
            text += inline(child)
        text += escaped(child.tail or "")
    return re.sub(r"\s+", " ", text)


def code(listing):
    lines = ["".join(walked(line)) for line in listing.iter("codeline")]
    return [".PP", ".RS 4", ".nf", *map(escaped, lines), ".fi", ".RE"]


def walked(element):
    yield " " if element.tag == "sp" else element.text or ""
    for child in element:
        yield from walked(child)
        yield child.tail or ""


def blocks(element):
    """The lines of a description: its paragraphs, and what they hold, one after the other."""
    lines, text = [], xml.Element("para")

    def flush():
        words = inline(text).strip()
        if words:
            lines.extend([".PP", words])
        text.clear()

    for para in element.findall("para"):
        text.text = para.text
        for child in para:
            if child.tag in ("itemizedlist", "orderedlist"):
                flush()
                for number, item in enumerate(child.findall("listitem"), 1):
                    mark = r"\(bu" if child.tag == "itemizedlist" else f"{number}."
                    lines.extend([f".IP {mark} 4", " ".join(map(inline, item.findall("para"))).strip()])
            elif child.tag == "programlisting":
                flush()
                lines.extend(code(child))
            elif child.tag == "table":
                flush()
                for row in child.findall("row"):
                    cells = [inline(cell).strip() for cell in row.findall("entry")]
                    lines.extend([".TP", cells[0], " \\(em ".join(cells[1:])])
            elif child.tag in ("parameterlist", "simplesect"):
                continue
            else:
                text.append(child)
                continue
            text.text = child.tail
        flush()
    return lines


def parameters(function, kind):
    for item in function.findall(f"detaileddescription//parameterlist[@kind='{kind}']/parameteritem"):
        names = ", ".join(inline(name) for name in item.iter("parametername"))
        yield from [".TP", rf"\fB{names}\fP", inline(item.find("parameterdescription")).strip()]


def sections(function, kind):
    for section in function.findall(f"detaileddescription//simplesect[@kind='{kind}']"):
        yield from [".PP", inline(section).strip()]


def page(name, title, parts):
    lines = [f'.TH "{name}" 3 "" "vantiro" "vantiro"', ".nh", ".ad l", ".SH NAME",
             f"{name} \\- {title}"]
    for heading, body in parts:
        body = list(body)
        if body:
            lines.extend([f".SH {heading}", *body])
    (TARGET / f"{name}.3").write_text("\n".join(lines) + "\n")


def write(group, function, names):
    name = function.findtext("name")
    example = group.find("detaileddescription//programlisting")
    kin = [f"\\fB{other}\\fP(3)," for other in names if other != name]
    declared = escaped(function.findtext("definition") + function.findtext("argsstring") + ";")
    page(name, inline(function.find("briefdescription")).strip(), [
        ("SYNOPSIS", [r"\fB#include <vantiro.h>\fP", ".PP", rf"\fB{declared}\fP"]),
        ("DESCRIPTION", blocks(function.find("detaileddescription"))),
        ("PARAMETERS", parameters(function, "param")),
        ("RETURN VALUE", [*sections(function, "return"), *parameters(function, "retval")]),
        ("NOTES", sections(function, "note")),
        ("EXAMPLE", [] if example is None else code(example)),
        ("SEE ALSO", [*kin, r"\fBvantiro\fP(3)"]),
    ])


TARGET.mkdir(parents=True)
every, shared = [], []
for path in sorted(SOURCE.glob("group__*.xml")):
    group = xml.parse(path).find("compounddef")
    functions = group.findall("sectiondef/memberdef[@kind='function']")
    names = [function.findtext("name") for function in functions]
    every.append((group.findtext("title"), names))
    shared.extend(group.find("detaileddescription").iter("sect1"))
    for function in functions:
        write(group, function, names)

rules = xml.parse(SOURCE / "vantiro_8h.xml").find("compounddef")
details = rules.find("detaileddescription")
page("vantiro", "grid computing from any program that can call plain functions", [
    ("DESCRIPTION", blocks(details)),
    *((inline(part.find("title")).upper(), blocks(part))
      for part in [*details.iter("sect1"), *shared]),
    ("FUNCTIONS BY TASK", (line for title, names in every for line in (
        ".TP", escaped(title), ", ".join(rf"\fB{name}\fP(3)" for name in names)))),
])
