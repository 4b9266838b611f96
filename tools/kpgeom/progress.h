#ifndef PROGRESS_H
#define PROGRESS_H

#include <QString>

/**
 * A progress bar on standard error, for many files and only on a terminal.
 *
 * The bar stands on the last line and is gone when the object is.
 */
class Progress
{
public:
    /** @param total how many steps there will be; fewer than 10 show no bar */
    explicit Progress(int total);
    ~Progress();

    /** Another step begins. */
    void step();
    /** Takes the bar away, if one is shown, before other output; the next step brings it back. */
    static void clear();

private:
    Q_DISABLE_COPY(Progress)

    int const m_total;
    int m_step = 0;
    bool const m_isShown;
    static bool s_isOnScreen;
};

#endif // PROGRESS_H
