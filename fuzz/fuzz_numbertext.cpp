// SPDX-License-Identifier: MIT
// Numbers as text and back: to the last bit and the last character what Qt makes of them, for all
// that the short ways of the documents' own conversions take, and for all that they do not.

#include "fuzzing.h"
#include "numbertext_p.h"

using Fuzzing::require;

namespace {

void checkReal(double real)
{
    QString const text = NumberText::fromReal(real);
    require(text == QString::number(real, 'g', 6), "a real is written as Qt writes it");
    double const read = NumberText::toReal(text);
    require(Fuzzing::areSameBits(read, text.toDouble()), "what is written is read as Qt reads it");
    require(NumberText::fromReal(read) == text, "six digits survive");
}

void checkText(QString const& text)
{
    QStringRef const reference(&text);
    double const real = text.toDouble();
    require(Fuzzing::areSameBits(NumberText::toReal(text), real), "a string is a real as in Qt");
    require(Fuzzing::areSameBits(NumberText::toReal(reference), real), "so is a part of one");
    auto const base = static_cast<qint16>(text.toInt());
    require(NumberText::toBase(text) == base, "a string is a base as in Qt, but for its high bits");
    require(NumberText::toBase(reference) == base, "so is a part of one");
}

/** Mostly characters of numbers, so that not all of it is refused at once. */
QString numberLike(FuzzedDataProvider& input)
{
    static constexpr char characters[] = "0123456789012345678901234567890....---++eEinfa ,x\t\0";
    QString text;
    int const count = input.ConsumeIntegralInRange(0, 24);
    for (int i = 0; i < count; ++i) {
        auto const byte = input.ConsumeIntegral<std::uint8_t>();
        text += byte < 250 ? QChar(QLatin1Char(characters[byte % sizeof characters]))
                           : QChar(input.ConsumeIntegral<ushort>());
    }
    return text;
}

/** A real near a tie of six digits, where rounding is decided. */
double nearTie(FuzzedDataProvider& input)
{
    double real = input.ConsumeIntegralInRange(100000, 999999) + 0.5;
    int const places = input.ConsumeIntegralInRange(-3, 12);
    for (int i = 0; i < places; ++i)
        real /= 10.0;
    for (int i = places; i < 0; ++i)
        real *= 10.0;
    int const steps = input.ConsumeIntegralInRange(-2, 2);
    for (int i = 0; i != steps; i += steps < 0 ? -1 : 1)
        real = std::nextafter(real, steps < 0 ? 0.0 : 1e300);
    return real;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size)
{
    FuzzedDataProvider input(data, size);
    while (input.remaining_bytes() > 0) {
        checkReal(Fuzzing::awkwardReal(input));
        double const tie = nearTie(input);
        checkReal(tie);
        checkReal(-tie);
        checkText(numberLike(input));
        auto const base = input.ConsumeIntegral<qint16>();
        require(NumberText::fromBase(base) == QString::number(base), "a base is written as by Qt");
    }
    return 0;
}
