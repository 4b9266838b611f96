# SPDX-License-Identifier: MIT
"""The blur, from docs/blur.md: each mean by itself, where the library keeps running sums."""
from registry import constant, gives

WORD = 2**32

constant("GaussianBlur::g_gus_blur_scale", [(i + 1)**2 for i in range(255)])


def blurred_line(line, radius, flatness, divisor):
    """A row or a column of bytes of one channel."""
    last = len(line) - 1
    means = []
    for x in range(len(line)):
        total = sum((radius + 1 - abs(d) + flatness) * line[max(0, min(last, x + d))]
                    for d in range(-radius, radius + 1))
        means.append(total % WORD // divisor % 256)
    return means


def transposed(rows):
    return [list(column) for column in zip(*rows)]


@gives("GaussianBlur::blurBitmap(QImage, unsigned int, unsigned int)")
def blur_bitmap(image, format, radius, flatness):  # pylint: disable=redefined-builtin
    radius = min(radius, 254)
    divisor = (flatness * (2 * radius + 1) + (radius + 1)**2) % WORD
    if radius == 0 or divisor == 0 or not image:
        return image
    channels = []
    for shift in range(0, 8, 2):
        rows = [[int(row[i + shift:i + shift + 2], 16) for i in range(0, len(row), 8)]
                for row in image]
        for _ in range(2): # the rows, then the columns
            rows = transposed([blurred_line(row, radius, flatness, divisor) for row in rows])
        channels.append(rows)
    return ["".join(f"{byte:02x}" for pixel in zip(*row) for byte in pixel)
            for row in zip(*channels)]
