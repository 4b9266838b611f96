// SPDX-License-Identifier: MIT
// Says whether two pictures look alike. Machines differ in how they smooth the edges of lines and
// letters, so a few pixels may differ by much, and all by little.
//
// usage: comparepictures OLD NEW

#include <QImage>

#include <algorithm>
#include <cstdio>
#include <cstdlib>

namespace {

constexpr int sameLevels = 24; // of 255, in each channel
constexpr double mostThatMayDiffer = 0.0005; // of all pixels

bool isAlike(QRgb left, QRgb right)
{
    int const farthest =
        std::max({std::abs(qRed(left) - qRed(right)), std::abs(qGreen(left) - qGreen(right)),
            std::abs(qBlue(left) - qBlue(right)), std::abs(qAlpha(left) - qAlpha(right))});
    return farthest <= sameLevels;
}

int countDifferences(QImage const& left, QImage const& right)
{
    int count = 0;
    for (int y = 0; y < left.height(); ++y) {
        for (int x = 0; x < left.width(); ++x)
            count += isAlike(left.pixel(x, y), right.pixel(x, y)) ? 0 : 1;
    }
    return count;
}

} // namespace

int main(int argc, char** argv)
{
    if (argc != 3) {
        std::fputs("usage: comparepictures OLD NEW\n", stderr);
        return 2;
    }
    QImage const left(QString::fromLocal8Bit(argv[1]));
    QImage const right(QString::fromLocal8Bit(argv[2]));
    if (left.isNull() || right.isNull()) {
        std::fprintf(stderr, "%s: cannot be read\n", argv[left.isNull() ? 1 : 2]);
        return 2;
    }
    if (left.size() != right.size()) {
        std::fprintf(stderr, "%s: was %d x %d, %s is %d x %d\n", argv[1], left.width(),
            left.height(), argv[2], right.width(), right.height());
        return 1;
    }
    double const part = countDifferences(left, right) / (double(left.width()) * left.height());
    if (part <= mostThatMayDiffer)
        return 0;
    std::fprintf(stderr, "%s: %.2f %% of its pixels differ from those of %s; %.2f %% may\n",
        argv[1], 100 * part, argv[2], 100 * mostThatMayDiffer);
    return 1;
}
