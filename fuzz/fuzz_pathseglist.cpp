// SPDX-License-Identifier: MIT
// Any sequence of operations on two outlines, beside a model of each: a plain vector of what stands
// in it. Null entries, segments of kinds that nobody knows, segments that no list or another one
// holds, and lists that are given themselves are all among the arguments.

#include "fuzzing.h"
#include "kppath.h"
#include "kppathseglineto.h"
#include "kppathsegmoveto.h"
#include "outlinevalue.h"

#include <algorithm>
#include <memory>
#include <vector>

using Fuzzing::awkwardReal;
using Fuzzing::require;
using OutlineValue::Real;
using OutlineValue::Segment;

namespace {

/** A segment of a kind of the application's own, or one that says it were of a known one. */
class ForeignSegment : public KpPathSeg
{
public:
    explicit ForeignSegment(int type)
        : KpPathSeg(static_cast<SegType>(type), nullptr)
    {
    }
    void saveTo(QDomElement& /*geometry*/) override { }
    void saveTo(XmlStreamWriter& /*writer*/) override { }
    bool parse(QDomElement const& /*element*/, unsigned int /*context*/) override { return false; }
    bool parse(QXmlStreamReader& /*reader*/, unsigned int /*context*/) override { return false; }
    KpPathSeg* clone() override { return nullptr; }
    void addToPath(KpPath& /*path*/) override { }
};

/** A null pointer is an entry without a value. */
struct ModelEntry
{
    KpPathSeg* segment;
    Segment value;
};

void updateValue(Real& real, double width, double height)
{
    double const side = width < height ? width : height;
    double const values[] = {real.value, real.rate * width, real.rate * height, width - real.rate,
        height - real.rate, side * real.rate, width - side * real.rate, height - side * real.rate};
    if (real.base >= 1 && real.base <= 7)
        real.value = values[real.base];
}

void updateRate(Real& real, double width, double height)
{
    if (real.base == 1 && width > 0.001)
        real.rate = real.value / width;
    if (real.base == 2 && height > 0.001)
        real.rate = real.value / height;
}

/** How many points there are: the radii of an ellipse are none. */
std::size_t pointCount(Segment const& segment)
{
    return segment.reals.size() == 6 ? 3 : 1;
}

/** An outline and what should be in it. */
class Checked
{
public:
    KpPathSegList list;
    std::vector<ModelEntry> model;
    bool closed = false;
    bool noFill = false;
    bool noLine = false;

    void check() const
    {
        require(list.closed == closed && list.getClosed() == closed, "closed is the model's");
        require(list.noFill == noFill && list.getNoFill() == noFill, "noFill is the model's");
        require(list.noLine == noLine && list.getNoLine() == noLine, "noLine is the model's");
        require(std::size_t(list.segs.count()) == model.size(), "the count is the model's");
        for (std::size_t i = 0; i < model.size(); ++i) {
            KpPathSeg* const segment = list.segs.at(int(i));
            require(segment == model[i].segment, "the same segments in the same order");
            if (segment)
                require(areSame(OutlineValue::of(*segment), model[i].value), "values as modelled");
        }
    }

    int indexOf(KpPathSeg const* segment) const
    {
        for (std::size_t i = 0; i < model.size(); ++i) {
            if (model[i].segment == segment)
                return int(i);
        }
        return -1;
    }

    KpPathSeg* at(int index) const
    {
        return index < 0 || index >= int(model.size()) ? nullptr
                                                       : model[std::size_t(index)].segment;
    }

    void checkNeighbours(KpPathSeg* segment)
    {
        if (!segment) {
            require(!list.getNextSeg(nullptr) && !list.getPrevSeg(nullptr), "none of null");
            return;
        }
        int const count = int(model.size());
        int const next = indexOf(segment) + 1;
        require(list.getNextSeg(segment) == at(closed && next >= count ? 0 : next), "the next one");
        int const previous = indexOf(segment) - 1;
        require(list.getPrevSeg(segment) == at(closed && previous < 0 ? count - 1 : previous),
            "the one before");
    }

    /** Where the segment, which this list holds, starts. */
    QPointF startOf(KpPathSeg* segment) const
    {
        int const index = indexOf(segment);
        bool const isMove = model[std::size_t(index)].value.type == KpPathSeg::SegMoveTo
            && !dynamic_cast<ForeignSegment*>(segment);
        int const previous = closed && index == 0 ? int(model.size()) - 1 : index - 1;
        int const source = isMove ? index : previous;
        if (!at(source))
            return QPointF(0.0, 0.0);
        Segment const& value = model[std::size_t(source)].value;
        return {value.reals[0].value, value.reals[1].value};
    }

    void checkPlace(int index)
    {
        KpPathSeg* const segment = at(index);
        if (!segment || segment->owner != &list)
            return;
        require(segment->isLastSeg() == (index + 1 == int(model.size())), "the last one knows it");
        QPointF const start = segment->startPt();
        QPointF const expected = startOf(segment);
        require(OutlineValue::areSame(start.x(), expected.x())
                && OutlineValue::areSame(start.y(), expected.y()),
            "a segment starts where the one before ends");
    }

    void drawModel(KpPath& path) const
    {
        for (ModelEntry const& entry : model) {
            if (!entry.segment || dynamic_cast<ForeignSegment*>(entry.segment))
                continue;
            std::vector<Real> const& reals = entry.value.reals;
            double const x = reals[0].value;
            double const y = reals[1].value;
            switch (entry.value.type) {
            case KpPathSeg::SegMoveTo:
                path.append({x, y, 0.0, 0.0, 0});
                break;
            case KpPathSeg::SegLineTo:
                if (path.isEmpty() || !(std::abs(x - path.last().x) < 1.0)
                    || !(std::abs(y - path.last().y) < 1.0))
                    path.append({x, y, 0.0, 0.0, 1});
                break;
            case KpPathSeg::SegCurveTo:
                path.append({reals[2].value, reals[3].value, 0.0, 0.0, 2});
                path.append({reals[4].value, reals[5].value, 0.0, 0.0, 3});
                path.append({x, y, 0.0, 0.0, 3});
                break;
            default: {
                double const a = reals[2].value;
                double const b = reals[3].value;
                path.elements += KpPath::ellipse(QRectF(x - a, y - b, 2.0 * a, 2.0 * b));
            }
            }
        }
        if (closed)
            path.closeSubpath();
    }

    template <class Change> void change(Change change)
    {
        for (ModelEntry& entry : model) {
            for (Real& real : entry.value.reals)
                change(real);
        }
    }

    template <class Change> void changePoints(Change change)
    {
        for (ModelEntry& entry : model) {
            for (std::size_t i = 0; entry.segment && i < pointCount(entry.value); ++i)
                change(entry.value.reals[2 * i].value, entry.value.reals[2 * i + 1].value);
        }
    }
};

/** A copy of a segment binds the radii of an ellipse anew, and a foreign one has none. */
Segment cloned(Segment value)
{
    if (value.type == KpPathSeg::SegEllipse) {
        value.reals[2].base = KpReal::PartOfWidth;
        value.reals[3].base = KpReal::PartOfHeight;
    }
    return value;
}

class Session
{
public:
    explicit Session(FuzzedDataProvider& input)
        : m_input(input)
    {
    }

    void run()
    {
        for (int i = 0; i < 64 && m_input.remaining_bytes() > 0; ++i) {
            step(m_lists[m_input.ConsumeBool()]);
            for (Checked const& list : m_lists)
                list.check();
        }
    }

private:
    double real() { return awkwardReal(m_input); }
    QPointF point()
    {
        double const x = real();
        return {x, real()};
    }
    KpReal boundReal()
    {
        auto const base = m_input.ConsumeIntegralInRange<qint16>(-2, 9);
        double const rate = real();
        return {base, rate, real()};
    }
    KpPoint boundPoint()
    {
        KpReal const x = boundReal();
        return {x, boundReal()};
    }
    int index(Checked const& list)
    {
        return m_input.ConsumeBool()
            ? m_input.ConsumeIntegralInRange(-2, int(list.model.size()) + 2)
            : m_input.ConsumeIntegral<int>();
    }

    KpPathSeg* segment()
    {
        switch (m_input.ConsumeIntegralInRange(0, 5)) {
        case 0:
            return new KpPathSegMoveTo(boundPoint(), nullptr);
        case 1:
            return new KpPathSegLineTo(boundPoint(), nullptr);
        case 2: {
            KpPoint const first = boundPoint();
            KpPoint const second = boundPoint();
            return new KpPathSegCurveTo(first, second, boundPoint(), nullptr);
        }
        case 3: {
            KpPoint const centre = boundPoint();
            KpReal const a = boundReal();
            return new KpPathSegEllipse(centre, a, boundReal(), nullptr);
        }
        case 4:
            return new ForeignSegment(m_input.ConsumeIntegralInRange(-1, 7));
        default:
            return nullptr;
        }
    }

    /** One that a list holds, that was handed over, that no list has ever held, or null. */
    KpPathSeg* anySegment()
    {
        std::vector<KpPathSeg*> all {nullptr, &m_stranger};
        for (Checked const& list : m_lists) {
            for (ModelEntry const& entry : list.model)
                all.push_back(entry.segment);
        }
        for (auto const& removed : m_removed)
            all.push_back(removed.get());
        return all[m_input.ConsumeIntegralInRange<std::size_t>(0, all.size() - 1)];
    }

    void step(Checked& checked)
    {
        using Operation = void (Session::*)(Checked&);
        static constexpr Operation operations[] = {&Session::addPlain, &Session::add,
            &Session::insert, &Session::insertRemoved, &Session::removeOne, &Session::removeMany,
            &Session::removeAll, &Session::clear, &Session::assign, &Session::copy,
            &Session::askNeighbours, &Session::askPlaces, &Session::setStart, &Session::setFlags,
            &Session::translate, &Session::updateValues, &Session::updateRates, &Session::transform,
            &Session::putNull, &Session::exchange, &Session::throughRecord, &Session::draw,
            &Session::addPath};
        (this->*m_input.PickValueInArray(operations))(checked);
    }

    static void insertModel(Checked& checked, int index, KpPathSeg* added)
    {
        if (!added)
            return;
        int const place = std::min(std::max(index, 0), int(checked.model.size()));
        checked.model.insert(
            checked.model.begin() + place, ModelEntry {added, OutlineValue::of(*added)});
    }

    void addPlain(Checked& checked)
    {
        QPointF const end = point();
        Segment expected {KpPathSeg::SegMoveTo, {{1, 0.0, end.x()}, {2, 0.0, end.y()}}};
        switch (m_input.ConsumeIntegralInRange(0, 2)) {
        case 0:
            checked.list.moveTo(end);
            break;
        case 1:
            expected.type = KpPathSeg::SegLineTo;
            checked.list.lineTo(end);
            break;
        default: {
            expected.type = KpPathSeg::SegCurveTo;
            QPointF const controls[] = {point(), point()};
            for (QPointF const& control : controls) {
                expected.reals.push_back({1, 0.0, control.x()});
                expected.reals.push_back({2, 0.0, control.y()});
            }
            checked.list.curveTo(controls[0], controls[1], end);
        }
        }
        require(checked.list.segs.constLast()->owner == &checked.list, "the list owns it");
        checked.model.push_back({checked.list.segs.constLast(), expected});
    }

    void add(Checked& checked)
    {
        KpPathSeg* const added = segment();
        checked.list.addTail(added);
        insertModel(checked, int(checked.model.size()), added);
        require(!added || added->owner == &checked.list, "the list owns it");
    }

    void insert(Checked& checked)
    {
        int const place = index(checked);
        KpPathSeg* const added = segment();
        checked.list.insertAt(place, added);
        insertModel(checked, place, added);
        require(!added || added->owner == &checked.list, "the list owns it");
    }

    void insertRemoved(Checked& checked)
    {
        if (m_removed.empty())
            return;
        int const place = index(checked);
        KpPathSeg* const added = m_removed.back().release();
        m_removed.pop_back();
        checked.list.insertAt(place, added);
        insertModel(checked, place, added);
    }

    void keep(KpPathSeg* removed)
    {
        if (removed)
            m_removed.emplace_back(removed);
    }

    void removeOne(Checked& checked)
    {
        int const place = index(checked);
        bool const isDeleted = m_input.ConsumeBool();
        checked.list.removeAt(place, isDeleted);
        if (place < 0 || place >= int(checked.model.size()))
            return;
        if (!isDeleted)
            keep(checked.at(place));
        checked.model.erase(checked.model.begin() + place);
    }

    void removeMany(Checked& checked)
    {
        QVector<int> places;
        int const count = m_input.ConsumeIntegralInRange(0, 6);
        for (int i = 0; i < count; ++i)
            places.append(index(checked));
        bool const isDeleted = m_input.ConsumeBool();
        checked.list.removeAt(places, isDeleted);

        std::size_t const size = checked.model.size();
        std::vector<bool> isGone(size, false);
        for (int const place : qAsConst(places)) {
            std::size_t slot = place < 0 ? size : std::size_t(place);
            while (slot < size && isGone[slot])
                ++slot;
            if (slot >= size)
                break;
            isGone[slot] = checked.model[slot].segment != nullptr;
        }
        std::vector<ModelEntry> left;
        for (std::size_t i = 0; i < size; ++i) {
            if (!isGone[i])
                left.push_back(checked.model[i]);
            else if (!isDeleted)
                keep(checked.model[i].segment);
        }
        checked.model = left;
    }

    void removeAll(Checked& checked)
    {
        bool const isDeleted = m_input.ConsumeBool();
        checked.list.removeAll(isDeleted);
        for (ModelEntry const& entry : checked.model) {
            if (!isDeleted)
                keep(entry.segment);
        }
        checked.model.clear();
    }

    void clear(Checked& checked)
    {
        checked.list.clear();
        checked.model.clear();
        checked.closed = true;
        checked.noFill = false;
        checked.noLine = false;
    }

    /** Of the other list, or of the same. */
    void assign(Checked& checked)
    {
        Checked const& source = m_lists[m_input.ConsumeBool()];
        if (source.model.size() > 200)
            return;
        std::vector<ModelEntry> const copied = source.model;
        checked.list.assign(source.list);
        checked.closed = source.closed;
        checked.noFill = source.noFill;
        checked.noLine = source.noLine;
        for (ModelEntry const& entry : copied) {
            if (!entry.segment || dynamic_cast<ForeignSegment*>(entry.segment))
                continue;
            std::size_t const place = checked.model.size();
            require(place < std::size_t(checked.list.segs.count()), "every segment is cloned");
            KpPathSeg* const clone = checked.list.segs.at(int(place));
            require(clone->owner == &checked.list, "the list owns the clones");
            checked.model.push_back({clone, cloned(entry.value)});
        }
    }

    void copy(Checked& checked)
    {
        std::unique_ptr<KpPathSegList> const copy(
            m_input.ConsumeBool() ? checked.list.clone() : new KpPathSegList(checked.list));
        OutlineValue::Outline expected {checked.closed, checked.noFill, checked.noLine, {}};
        for (ModelEntry const& entry : checked.model) {
            if (entry.segment && !dynamic_cast<ForeignSegment*>(entry.segment))
                expected.segments.push_back(cloned(entry.value));
        }
        require(areSame(OutlineValue::of(*copy), expected), "a copy is equal");
    }

    void askNeighbours(Checked& checked) { checked.checkNeighbours(anySegment()); }

    void askPlaces(Checked& checked)
    {
        for (int i = 0; i < int(checked.model.size()); ++i) {
            checked.checkNeighbours(checked.at(i));
            checked.checkPlace(i);
        }
    }

    void setStart(Checked& checked)
    {
        if (checked.model.empty())
            return;
        int const count = int(checked.model.size());
        int const place = m_input.ConsumeIntegralInRange(0, count - 1);
        KpPathSeg* const segment = checked.at(place);
        QPointF const start = point();
        if (!segment || segment->owner != &checked.list)
            return;
        segment->setStartPt(start);
        bool const isMove =
            segment->type == KpPathSeg::SegMoveTo && !dynamic_cast<ForeignSegment*>(segment);
        int const previous = checked.closed && place == 0 ? count - 1 : place - 1;
        int const changed = isMove ? place : previous;
        if (!checked.at(changed))
            return;
        checked.model[std::size_t(changed)].value.reals[0].value = start.x();
        checked.model[std::size_t(changed)].value.reals[1].value = start.y();
    }

    void setFlags(Checked& checked)
    {
        checked.list.closed = checked.closed = m_input.ConsumeBool();
        checked.list.noFill = checked.noFill = m_input.ConsumeBool();
        checked.list.noLine = checked.noLine = m_input.ConsumeBool();
    }

    void translate(Checked& checked)
    {
        QPointF const by = point();
        checked.list.translate(by.x(), by.y());
        checked.changePoints([by](double& x, double& y) {
            x += by.x();
            y += by.y();
        });
    }

    void updateValues(Checked& checked)
    {
        QPointF const box = point();
        checked.list.updateValue(box.x(), box.y());
        checked.change([box](Real& real) { updateValue(real, box.x(), box.y()); });
    }

    void updateRates(Checked& checked)
    {
        QPointF const box = point();
        checked.list.updateRate(box.x(), box.y());
        checked.change([box](Real& real) { updateRate(real, box.x(), box.y()); });
    }

    void transform(Checked& checked)
    {
        double const a = real();
        double const b = real();
        double const c = real();
        double const d = real();
        QPointF const by = point();
        QMatrix const matrix(a, b, c, d, by.x(), by.y());
        checked.list.applyTransform(matrix);
        checked.changePoints([&matrix](double& x, double& y) {
            QPointF const mapped = matrix.map(QPointF(x, y));
            x = mapped.x();
            y = mapped.y();
        });
    }

    /** The field is public: clients can. */
    void putNull(Checked& checked)
    {
        int const place = m_input.ConsumeIntegralInRange(0, checked.list.segs.count());
        checked.list.segs.insert(place, nullptr);
        checked.model.insert(checked.model.begin() + place, ModelEntry {nullptr, {}});
    }

    /** Behind the back of the list: what it remembers of places is wrong then. */
    void exchange(Checked& checked)
    {
        if (checked.model.empty())
            return;
        int const count = int(checked.model.size());
        int const first = m_input.ConsumeIntegralInRange(0, count - 1);
        int const second = m_input.ConsumeIntegralInRange(0, count - 1);
        std::swap(checked.list.segs[first], checked.list.segs[second]);
        std::swap(checked.model[std::size_t(first)], checked.model[std::size_t(second)]);
    }

    /** What stands in the record of an outline, read again, is the outline. */
    void throughRecord(Checked& checked)
    {
        OutlineValue::Outline expected {checked.closed, checked.noFill, checked.noLine, {}};
        for (ModelEntry const& entry : checked.model) {
            bool const isForeign = dynamic_cast<ForeignSegment*>(entry.segment) != nullptr;
            bool const isPoint = entry.value.type == KpPathSeg::SegMoveTo
                || entry.value.type == KpPathSeg::SegLineTo;
            if (entry.segment && (!isForeign || isPoint))
                expected.segments.push_back(entry.value);
        }
        QVector<int> ints {7};
        QVector<double> doubles {7.0};
        checked.list.toUndoValue(ints, doubles);
        int intPos = 1;
        int doublePos = 1;
        KpPathSegList again;
        again.fromUndoValue(ints, doubles, intPos, doublePos, int(expected.segments.size()));
        require(areSame(OutlineValue::of(again), expected), "an undo record holds the outline");
        require(intPos == ints.size() && doublePos == doubles.size(), "and nothing else");
    }

    void draw(Checked& checked)
    {
        KpPath path;
        KpPath expected;
        for (int i = 0; i < 2; ++i) {
            checked.list.toPath(path);
            checked.drawModel(expected);
        }
        require(path.count() == expected.count(), "as many elements are drawn as modelled");
        for (int i = 0; i < path.count(); ++i) {
            KpPath::KpElement const& element = path.at(i);
            require(element.type == expected.at(i).type
                    && OutlineValue::areSame(element.x, expected.at(i).x)
                    && OutlineValue::areSame(element.y, expected.at(i).y),
                "elements as modelled");
        }
        checked.list.isClockwise();
        path.toPainterPath();
    }

    void addPath(Checked& checked)
    {
        KpPath path;
        int const count = m_input.ConsumeIntegralInRange(0, 6);
        for (int i = 0; i < count; ++i) {
            int const type = m_input.ConsumeIntegralInRange(-1, 5);
            QPointF const end = point();
            path.append({end.x(), end.y(), 0.0, 0.0, type});
        }
        checked.list.fromPath(path);
        for (int i = 0; i < count; ++i) {
            int const type = path.at(i).type;
            Segment expected {type + 2, plainReals(path.at(i))};
            if (type == 4)
                checked.closed = true;
            if (type < 0 || type > 2 || (type == 2 && i + 2 >= count))
                continue;
            if (type == 2) {
                // The end of a curve comes last there, and first here.
                expected.reals = plainReals(path.at(i + 2));
                for (Real const& real : plainReals(path.at(i)))
                    expected.reals.push_back(real);
                for (Real const& real : plainReals(path.at(i + 1)))
                    expected.reals.push_back(real);
                i += 2;
            }
            std::size_t const place = checked.model.size();
            require(place < std::size_t(checked.list.segs.count()), "a segment for each step");
            checked.model.push_back({checked.list.segs.at(int(place)), expected});
        }
    }

    static std::vector<Real> plainReals(KpPath::KpElement const& element)
    {
        return {{1, 0.0, element.x}, {2, 0.0, element.y}};
    }

    FuzzedDataProvider& m_input;
    ForeignSegment m_stranger {3};
    std::vector<std::unique_ptr<KpPathSeg>> m_removed;
    Checked m_lists[2];
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size)
{
    FuzzedDataProvider input(data, size);
    Session(input).run();
    return 0;
}
