# Hands a page to Doxygen. A link to a program, or to a part of one, alone in a line becomes the code itself; other links to
# what is no page become their text. Headings are plain text.
/^#/s/`//g
s,^\[[^]]*\]\((\.\./)?((interop/)?examples/[a-z_]+\.cpp)\)$,\\include \2,
s,^\[[^]]*\]\((\.\./)?((interop/)?examples/[a-z_]+\.cpp)#([a-z_]+)\)$,\\snippet \2 \4,
s,\[([^]`]*)\]\((\.\./)?(LICENSE|examples)[^)]*\),\1,g
