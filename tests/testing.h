// SPDX-License-Identifier: MIT
#ifndef TESTING_H
#define TESTING_H

#include <QRandomGenerator>
#include <QString>
#include <QStringList>
#include <QtTest>

#include <cmath>
#include <cstdio>
#include <cstring>
#include <iterator>
#include <limits>

/** Defined where a sanitizer slows everything down: for code that must not be compiled there. */
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
#define TESTING_SANITIZED
#elif defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(thread_sanitizer)
#define TESTING_SANITIZED
#endif
#endif

/** What all tests share: numbers to the last bit, repeatable randomness, watching the log. */
namespace Testing {

/** Whether a sanitizer slows everything down, keeps memory and allocates in its own way. */
#ifdef TESTING_SANITIZED
constexpr bool sanitized = true;
#else
constexpr bool sanitized = false;
#endif

constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();
constexpr double infinite = std::numeric_limits<double>::infinity();

/** Equality of the bit patterns, which QCOMPARE does not give for doubles. */
inline bool sameBits(double left, double right)
{
    return std::memcmp(&left, &right, sizeof left) == 0;
}

/** Equal to the last bit; NaN is NaN, whatever its bits. */
inline bool isSame(double left, double right)
{
    return (std::isnan(left) && std::isnan(right)) || sameBits(left, right);
}

/**
 * A double in hexadecimal notation: equal texts are equal numbers, to the last bit and to the sign
 * of a zero; NaN is NaN, whatever its bits.
 */
inline QString exact(double number)
{
    if (std::isnan(number))
        return QStringLiteral("nan");
    // QString's own formatting takes %a for %f.
    char text[32];
    std::snprintf(text, sizeof text, "%a", number);
    return QString::fromLatin1(text);
}

/** Both notations of both numbers, for a comparison that fails. */
inline QString difference(char const* expression, double actual, double expected)
{
    return QStringLiteral("%1 is %2 (%3), not %4 (%5)")
        .arg(QString::fromUtf8(expression), exact(actual))
        .arg(actual, 0, 'g', 17)
        .arg(exact(expected))
        .arg(expected, 0, 'g', 17);
}

/** A generator whose seed stands in the log. */
inline QRandomGenerator seededRandom(quint32 seed)
{
    qInfo("random seed %u", seed);
    return QRandomGenerator(seed);
}

/** A number that is often awkward: any bit pattern, a tie, a power of ten, a special value. */
inline double awkwardReal(QRandomGenerator& random)
{
    switch (random.bounded(8)) {
    case 0: {
        quint64 const bits = random.generate64();
        double number = 0.0;
        std::memcpy(&number, &bits, sizeof number);
        return number;
    }
    case 1:
        return random.bounded(1000000) + 0.5;
    case 2:
        return std::pow(10.0, random.bounded(-20, 20));
    case 3: {
        static double const specials[] = {0.0, -0.0, 1.0, -1.0, 0.001, notANumber, infinite,
            -infinite, std::numeric_limits<double>::max(),
            std::numeric_limits<double>::denorm_min()};
        return specials[random.bounded(int(std::size(specials)))];
    }
    default:
        return random.generateDouble() * 2000.0 - 1000.0;
    }
}

/**
 * Notes what is logged, from its creation until it is stopped or destroyed, and keeps it from
 * the log. The seeds of random tests pass through to the log of the test.
 *
 * One for many test functions is created in the first of them: before it, Qt Test has not
 * installed its own handler. A watch within another one notes what the outer one then does not
 * see; the inner one must end first.
 */
class MessageWatch
{
public:
    MessageWatch()
        : m_outer(innermost())
    {
        innermost() = this;
        m_usual = m_outer ? m_outer->m_usual : qInstallMessageHandler(note);
    }
    ~MessageWatch() { stop(); }
    MessageWatch(MessageWatch const&) = delete;
    MessageWatch& operator=(MessageWatch const&) = delete;

    /** Lets messages go where they went before. Those noted can still be taken. */
    void stop()
    {
        if (innermost() != this)
            return;
        innermost() = m_outer;
        if (!m_outer)
            qInstallMessageHandler(m_usual);
    }

    /** The messages since the last call. */
    QStringList take()
    {
        QStringList const taken = m_messages;
        m_messages.clear();
        return taken;
    }

private:
    static MessageWatch*& innermost()
    {
        static MessageWatch* watch = nullptr;
        return watch;
    }

    static void note(QtMsgType type, QMessageLogContext const& context, QString const& message)
    {
        MessageWatch& watch = *innermost();
        if (type == QtInfoMsg && message.startsWith(QLatin1String("random seed ")))
            watch.m_usual(type, context, message);
        else
            watch.m_messages << message;
    }

    MessageWatch* m_outer;
    QtMessageHandler m_usual;
    QStringList m_messages;
};

} // namespace Testing

/** QCOMPARE for doubles that must be equal bit for bit. */
#define COMPARE_BITS(actual, expected)                                                             \
    do {                                                                                           \
        double const actualValue = (actual);                                                       \
        double const expectedValue = (expected);                                                   \
        QVERIFY2(Testing::sameBits(actualValue, expectedValue),                                    \
            qPrintable(Testing::difference(#actual, actualValue, expectedValue)));                 \
    } while (false)

/** COMPARE_BITS for which NaN is NaN, whatever its bits. */
#define COMPARE_SAME(actual, expected)                                                             \
    do {                                                                                           \
        double const actualValue = (actual);                                                       \
        double const expectedValue = (expected);                                                   \
        QVERIFY2(Testing::isSame(actualValue, expectedValue),                                      \
            qPrintable(Testing::difference(#actual, actualValue, expectedValue)));                 \
    } while (false)

/** The watch has noted nothing since its messages were last taken; if it has, they are shown. */
#define VERIFY_NOTHING_LOGGED(watch)                                                               \
    do {                                                                                           \
        QStringList const logged = (watch).take();                                                 \
        QVERIFY2(logged.isEmpty(), qPrintable(logged.join(QLatin1Char('\n'))));                    \
    } while (false)

#endif // TESTING_H
