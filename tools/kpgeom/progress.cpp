#include "progress.h"

#include <cstdio>
#include <unistd.h>

namespace {

constexpr int fewestSteps = 10;
constexpr int barWidth = 40;

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
    int const filled = static_cast<int>(static_cast<qint64>(barWidth) * m_step / m_total);
    QByteArray const bar = QByteArray(filled, '#') + QByteArray(barWidth - filled, ' ');
    std::fprintf(stderr, "\r[%s] %d/%d", bar.constData(), m_step, m_total);
    std::fflush(stderr);
    s_isOnScreen = true;
}

void Progress::clear()
{
    if (s_isOnScreen)
        std::fputs("\r\033[K", stderr);
    s_isOnScreen = false;
}
