"""A call's argument record, and the one way in which every calculation reads, checks and refuses its arguments.

    call = Call([Number(0.05), Number(12.0), Text(b"act/360"), AbsentNumber(), NullText()])

Slot 0 is the calculation's name; the list given here starts at slot 1. `call.count` includes the name.
`call.result` is None while nothing has been written, then a float; `call.flagged` holds the slots marked invalid.

A calculation is a function(call) that either stores call.result (success) or lets one of the takers below refuse.
A refusal is the exception Refused(status); `run(calculation, call)` catches it and gives (status, flagged, result).

Refusing                                             result         flag   status
  call.refuse(slot)          absent or against a rule  MISSING_VALUE  slot   120836
  call.refuse(slot, MISSING) a NaN                     MISSING_VALUE  slot   120833
  call.fail()                the calculation failed    MISSING_VALUE  none   120836
  call.fail_silently()       the same                  untouched      none   120836

Takers (slot numbers from 1); the order of the calls is the order of the checks
  given(i)                   the call's count reaches slot i
  absent(i)                  the count does not reach slot i, or its value pointer is null
  number(i)                  required number
  positive(i)                required number > 0
  number_or_missing(i)       read without an absence test: a null value pointer reads as MISSING_VALUE
  optional_number(i, d=0.0)  not reached, null or NaN: the default d
  whole(i)                   required whole number, 64 bits signed (no lower bound)
  whole32(i)                 its low 32 bits, signed (no lower bound)
  count32(i)                 its low 32 bits, signed, >= 1
  date(i)                    Julian day number of a host date: whole + HOST_EPOCH_JULIAN_DAY
  frequency(i)               whole > 0 tested on 64 bits; then its low 32 bits
  basis(i)                   day-count basis 0..4: not reached 0; numeric NaN or null 1; numeric code; keyword text
  payment_type(i)            optional flag: not reached, null or NaN 0; exactly a 32-bit whole number; at most 1
  payment_type(i, upper_bound=False)   the same without the upper bound
"""
from ieee import MISSING_VALUE, TWO_53, bits, is_nan, low32, trunc32, trunc64

SUCCESS = 0
MISSING = 120833
INVALID = 120836

NUMERIC = 1
CHARACTER = 2

HOST_EPOCH_JULIAN_DAY = 2436935          # 1 January 1960, host date 0

BASIS_KEYWORDS = [(0, b"30/360"), (1, b"ACTUAL"), (2, b"ACT/360"), (3, b"ACT/365"), (4, b"EU30/360")]


class Number:
    """A numeric argument."""
    type = NUMERIC

    def __init__(self, value):
        self.value = float(value)

    def encoded(self):
        return "n:%016x" % bits(self.value)


class AbsentNumber:
    """A numeric slot whose value pointer is null."""
    type = NUMERIC
    value = None

    def encoded(self):
        return "n:null"


class Text:
    """A character argument, bytes with an explicit length."""
    type = CHARACTER

    def __init__(self, text):
        self.text = text

    def encoded(self):
        return "c:" + self.text.hex()


class NullText:
    """A character slot whose text pointer is null."""
    type = CHARACTER
    text = None

    def encoded(self):
        return "c:null"


class Refused(Exception):
    def __init__(self, status):
        super().__init__(status)
        self.status = status


class TooLong(Exception):
    """A literal loop would take too many steps: the draw is thrown away. No rule of the calculations."""


MOST_STEPS = 20000


def limit_steps(steps):
    if steps > MOST_STEPS:
        raise TooLong()


class Call:
    def __init__(self, arguments, name=b"NAME"):
        self.slots = [Text(name)] + list(arguments)
        self.count = len(self.slots)
        self.result = None
        self.flagged = set()

    # Refusing

    def refuse(self, i, status=INVALID):
        self.result = MISSING_VALUE
        self.flagged.add(i)
        raise Refused(status)

    def fail(self):
        self.result = MISSING_VALUE
        raise Refused(INVALID)

    def fail_silently(self):
        raise Refused(INVALID)

    # Presence

    def given(self, i):
        return i < self.count

    def absent(self, i):
        return not self.given(i) or self.slots[i].value is None

    # Numbers

    def number(self, i):
        value = self.slots[i].value              # a text in a numeric place is never drawn
        if value is None:
            self.refuse(i)
        if is_nan(value):
            self.refuse(i, MISSING)
        return value

    def positive(self, i):
        value = self.number(i)
        if not value > 0.0:
            self.refuse(i)
        return value

    def number_or_missing(self, i):
        value = self.slots[i].value
        return MISSING_VALUE if value is None else value

    def optional_number(self, i, default=0.0):
        if self.absent(i) or is_nan(self.slots[i].value):
            return default
        return self.slots[i].value

    # Whole numbers

    def whole(self, i):
        x = self.number(i)
        if x > TWO_53:                           # only the positive side is bounded
            self.refuse(i)
        k = trunc64(x)
        if abs(x - float(k)) > 1e-12 * abs(x):
            self.refuse(i)
        return k

    def whole32(self, i):
        return low32(self.whole(i))

    def count32(self, i):
        k = self.whole32(i)
        if k < 1:
            self.refuse(i)
        return k

    def date(self, i):
        return self.whole(i) + HOST_EPOCH_JULIAN_DAY

    def frequency(self, i):
        k = self.whole(i)
        if k <= 0:
            self.refuse(i)
        return low32(k)

    # Codes

    def basis(self, i):
        if not self.given(i):
            return 0
        slot = self.slots[i]
        if slot.type == NUMERIC:
            value = self.number_or_missing(i)
            if is_nan(value):
                return 1
            code = trunc32(value)
            if code > 5:
                self.refuse(i)
            if code not in [known for known, _ in BASIS_KEYWORDS]:
                self.refuse(i)
            return code
        if slot.type == CHARACTER:
            if slot.text is None or not 1 <= len(slot.text) <= 255:
                self.refuse(i)
            text = slot.text.replace(b" ", b"").upper()   # only the byte 0x20 is a blank; upper() touches a-z alone
            for code, keyword in BASIS_KEYWORDS:
                if text == keyword:
                    return code
            self.refuse(i)
        self.refuse(i)

    def payment_type(self, i, upper_bound=True):
        if self.absent(i) or is_nan(self.slots[i].value):
            return 0
        value = self.slots[i].value
        code = trunc32(value)
        if value != float(code):                 # exact, without the tolerance of whole numbers
            self.refuse(i)
        if upper_bound and value > 1.0:
            self.refuse(i)
        return code


def run(calculation, call):
    """(raw handler status, flagged slots in order, result or None when untouched)"""
    try:
        calculation(call)
        status = SUCCESS
    except Refused as refused:
        status = refused.status
    return status, sorted(call.flagged), call.result
