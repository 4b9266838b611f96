// SPDX-License-Identifier: MIT
#include "progress.h"

#include "console.h"
#include "process/messagelog.h"

#include <QByteArray>
#include <QFileInfo>

#include <algorithm>
#include <sys/ioctl.h>
#include <unistd.h>

namespace {

constexpr int fewestSteps = 10;
constexpr int widestBar = 40;

/** From this size on, reading a file takes a time that is noticed. */
constexpr qint64 largeFile = 4 << 20;

/** Whether standard error is a terminal to show progress on, and this thread's to print on. */
bool isTerminal()
{
    return !isQuiet() && !HeldOutput::ofThread() && isatty(STDERR_FILENO) != 0;
}

bool isAnyLarge(QStringList const& files)
{
    return std::any_of(files.begin(), files.end(),
        [](QString const& file) { return QFileInfo(file).size() >= largeFile; });
}

/** The columns of the terminal, many if it does not tell. */
int columnsOfTerminal()
{
    winsize size {};
    bool const isKnown = ioctl(STDERR_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0;
    return isKnown ? size.ws_col : 80;
}

/** The bar before a count, as wide as fits without reaching the last column; else nothing. */
QByteArray barBefore(QByteArray const& count, double share)
{
    int const width = qMin(widestBar, columnsOfTerminal() - 4 - static_cast<int>(count.size()));
    if (width < 1)
        return QByteArray();
    int const filled = static_cast<int>(width * share);
    return '[' + QByteArray(filled, '#') + QByteArray(width - filled, ' ') + "] ";
}

} // namespace

bool Progress::s_isOnScreen = false;

Progress::Progress(int total)
    : m_total(total)
    , m_hasParts(false)
    , m_isShown(total >= fewestSteps && isTerminal())
{
}

Progress::Progress(QStringList const& files)
    : m_total(files.size())
    , m_hasParts(files.size() < fewestSteps && isAnyLarge(files))
    , m_isShown((files.size() >= fewestSteps || m_hasParts) && isTerminal())
{
}

Progress::~Progress()
{
    clear();
}

void Progress::step()
{
    ++m_step;
    if (m_hasParts)
        showPart(0.0);
    else
        show(QByteArray::number(m_step) + '/' + QByteArray::number(m_total),
            static_cast<double>(m_step) / m_total);
}

std::function<void(double)> Progress::ofStep()
{
    return [this](double part) {
        if (m_hasParts)
            showPart(part);
    };
}

void Progress::showPart(double partOfStep)
{
    double const share = (m_step - 1 + std::clamp(partOfStep, 0.0, 1.0)) / m_total;
    int const percent = static_cast<int>(100.0 * share);
    if (percent == m_percent)
        return;
    m_percent = percent;
    show(QByteArray::number(percent).rightJustified(3) + " %", percent / 100.0);
}

void Progress::show(QByteArray const& count, double share)
{
    if (!m_isShown)
        return;
    QByteArray const bar = barBefore(count, share);
    printError('\r' + bar + count);
    s_isOnScreen = true;
}

void Progress::clear()
{
    if (HeldOutput::ofThread())
        return;
    if (s_isOnScreen)
        printError("\r\033[K");
    s_isOnScreen = false;
}
