// SPDX-License-Identifier: MIT
// Any text as a name and any number as that of a name: the fixed table, and no other answer.

#include "fuzzing.h"
#include "quarkmanager.h"

#include <QHash>

using Fuzzing::require;

namespace {

QHash<QString, int> const& numbers()
{
    static QHash<QString, int> const table = [] {
        QHash<QString, int> filled;
        int number = 0;
        for (QString const& name :
            QStringLiteral("px mm cm m km in ft ft-in yd mi pt pc dd cc").split(QLatin1Char(' ')))
            filled.insert(name, number++);
        number = 52;
        for (QString const& name :
            QStringLiteral("MoveTo LineTo CurveTo Ellipse X Y A B C D").split(QLatin1Char(' ')))
            filled.insert(name, number++);
        return filled;
    }();
    return table;
}

void check(QString const& name)
{
    require(
        QuarkManager::quarkFromString(name) == numbers().value(name, -1), "a name as in the table");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size)
{
    FuzzedDataProvider input(data, size);
    auto const number = input.ConsumeIntegral<int>();
    require(
        QuarkManager::quarkToString(number) == numbers().key(number), "a number as in the table");
    int const small = input.ConsumeIntegralInRange(-2, 70);
    require(QuarkManager::quarkToString(small) == numbers().key(small), "a number as in the table");
    std::string const bytes = input.ConsumeRemainingBytesAsString();
    check(QString::fromUtf8(bytes.data(), int(bytes.size())));
    check(QString::fromLatin1(bytes.data(), int(bytes.size())));
    // Pairs of bytes, so that there are characters of all kinds.
    check(QString(
        reinterpret_cast<QChar const*>(QByteArray(bytes.data(), int(bytes.size())).constData()),
        int(bytes.size() / 2)));
    return 0;
}
