// SPDX-License-Identifier: MIT
#include "commandline.h"
#include "common/text.h"
#include "console.h"
#include "suggestion.h"
#include "texttable.h"
#include "unitcode_p.h"
#include "unitutil.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QPageSize>
#include <QVector>

#include <algorithm>
#include <iterator>

namespace {

struct PredefinedPage
{
    int index;
    unsigned int unit; ///< in which the page is defined
    QSizeF pixels;
    QSizeF size; ///< in its unit

    explicit PredefinedPage(int number = 0)
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

using Pages = QVector<PredefinedPage>;

Pages allPages()
{
    Pages pages;
    for (int index = 0; index < predefinedPageCount; ++index)
        pages << PredefinedPage(index);
    return pages;
}

/** The names of a page: of "Letter / ANSI A" each part is one, too. */
QStringList namesOf(PredefinedPage const& page)
{
    QString const own = page.name();
    return own.isEmpty() ? QStringList() : own.split(QStringLiteral(" / ")) << own;
}

/** In any letter case. */
bool isNamed(PredefinedPage const& page, QString const& name)
{
    return namesOf(page).contains(name, Qt::CaseInsensitive);
}

/** What is wrong with a name that no page has. */
Diagnostic unknownName(QString const& name, Pages const& pages)
{
    QStringList names;
    for (PredefinedPage const& page : pages)
        names << namesOf(page);
    names.removeDuplicates();
    return misuse(withSuggestion(QStringLiteral("there is no page '%1'").arg(name), name, names));
}

/** Of the pages those that the operands name, in their order; what is wrong with a name, or nothing. */
std::optional<Diagnostic> choosePages(QStringList const& operands, Pages& pages)
{
    Pages const all = allPages();
    if (operands.isEmpty())
        pages = all;
    for (QString const& name : operands) {
        int const before = pages.size();
        std::copy_if(all.begin(), all.end(), std::back_inserter(pages),
            [&name](PredefinedPage const& page) { return isNamed(page, name); });
        if (pages.size() == before)
            return unknownName(name, all);
    }
    return std::nullopt;
}

QString toText(Pages const& pages)
{
    TextTable table({QStringLiteral(">index"), QStringLiteral(">mm"), QStringLiteral(">in"),
        QStringLiteral(">px"), QStringLiteral("unit"), QStringLiteral("name")});
    for (PredefinedPage const& page : pages) {
        QString const name = page.name();
        table.addRow({QString::number(page.index), sizeText(page.in(UnitMillimetre)),
            sizeText(page.in(UnitInch)), sizeText(page.pixels), UnitUtil::unitStr(page.unit),
            name.isEmpty() ? QStringLiteral("-") : name});
    }
    return table.toText();
}

QString toJsonText(Pages const& pages)
{
    QJsonArray array;
    for (PredefinedPage const& page : pages) {
        QString const name = page.name();
        array.append(QJsonObject {{QStringLiteral("index"), page.index},
            {QStringLiteral("unit"), UnitUtil::unitStr(page.unit)},
            {QStringLiteral("mm"), toJson(page.in(UnitMillimetre))},
            {QStringLiteral("in"), toJson(page.in(UnitInch))},
            {QStringLiteral("px"), toJson(page.pixels)},
            {QStringLiteral("name"), name.isEmpty() ? QJsonValue() : QJsonValue(name)}});
    }
    return QString::fromUtf8(QJsonDocument(array).toJson());
}

Outcome runPages(Command const& command, QStringList const& arguments)
{
    CommandLine line(command);
    if (auto const end = line.parse(arguments))
        return *end;
    Pages pages;
    if (auto const fault = choosePages(line.operands(), pages))
        return line.misused(*fault);
    QString const output = line.isSet(QStringLiteral("json")) ? toJsonText(pages) : toText(pages);
    return printOut(output) ? Outcome::Done : Outcome::Failed;
}

constexpr Value pageValue {"NAME"};

constexpr CommandOption pagesOptions[] = {
    {"", "json", {}, "Print JSON instead of a table."},
};

} // namespace

constexpr Command pagesCommand {"pages", "[NAME...]",
    "A page like A4, in any letter case; all if none is named.", {pageValue},
    "Lists the predefined page sizes.", runPages, {pagesOptions}};
