// Any numbers as an undo record. What is read from them must survive being recorded and read
// again; the positions must stay inside the vectors.

#include "kppathseglist.h"

#include <cstdint>
#include <cstdlib>
#include <cstring>

namespace {

/** Takes values from the input, 0 at its end. */
class Source
{
public:
    Source(std::uint8_t const* data, std::size_t size)
        : m_data(data)
        , m_left(size)
    {
    }

    template <class Value> Value take()
    {
        Value value {};
        std::size_t const count = m_left < sizeof value ? m_left : sizeof value;
        std::memcpy(&value, m_data, count);
        m_data += count;
        m_left -= count;
        return value;
    }

    bool isEmpty() const { return m_left == 0; }

private:
    std::uint8_t const* m_data;
    std::size_t m_left;
};

struct Record
{
    QVector<int> ints;
    QVector<double> doubles;

    bool operator==(Record const& other) const
    {
        return ints == other.ints && doubles.size() == other.doubles.size()
            && std::memcmp(doubles.constData(), other.doubles.constData(),
                   static_cast<std::size_t>(doubles.size()) * sizeof(double))
            == 0;
    }
};

Record record(KpPathSegList& list)
{
    Record result;
    list.toUndoValue(result.ints, result.doubles);
    return result;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size)
{
    Source source(data, size);
    int intPos = source.take<qint8>();
    int doublePos = source.take<qint8>();
    int const segmentCount = source.take<int>();
    Record input;
    while (!source.isEmpty()) {
        // Small numbers, so that types and bases are hit often.
        input.ints.append(source.take<qint8>());
        if (source.take<quint8>() % 2 == 0)
            input.doubles.append(source.take<double>());
    }

    int pointInts = intPos;
    int pointDoubles = doublePos;
    KpPoint point;
    point.fromUndoValue(input.ints, input.doubles, pointInts, pointDoubles);
    if (pointInts != intPos + 2 || pointDoubles != doublePos + 4)
        std::abort();

    KpPathSegList list;
    list.fromUndoValue(input.ints, input.doubles, intPos, doublePos, segmentCount);
    if (intPos > input.ints.size() && !list.segs.isEmpty())
        std::abort();
    Record const first = record(list);
    KpPathSegList again;
    int position = 0;
    int realPosition = 0;
    Record copy = first;
    again.fromUndoValue(copy.ints, copy.doubles, position, realPosition, list.segs.count());
    if (!(record(again) == first) || position != copy.ints.size()
        || realPosition != copy.doubles.size())
        std::abort();
    return 0;
}
