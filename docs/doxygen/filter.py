#!/usr/bin/python3
"""Hands a header to Doxygen as its readers understand it: filter.py HEADER prints it, every line where it was.

- The comment that begins a header describes the file.
- A comment holds for all declarations below it, up to the next comment or empty line.
- What says no more than its own words is left out unless it has a comment: what copies, moves or destroys an object,
  overriding functions, friends, names taken from a base, types that the standard library asks iterators and containers for,
  explicit instantiations, static assertions. So are the macros of the library and the lists that they are for.
"""
import re
import sys

TOKEN = re.compile(r"""
    (?P<comment> (?: ^[ \t]*///(?!<).*\n )+ | /\*\*.*?\*/ )
  | (?P<listing> ^\#[ ]*(?: define[ ]VEXA(?:DATA)?_(?:.*\\\n)*.* | include[ ]<.*\.inc>) )
  | (?P<skipped> //.* | /\*.*?\*/ | ^[ \t]*\#(?:.*\\\n)*.* )
  | (?P<gap>     \n[ \t]*(?=\n) )
  | (?P<code>    "(?:\\.|[^"\\\n])*" | '(?:\\.|[^'\\\n])+' | \w+ | \S )
  | \s""".replace(".*?\\*/", r"(?:[^*]|\*(?!/))*\*/"), re.X | re.M)

LEFT_OUT = re.compile(r"""
    = [ ] (default|delete) [ ] ;$ | [ ] override\b
  | ^(explicit[ ] | VEXADATA_\w+[ ])* (?P<class>\w+) [ ] \( [ ] (const[ ])? (?P=class) [ ] & [ ] (&[ ])? (\w+[ ])? \)
  | ^(?P<type>\w+) [ ] & [ ] operator [ ] = [ ] \( [ ] (const[ ])? (?P=type) [ ] &
  | ^(virtual[ ] | VEXADATA_\w+[ ])* ~ | [ ] operator [ ] delete\b
  | ^using [ ] (iterator_category|iterator_concept|value_type|element_type|difference_type|pointer|reference|type) [ ] =
  | ^friend [ ] (struct|class) [ ] | ^extern [ ] template [ ] | ^static_assert [ ]
  | ^using [ ] ([^=]* | .*\boperator\b.*);$ | ^(class|struct) [ ] [\w: ]+;$""", re.X)
SCOPE = re.compile(r"^(template <.*> )?(class|struct|union|namespace)\b|^extern 0 {$")
ACCESS = ("public", "protected", "private")


class Header:
    def __init__(self, text):
        self.text = text
        self.edits = []      # (from, to, replacement)
        self.comment = None  # that holds for what follows
        self.own = False     # nothing has been declared below it
        self.outer = []      # the comments behind the scopes that are open
        self.begin = None    # of the declaration that is being read
        self.code = []
        self.braces = 0      # open ones that are no scope
        self.parens = 0

    def filtered(self):
        for token in TOKEN.finditer(self.text):
            if token["comment"] and self.begin is None:
                self.comment, self.own = token["comment"], True
            elif token["gap"] and self.begin is None:
                self.comment, self.own = None, False
            elif token["code"]:
                self.read(token)
            elif token["listing"]:
                self.leave_out(token.start(), token.end())
        for begin, end, replacement in reversed(self.edits):
            self.text = self.text[:begin] + replacement + self.text[end:]
        # Doxygen takes what stands before the first full stop for the summary.
        self.text = re.sub(r"(/// Slots? \d+(?: to \d+)?)\. ", r"\1: ", self.text)
        # The comment at the beginning, up to the first line that is code.
        head, rest = re.match(r"((?://(?!/).*\n)*)((?s:.*))", self.text).groups()
        return head.replace("//", "///") + rest.replace("#pragma once", "/// @file", 1)

    def read(self, token):
        word = token["code"]
        if word == "}" and self.begin is None:
            self.comment, self.own = self.outer.pop(), False
            return
        if word == ";" and self.begin is None:
            return
        if self.begin is None:
            self.begin = token.start()
        if word == "}":
            self.braces -= 1
        if self.braces == 0:
            self.code.append("0" if word[0] in "\"'" else word)
        self.parens += {"(": 1, ")": -1}.get(word, 0) if self.braces == 0 else 0
        if word == "{":
            if self.braces == 0 and SCOPE.match(" ".join(self.code)):
                self.outer.append(None if "namespace" in self.code else self.comment)
                self.end(token.end())
                self.comment = None
            else:
                self.braces += 1
        elif self.braces or self.parens:
            return
        elif word == ";" or word == "}" and not re.match(r"\s*[;,{]", self.text[token.end():token.end() + 80]):
            self.end(token.end())
        elif word == ":" and len(self.code) == 2 and self.code[0] in ACCESS:
            self.comment, self.begin, self.code = None, None, []

    def end(self, end):
        """A declaration has been read."""
        line_end = self.text.index("\n", end)
        code = " ".join(self.code)
        if not self.own and "///<" not in self.text[self.begin:line_end]:
            if LEFT_OUT.search(code):
                self.leave_out(self.begin, end)
            elif self.comment and "namespace" not in self.code:
                words = " ".join(re.findall(r"[^\s/*][^\n]*", re.sub(r"^[ \t]*///|^/\*\*|\*/$", "", self.comment, flags=re.M)))
                self.edits.append((self.begin, self.begin, f"/** {words} */ "))
        self.own, self.begin, self.code = False, None, []

    def leave_out(self, begin, end):
        self.edits.append((begin, end, "\n" * self.text.count("\n", begin, end)))


if __name__ == "__main__":
    with open(sys.argv[1], encoding="utf-8") as file:
        sys.stdout.write(Header(file.read()).filtered())
