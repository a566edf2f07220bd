"""words.py HEADER PAGE: the page has the doctor's words for each status, in the row of the status."""
import pathlib
import re
import sys

header, page = (pathlib.Path(name).read_text() for name in sys.argv[1:])
words = re.findall(r"\{(-\d+),((?:\s*\"[^\"]*\",?)+)\}", header)
for status, texts in words:
    row = next(line for line in page.splitlines() if line.startswith(f"| {status} |"))
    for text in re.sub(r'"\s+"', "", texts).split('",'):
        assert text.strip(' \n"') in row.replace("`", ""), f"{status}: {text} is not in {row}"
assert len(words) > 5
