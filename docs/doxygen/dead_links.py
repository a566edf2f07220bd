"""dead_links.py HTML: names each link, source or anchor of the reference that leads nowhere."""
import html.parser
import pathlib
import sys
import urllib.parse

root = pathlib.Path(sys.argv[1])


class Page(html.parser.HTMLParser):
    def __init__(self, path):
        super().__init__()
        self.anchors, self.links = set(), set()
        self.feed(path.read_text())

    def handle_starttag(self, tag, attributes):
        for key, value in attributes:
            if key == "id" or (key == "name" and tag == "a"):
                self.anchors.add(value)
            if key in ("href", "src") and not value.startswith(("http:", "https:", "javascript:")):
                self.links.add(value)


pages = {path: Page(path) for path in root.glob("*.html")}
dead = 0
for path, page in sorted(pages.items()):
    for link in sorted(page.links):
        target, _, anchor = link.partition("#")
        other = root / urllib.parse.unquote(target) if target else path
        if other.exists() and (not anchor or urllib.parse.unquote(anchor) in pages[other].anchors):
            continue
        print(f"{path.name} leads to {link}, which is not there")
        dead += 1
sys.exit(dead > 0)
