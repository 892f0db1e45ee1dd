"""What the tests share: bits, and the random calls with the embedded host's verdicts."""

import os
import struct
import typing

import numpy as np

import zelkovan

FUNCTIONS = {function.calculation: function for function in zelkovan.functions.values()}
DAY_0 = np.datetime64("1960-01-01", "D")


def bits(numbers):
    return np.asarray(numbers, np.float64).view(np.uint64)


def same_bits(one, other):
    return bits(one).tolist() == bits(other).tolist()


def host_days(answer):
    """Numbers as the embedded host has them, of what may be dates."""
    answer = np.asarray(answer)
    if answer.dtype.kind != "M":
        return answer
    days = (answer - DAY_0).astype(np.int64).astype(np.float64)
    return np.where(np.isnat(answer), np.nan, days)


class Call(typing.NamedTuple):
    name: str
    arguments: tuple
    verdict: str  # answered, missing, does not solve, too large, no answer, refused
    answer: object  # a float, None, or the sentence

    def fails(self):
        """Whether a call that refuses is what comes of it here."""
        return self.verdict in ("does not solve", "too large", "no answer", "refused")


def _value(word):
    kind, text = word.split(":", 1)
    return text if kind == "t" else struct.unpack(">d", bytes.fromhex(text))[0]


def _argument(word, is_list):
    if not is_list:
        return _value(word)
    return [] if word == "-" else [_value(one) for one in word.split(",")]


def engine_calls():
    """The calls of the file, and how many of its lines cannot be said in Python: a required number is left out."""
    calls, unsaid = [], 0
    with open(os.environ["ENGINE_CALLS"], encoding="ascii") as lines:
        for line in lines:
            name, *words, verdict, answer = line.rstrip("\n").split("\t")
            lists = [parameter["kind"] in ("numbers", "dates") for parameter in FUNCTIONS[name].parameters]
            if any(word == "-" and not is_list for word, is_list in zip(words, lists)):
                unsaid += 1
                continue
            arguments = tuple(_argument(word, is_list) for word, is_list in zip(words, lists))
            calls.append(Call(name, arguments, verdict, _value("n:" + answer) if verdict == "answered" else answer))
    return calls, unsaid
