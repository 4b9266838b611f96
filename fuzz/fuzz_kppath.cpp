// SPDX-License-Identifier: MIT
// Any sequence of elements as a painter path: nothing undefined, and what its functions promise of
// closes, directions, ellipses, and the painter's own path.

#include "fuzzing.h"
#include "kppath.h"

#include <algorithm>
#include <cmath>

using Fuzzing::require;

namespace {

KpPath anyPath(FuzzedDataProvider& input)
{
    KpPath path;
    int const count = input.ConsumeIntegralInRange(0, 20);
    for (int i = 0; i < count; ++i) {
        int const type = input.ConsumeIntegralInRange(0, 15) == 0
            ? input.ConsumeIntegral<int>()
            : input.ConsumeIntegralInRange(0, 4);
        double const x = Fuzzing::awkwardReal(input);
        path.append({x, Fuzzing::awkwardReal(input), 1.0, 2.0, type});
    }
    return path;
}

/** Whether the area can be computed without rounding. */
bool isExact(KpPath const& path)
{
    auto const isExactReal = [](double real) {
        return std::abs(real) < 10000.0 && std::floor(real * 1024.0) == real * 1024.0;
    };
    return std::all_of(
        path.elements.cbegin(), path.elements.cend(), [&](KpPath::KpElement const& element) {
            return isExactReal(element.x) && isExactReal(element.y);
        });
}

void checkClose(KpPath path)
{
    int const count = path.count();
    int start = count - 1;
    while (start > 0 && path.at(start).type != 0)
        --start;
    KpPath::KpElement const expected =
        count == 0 ? KpPath::KpElement {0.0, 0.0, 0.0, 0.0, 4} : path.at(start);
    path.closeSubpath();
    require(path.count() == count + 1 && path.last().type == 4, "a close is one element");
    require(Fuzzing::areSameBits(path.last().x, expected.x)
            && Fuzzing::areSameBits(path.last().y, expected.y),
        "a close goes back to where the subpath began");
}

void checkDirection(KpPath path)
{
    bool const isClockwise = path.isClockWise();
    if (!isExact(path))
        return;
    auto const integer = [](double real) { return static_cast<std::int64_t>(real * 1024.0); };
    std::int64_t area = 0;
    for (int i = 0; i < path.count(); ++i) {
        KpPath::KpElement const& from = path.at(i == 0 ? path.count() - 1 : i - 1);
        KpPath::KpElement const& to = path.at(i);
        area += integer(from.x) * integer(to.y) - integer(to.x) * integer(from.y);
    }
    require(isClockwise == (area > 0), "a path is clockwise by the sign of its area");
}

void checkPainterPath(KpPath const& path)
{
    QPainterPath const painted = path.toPainterPath();
    KpPath const back = KpPath::fromPainterPath(painted);
    require(back.count() == painted.elementCount(), "an element for each of the painter's");
    for (int i = 0; i < back.count(); ++i) {
        KpPath::KpElement const& element = back.at(i);
        QPainterPath::Element const& source = painted.elementAt(i);
        require(element.type == source.type && Fuzzing::areSameBits(element.x, source.x)
                && Fuzzing::areSameBits(element.y, source.y),
            "the elements are the painter's");
    }
}

void checkEllipse(FuzzedDataProvider& input)
{
    double const x = Fuzzing::awkwardReal(input);
    double const y = Fuzzing::awkwardReal(input);
    double const width = Fuzzing::awkwardReal(input);
    KpPath path;
    path.elements = KpPath::ellipse({x, y, width, Fuzzing::awkwardReal(input)});
    require(path.count() == 14, "an ellipse has fourteen elements");
    require(path.at(0).type == 0 && path.last().type == 4, "from a move to a close");
    for (int const end : {12, 13}) {
        require(std::isnan(path.at(0).x) || path.at(end).x == path.at(0).x, "an ellipse is closed");
        require(std::isnan(path.at(0).y) || path.at(end).y == path.at(0).y, "in both directions");
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size)
{
    FuzzedDataProvider input(data, size);
    while (input.remaining_bytes() > 0) {
        checkEllipse(input);
        KpPath const path = anyPath(input);
        checkClose(path);
        checkDirection(path);
        checkPainterPath(path);
    }
    return 0;
}
