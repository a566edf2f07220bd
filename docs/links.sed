# Filters a page for Doxygen, which neither gives headings the names by which links call them, nor
# follows links to a heading of another page, to a header or to what is not part of the reference.
/^ *```/,/^ *```$/b
s/\]\(([^)]*\.md)?#([^)]*)\)/](@ref \2)/g
s/\]\([^)]*include\/([^)]*)\)/](@ref \1)/g
s/\[([^]]*)\]\([^):]*\.(c|cpp|hpp|java|py|properties|json)\)/\1/g
/^##+ /{
  h
  s/^#+ (.*)/\L\1/
  s/[^a-z0-9 -]//g
  s/ /-/g
  s/.*/ {#&}/
  H
  x
  s/\n//
}
