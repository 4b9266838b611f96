# SPDX-License-Identifier: MIT
"""The digest, from RFC 1321 and the comments of md5.h: words of 64 bits that are nowhere cut."""
import math

from registry import constant, gives

MASK = 2**64 - 1
SINES = [int(abs(math.sin(i + 1)) * 2**32) for i in range(64)]
SHIFTS = [7, 12, 17, 22] * 4 + [5, 9, 14, 20] * 4 + [4, 11, 16, 23] * 4 + [6, 10, 15, 21] * 4
START = [0x67452301, 0xEFCDAB89, 0x98BADCFE, 0x10325476]
PADDING = b"\x80" + bytes(63)


def mixed(step, b, c, d):
    """The function of a step, and which word of the block it takes."""
    if step < 16:
        return b & c | ~b & MASK & d, step
    if step < 32:
        return b & d | c & ~d & MASK, (5 * step + 1) % 16
    if step < 48:
        return b ^ c ^ d, (3 * step + 5) % 16
    return c ^ (b | ~d & MASK), 7 * step % 16


class Digest:
    """The state of a message."""

    def __init__(self, message=b""):
        self.reset()
        self.update(message)

    def reset(self):
        self.state = list(START)
        self.bits = 0
        self.carry = 0
        self.buffer = bytearray(64)
        self.finished = None

    def transform(self, block):
        words = [int.from_bytes(block[i:i + 4], "little") for i in range(0, 64, 4)]
        a, b, c, d = self.state
        for step in range(64):
            value, word = mixed(step, b, c, d)
            total = (a + value + words[word] + SINES[step]) & MASK
            shift = SHIFTS[step]
            turned = (total << shift | total >> (32 - shift)) & MASK
            a, b, c, d = d, (b + turned) & MASK, b, c
        self.state = [(old + new) & MASK for old, new in zip(self.state, (a, b, c, d))]

    def update(self, message):
        self.finished = None
        used = self.bits // 8 % 64
        self.carry += (self.bits + 8 * len(message) > MASK) + (len(message) >> 29)
        self.bits = (self.bits + 8 * len(message)) & MASK
        for byte in message:
            self.buffer[used] = byte
            used += 1
            if used == 64:
                self.transform(self.buffer)
                used = 0

    def final(self):
        a, b, bits = self.state[0], self.state[1], self.bits
        count = (bits & 0xFFFFFFFF).to_bytes(4, "little") + (self.carry & 0xFFFFFFFF).to_bytes(
            4, "little")
        used = bits // 8 % 64
        self.update(PADDING[:(56 if used < 56 else 120) - used])
        self.update(count)
        digest = b"".join((word & 0xFFFFFFFF).to_bytes(4, "little") for word in self.state)
        self.state[0], self.state[1], self.bits = a, b, bits
        return digest

    def digest(self):
        if self.finished is None:
            self.finished = self.final()
        return self.finished


def both(first, second):
    return bytes.fromhex(first), bytes.fromhex(second)


constant("MD5::PADDING", PADDING.hex())
constant("MD5::HEX", "0123456789abcdef")


@gives("MD5::MD5()")
def empty():
    return {"digest": Digest().digest().hex()}


@gives("MD5::MD5(void const*, unsigned long)", "MD5::MD5(std::string const&)",
       "MD5::MD5(std::ifstream&)", "MD5::update(void const*, unsigned long)",
       "MD5::update(unsigned char const*, unsigned long)", "MD5::update(std::string const&)",
       "MD5::update(std::ifstream&)")
def of_message(message):
    return {"digest": Digest(bytes.fromhex(message)).digest().hex()}


@gives("MD5::toString()")
def of_both(first, second):
    first, second = both(first, second)
    return {"digest": Digest(first + second).digest().hex()}


@gives("MD5::digest()")
def after_digest(first, second):
    first, second = both(first, second)
    state = Digest(first)
    begun = state.digest().hex()
    state.update(second)
    return {"first": begun, "both": state.digest().hex()}


@gives("MD5::final()")
def after_final(first, second):
    first, second = both(first, second)
    state = Digest(first)
    state.final()
    state.update(second)
    return {"digest": state.digest().hex()}


@gives("MD5::reset()")
def after_reset(first, second):
    return {"digest": Digest(both(first, second)[1]).digest().hex()}


@gives("MD5::bytesToHexString(unsigned char const*, unsigned long)")
def hex_string(bytes):  # pylint: disable=redefined-builtin
    return bytes


@gives("MD5::decode(unsigned char const*, unsigned long*, unsigned long)")
def decode(bytes):  # pylint: disable=redefined-builtin
    quads = [bytes[i:i + 8] for i in range(0, len(bytes), 8)]
    return {"words": [f"{int(q[6:8] + q[4:6] + q[2:4] + q[0:2], 16):x}" for q in quads]}


@gives("MD5::encode(unsigned long const*, unsigned char*, unsigned long)")
def encode(words):
    low = [int(word, 16) & 0xFFFFFFFF for word in words]
    return {"bytes": "".join(word.to_bytes(4, "little").hex() for word in low)}


@gives("MD5::transform(unsigned char const*)")
def transform(block):
    state = Digest()
    state.transform(bytes.fromhex(block))
    return {"digest": state.digest().hex()}
