// SPDX-License-Identifier: MIT
#include "gaussianblur.h"
#include "largepages_p.h"
#include "testing.h"

#include <QGuiApplication>

#include <sys/mman.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace {

constexpr std::size_t megabyte = 1U << 20;

struct Advice
{
    char const* memory;
    std::size_t size;
};

QVector<Advice>& advices()
{
    static QVector<Advice> made;
    return made;
}

/** Address space that begins with a large page, and that nothing is written to. */
class Pages
{
public:
    Pages()
        : m_memory(static_cast<char*>(
            ::mmap(nullptr, size, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0)))
    {
    }
    ~Pages() { ::munmap(m_memory, size); }
    Pages(Pages const&) = delete;
    Pages& operator=(Pages const&) = delete;

    char* first() const
    {
        constexpr std::size_t pageSize = 2 * megabyte;
        return m_memory + (pageSize - reinterpret_cast<quintptr>(m_memory) % pageSize) % pageSize;
    }

private:
    static constexpr std::size_t size = 16 * megabyte;

    char* m_memory;
};

} // namespace

/** Stands in for the one of the system, which it calls: the library's own calls come here. */
extern "C" int calledAdvise(void* memory, std::size_t size, int advice) __asm__("madvise");

int calledAdvise(void* memory, std::size_t size, int advice)
{
    if (advice == MADV_HUGEPAGE)
        advices() << Advice {static_cast<char const*>(memory), size};
    return static_cast<int>(::syscall(SYS_madvise, memory, size, advice));
}

class TestLargePages : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { advices().clear(); }
    void onlyWholePagesAreAskedFor_data();
    void onlyWholePagesAreAskedFor();
    void newPicturesAreMadeOfThem();
    void picturesBlurredInPlaceAreLeftAsTheyAre();
};

void TestLargePages::onlyWholePagesAreAskedFor_data()
{
    QTest::addColumn<int>("offset");
    QTest::addColumn<int>("size");
    QTest::addColumn<int>("adviceOffset");
    QTest::addColumn<int>("adviceSize"); // 0 for no advice
    int const one = megabyte;
    QTest::newRow("nothing") << 0 << 0 << 0 << 0;
    QTest::newRow("nothing within a page") << 1 << 0 << 0 << 0;
    QTest::newRow("a byte") << 1 << 1 << 0 << 0;
    QTest::newRow("a page less a byte") << 0 << 2 * one - 1 << 0 << 0;
    QTest::newRow("a page") << 0 << 2 * one << 0 << 2 * one;
    QTest::newRow("the next page") << 2 * one << 2 * one << 2 * one << 2 * one;
    QTest::newRow("parts of two pages") << 1 << 2 * one << 0 << 0;
    QTest::newRow("a byte and a page less a byte") << 2 * one - 1 << 2 * one << 0 << 0;
    QTest::newRow("a byte and a page") << 2 * one - 1 << 2 * one + 1 << 2 * one << 2 * one;
    QTest::newRow("a page and a byte") << 0 << 2 * one + 1 << 0 << 2 * one;
    QTest::newRow("two pages less a byte") << 0 << 4 * one - 1 << 0 << 2 * one;
    QTest::newRow("three pages") << 0 << 6 * one << 0 << 6 * one;
    QTest::newRow("two pages amid parts") << one << 6 * one << 2 * one << 4 * one;
    QTest::newRow("five pages amid parts") << 1 << 13 * one << 2 * one << 10 * one;
}

void TestLargePages::onlyWholePagesAreAskedFor()
{
    QFETCH(int, offset);
    QFETCH(int, size);
    QFETCH(int, adviceOffset);
    QFETCH(int, adviceSize);
    Pages const pages;
    LargePages::adviseFor(pages.first() + offset, std::size_t(size));
    QCOMPARE(advices().size(), adviceSize == 0 ? 0 : 1);
    for (Advice const& advice : qAsConst(advices())) {
        QCOMPARE(advice.memory - pages.first(), std::ptrdiff_t(adviceOffset));
        QCOMPARE(advice.size, std::size_t(adviceSize));
    }
}

void TestLargePages::newPicturesAreMadeOfThem()
{
    QImage image(1500, 1500, QImage::Format_ARGB32_Premultiplied);
    image.fill(QColor(1, 2, 3, 4));
    QImage const result = GaussianBlur::blurBitmap(image, 1, 0).toImage();
    QCOMPARE(advices().size(), 1);
    Advice const advice = advices().first();
    auto const* const pixels = reinterpret_cast<char const*>(result.constBits());
    QVERIFY(advice.memory >= pixels);
    QVERIFY(advice.memory + advice.size <= pixels + result.sizeInBytes());
    // Of 8.6 MB at any place, three pages at least are whole.
    QVERIFY(advice.size >= 6 * megabyte);
}

void TestLargePages::picturesBlurredInPlaceAreLeftAsTheyAre()
{
    QImage image(1500, 1500, QImage::Format_ARGB32_Premultiplied);
    image.fill(QColor(1, 2, 3, 4));
    QPixmap const result = GaussianBlur::blurBitmap(std::move(image), 1, 0);
    QCOMPARE(result.size(), QSize(1500, 1500));
    QCOMPARE(advices().size(), 0);
}

QTEST_MAIN(TestLargePages)
#include "tst_largepages.moc"
