// SPDX-License-Identifier: MIT
#include "model/shapedocument.h"

#include <algorithm>

/** Some neighbours in a document, and what stands in their place. */
struct ShapeDocument::Splice
{
    int first;
    Items before;
    Items after;
    int shownBefore = -1; ///< the outline to become the current one when it is undone; -1: any
    int shownAfter = -1; ///< likewise when it is made

    Splice reversed() const { return {first, after, before, shownAfter, shownBefore}; }
};

/** One step of undo: splices, made one after the other. */
class SpliceStep : public QUndoCommand
{
public:
    SpliceStep(
        ShapeDocument& document, std::vector<ShapeDocument::Splice> splices, QString const& text)
        : QUndoCommand(text)
        , m_document(document)
        , m_splices(std::move(splices))
    {
    }

    void redo() override { m_document.apply(m_splices); }

    void undo() override
    {
        std::vector<ShapeDocument::Splice> back;
        for (auto splice = m_splices.crbegin(); splice != m_splices.crend(); ++splice)
            back.push_back(splice->reversed());
        m_document.apply(back);
    }

private:
    ShapeDocument& m_document;
    std::vector<ShapeDocument::Splice> const m_splices;
};

namespace {

WorkingShape emptyShape()
{
    return workingShapeOf({QString(), QSizeF(100.0, 100.0), std::nullopt, {}, {}, -1});
}

} // namespace

ShapeDocument::ShapeDocument(QObject* parent)
    : QObject(parent)
    , m_working(emptyShape())
{
}

ShapeDocument::~ShapeDocument() = default;

void ShapeDocument::reset(Items const& items)
{
    int const before = count();
    m_stack.clear();
    m_items = items;
    m_current = m_items.empty() ? -1 : 0;
    takeWorking();
    Q_EMIT itemsReplaced(0, before, count());
    Q_EMIT currentChanged();
    Q_EMIT workingChanged();
}

void ShapeDocument::append(Items const& items)
{
    int const first = count();
    exchange({first, {}, items});
    Q_EMIT itemsReplaced(first, 0, count() - first);
    if (m_current < 0)
        setCurrent(0);
}

void ShapeDocument::insert(int index, Items const& items, QString const& text)
{
    if (items.empty() || index < 0 || index > count())
        return;
    push({{index, {}, items}}, text);
}

void ShapeDocument::remove(int index, int count, QString const& text)
{
    if (index < 0 || count < 1 || index > this->count() - count)
        return;
    auto const first = m_items.cbegin() + index;
    push({{index, Items(first, first + count), {}}}, text);
}

void ShapeDocument::move(int from, int to, QString const& text)
{
    int const last = count() - 1;
    if (from == to || std::min(from, to) < 0 || std::max(from, to) > last)
        return;
    auto const begin = m_items.cbegin() + std::min(from, to);
    Items const before(begin, m_items.cbegin() + std::max(from, to) + 1);
    Items after = before;
    if (from < to)
        std::rotate(after.begin(), after.begin() + 1, after.end());
    else
        std::rotate(after.begin(), after.end() - 1, after.end());
    push({{std::min(from, to), before, after, from, to}}, text);
}

void ShapeDocument::replace(
    std::vector<std::pair<int, ItemPointer>> const& items, QString const& text)
{
    std::vector<Splice> splices;
    for (auto const& [index, item] : items) {
        if (index < 0 || index >= count() || haveSameContent(at(index), *item))
            continue;
        splices.push_back({index, {m_items[static_cast<std::size_t>(index)]}, {item}});
    }
    if (!splices.empty())
        push(std::move(splices), text);
}

void ShapeDocument::setCurrent(int index)
{
    if (index < 0 || index >= count() || index == m_current)
        return;
    m_current = index;
    takeWorking();
    Q_EMIT currentChanged();
    Q_EMIT workingChanged();
}

void ShapeDocument::touch()
{
    Q_EMIT workingChanged();
}

bool ShapeDocument::commit(QString const& text)
{
    if (!hasCurrent())
        return false;
    auto item = std::make_shared<ShapeItem const>(itemOf(m_working));
    ItemPointer const before = m_items[static_cast<std::size_t>(m_current)];
    if (haveSameContent(*item, *before))
        return false;
    m_isWorkingKept = true;
    push({{m_current, {before}, {std::move(item)}}}, text);
    m_isWorkingKept = false;
    return true;
}

void ShapeDocument::revert()
{
    takeWorking();
    Q_EMIT workingChanged();
}

void ShapeDocument::push(std::vector<Splice> splices, QString const& text)
{
    m_stack.push(new SpliceStep(*this, std::move(splices), text));
}

void ShapeDocument::apply(std::vector<Splice> const& splices)
{
    for (Splice const& splice : splices)
        exchange(splice);
    m_current = currentAfter(splices);
    if (!m_isWorkingKept)
        takeWorking();
    for (Splice const& splice : splices) {
        Q_EMIT itemsReplaced(splice.first, static_cast<int>(splice.before.size()),
            static_cast<int>(splice.after.size()));
    }
    Q_EMIT currentChanged();
    Q_EMIT workingChanged();
}

int ShapeDocument::currentAfter(std::vector<Splice> const& splices) const
{
    // Whatever step is made or unmade is to be seen: an outline of it is the current one then.
    if (splices.front().shownAfter >= 0)
        return splices.front().shownAfter;
    auto const changesCurrent = [this](Splice const& splice) {
        return splice.before.size() == splice.after.size() && m_current >= splice.first
            && m_current < splice.first + static_cast<int>(splice.after.size());
    };
    if (std::any_of(splices.cbegin(), splices.cend(), changesCurrent))
        return m_current;
    return std::min(splices.front().first, count() - 1);
}

void ShapeDocument::exchange(Splice const& splice)
{
    auto const first = m_items.erase(m_items.cbegin() + splice.first,
        m_items.cbegin() + splice.first + static_cast<int>(splice.before.size()));
    m_items.insert(first, splice.after.cbegin(), splice.after.cend());
}

void ShapeDocument::takeWorking()
{
    m_working = hasCurrent() ? workingShapeOf(at(m_current)) : emptyShape();
}
