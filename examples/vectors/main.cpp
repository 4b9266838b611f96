// SPDX-License-Identifier: MIT
// Checks the library that the program is linked with against its conformance vectors: each line of
// the file that is of a function known here. docs/vectors.md has the format.
//
// usage: example_vectors share/kpgeometry/vectors/bound.jsonl

#include <kppoint.h>

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <cmath>
#include <cstdio>
#include <cstdlib>

namespace {

/** "0x1.8p+1", "inf", "nan": strtod reads them all. */
double real(QJsonValue const& text)
{
    return std::strtod(text.toString().toLatin1().constData(), nullptr);
}

/** To the bit: zeros have signs; NaN is NaN. */
bool isSame(double left, double right)
{
    if (std::isnan(left) || std::isnan(right))
        return std::isnan(left) && std::isnan(right);
    return left == right && std::signbit(left) == std::signbit(right);
}

/** [base, rate, value] */
KpReal boundReal(QJsonArray const& fields)
{
    return {static_cast<qint16>(fields.at(0).toInt()), real(fields.at(1)), real(fields.at(2))};
}

/** Whether the library gives the results of a vector of KpReal::updateValue(). */
bool isRight(QJsonObject const& inputs, QJsonObject const& results)
{
    KpReal actual = boundReal(inputs.value(QStringLiteral("real")).toArray());
    actual.updateValue(
        real(inputs.value(QStringLiteral("width"))), real(inputs.value(QStringLiteral("height"))));
    KpReal const expected = boundReal(results.value(QStringLiteral("real")).toArray());
    return actual.base == expected.base && isSame(actual.rate, expected.rate)
        && isSame(actual.value, expected.value);
}

} // namespace

int main(int argc, char** argv)
{
    QFile file(argc == 2 ? QString::fromLocal8Bit(argv[1]) : QString());
    if (!file.open(QIODevice::ReadOnly)) {
        std::fputs("usage: example_vectors bound.jsonl\n", stderr);
        return 2;
    }
    int right = 0;
    int wrong = 0;
    while (!file.atEnd()) {
        QJsonObject const vector = QJsonDocument::fromJson(file.readLine()).object();
        if (vector.value(QStringLiteral("function"))
            != QStringLiteral("KpReal::updateValue(double, double)"))
            continue;
        bool const isAsExpected = isRight(vector.value(QStringLiteral("inputs")).toObject(),
            vector.value(QStringLiteral("results")).toObject());
        ++(isAsExpected ? right : wrong);
    }
    std::printf("%d right, %d wrong\n", right, wrong);
    return wrong == 0 && right > 0 ? 0 : 1;
}
