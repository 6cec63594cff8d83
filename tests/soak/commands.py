"""The runtime's commands at random, and what the panel has to show after them."""

ROWS = 60  # more applications than this are never shown
FIELDS = {"d": "deviceTypeForm_Label", "v": "targetVersionForm_Label", "a000": "appnameForm_Label",
          "s000": "plcStatusForm_Label"}
FLAVOURS = ["", "Running", "Förderband Süd", "<b>bold</b>&amp;", "  blanks\tand a tab ", "日本語 ✋", "\\n%1 %2 $(id)"]
JUNK = [b"", b"Quit", b"quit ", b"w2", b"w", b"A001x", b" d#", b"\xff\xfe\xc3", b"n\xff", b"n-1", b"n0", b"n99999999999",
        b"z\0d#", b"x" * 300000, b"i4711", b"i", b"nine"]
DIRT = [b"\xff\xfe#\xc3(", b"\xf0\x9f", b"#cut\0off", b"#" + b"long " * 4000, b"\xed\xa0\x80#", b""]


class Commands:
    """Makes commands; every text has a number of its own, so that a lost one shows."""

    def __init__(self, dice):
        self.dice = dice
        self.count = self.made = self.shown = self.lines = 0
        self.fields = dict.fromkeys(FIELDS)  # None: what it shows is unknown
        self.rows = {}
        self.missing = []  # indices of rows that are not there, which the panel logs

    def text(self):
        self.count += 1
        return f"#{self.count:07} {self.dice.choice(FLAVOURS)}"

    def field(self, prefix):
        self.fields[prefix] = self.text()
        return (prefix + self.fields[prefix]).encode()

    def row(self, letter, index):
        text = self.text()
        if index < self.made:
            self.rows[letter, index] = text
        else:
            self.missing.append(index)
        return f"{letter}{index:03}{text}".encode()

    def number(self, count):
        self.shown = count - 1  # the first extra row cannot be filled: its key is 0
        self.made = max(self.made, self.shown)
        return b"n%d" % count

    def line(self):
        """Returns a command."""
        self.lines += 1
        kind = self.dice.choices("dvasnw?!", (2, 2, 5, 5, 2, 0.3, 2, 0.5))[0]
        if kind in "dv":
            return self.field(kind)
        if kind in "as":
            index = self.dice.randrange(2 * ROWS)
            return self.row(kind, index) if index else self.field(kind + "000")
        if kind == "n":
            return self.number(self.dice.randint(1, ROWS))
        if kind == "!":
            prefix = self.dice.choice(list(FIELDS))
            self.fields[prefix] = None
            return prefix.encode() + self.dice.choice(DIRT)
        return self.dice.choice((b"w0", b"w1", b"w1 and more") if kind == "w" else JUNK)

    def burst(self, size):
        """Returns that many commands, then one for each field that shows something unknown, and the wink's end."""
        lines = [self.line() for _ in range(size)]
        return lines + [self.field(prefix) for prefix, text in self.fields.items() if text is None] + [b"w0"]

    def tidy(self):
        """Returns commands that make every row, show none, and give the fields new texts."""
        return [self.number(ROWS + 1), self.number(1)] + [self.field(prefix) for prefix in FIELDS]

    def expected(self):
        """Returns the texts of the fields and of the rows that are on show."""
        rows = [text for (_, index), text in self.rows.items() if index < self.shown]
        return {FIELDS[prefix]: text for prefix, text in self.fields.items()}, sorted(rows)
