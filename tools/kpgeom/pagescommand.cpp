// SPDX-License-Identifier: MIT
#include "commandline.h"
#include "common/text.h"
#include "console.h"
#include "texttable.h"
#include "unitcode_p.h"
#include "unitutil.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QPageSize>

namespace {

struct PredefinedPage
{
    int index;
    unsigned int unit; ///< in which the page is defined
    QSizeF pixels;
    QSizeF size; ///< in its unit

    explicit PredefinedPage(int number)
        : index(number)
        , unit(UnitPixel)
    {
        unit = static_cast<unsigned int>(UnitUtil::preDefinedPage(index, pixels, size));
    }

    QSizeF in(unsigned int other) const
    {
        if (other == unit)
            return size;
        return {UnitUtil::pixelToUnit(pixels.width(), other),
            UnitUtil::pixelToUnit(pixels.height(), other)};
    }

    /** The name of the page of just this size, empty if there is none. */
    QString name() const
    {
        QPageSize::PageSizeId const id = QPageSize::id(size,
            unit == UnitInch ? QPageSize::Inch : QPageSize::Millimeter, QPageSize::ExactMatch);
        return id == QPageSize::Custom ? QString() : QPageSize::name(id);
    }
};

QJsonObject toJson(QSizeF const& size)
{
    return {{QStringLiteral("width"), size.width()}, {QStringLiteral("height"), size.height()}};
}

QString toText()
{
    TextTable table({QStringLiteral(">index"), QStringLiteral(">mm"), QStringLiteral(">in"),
        QStringLiteral(">px"), QStringLiteral("unit"), QStringLiteral("name")});
    for (int index = 0; index < predefinedPageCount; ++index) {
        PredefinedPage const page(index);
        QString const name = page.name();
        table.addRow({QString::number(index), sizeText(page.in(UnitMillimetre)),
            sizeText(page.in(UnitInch)), sizeText(page.pixels), UnitUtil::unitStr(page.unit),
            name.isEmpty() ? QStringLiteral("-") : name});
    }
    return table.toText();
}

QString toJsonText()
{
    QJsonArray pages;
    for (int index = 0; index < predefinedPageCount; ++index) {
        PredefinedPage const page(index);
        QString const name = page.name();
        pages.append(QJsonObject {{QStringLiteral("index"), index},
            {QStringLiteral("unit"), UnitUtil::unitStr(page.unit)},
            {QStringLiteral("mm"), toJson(page.in(UnitMillimetre))},
            {QStringLiteral("in"), toJson(page.in(UnitInch))},
            {QStringLiteral("px"), toJson(page.pixels)},
            {QStringLiteral("name"), name.isEmpty() ? QJsonValue() : QJsonValue(name)}});
    }
    return QString::fromUtf8(QJsonDocument(pages).toJson());
}

Outcome runPages(Command const& command, QStringList const& arguments)
{
    CommandLine line(command);
    if (auto const end = line.parse(arguments))
        return *end;
    if (!line.operands().isEmpty())
        return line.misused(misuse(QStringLiteral("no operand is taken")));
    QString const output = line.isSet(QStringLiteral("json")) ? toJsonText() : toText();
    return printOut(output) ? Outcome::Done : Outcome::Failed;
}

constexpr CommandOption pagesOptions[] = {
    {"", "json", {}, "Print JSON instead of a table."},
};

} // namespace

constexpr Command pagesCommand {
    "pages", "", "", {}, "Lists the predefined page sizes.", runPages, {pagesOptions}};
