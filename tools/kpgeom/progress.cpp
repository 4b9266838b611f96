#include "progress.h"

#include <QByteArray>

#include <cstdio>
#include <sys/ioctl.h>
#include <unistd.h>

namespace {

constexpr int fewestSteps = 10;
constexpr int widestBar = 40;

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
    , m_isShown(total >= fewestSteps && isatty(STDERR_FILENO) != 0)
{
}

Progress::~Progress()
{
    clear();
}

void Progress::step()
{
    ++m_step;
    if (!m_isShown)
        return;
    QByteArray const count = QByteArray::number(m_step) + '/' + QByteArray::number(m_total);
    QByteArray const bar = barBefore(count, static_cast<double>(m_step) / m_total);
    std::fprintf(stderr, "\r%s%s", bar.constData(), count.constData());
    std::fflush(stderr);
    s_isOnScreen = true;
}

void Progress::clear()
{
    if (s_isOnScreen)
        std::fputs("\r\033[K", stderr);
    s_isOnScreen = false;
}
