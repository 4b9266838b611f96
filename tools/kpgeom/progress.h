// SPDX-License-Identifier: MIT
#ifndef PROGRESS_H
#define PROGRESS_H

#include <QString>
#include <QStringList>

#include <functional>

/**
 * A progress bar on standard error, for many steps or large files, and only on a terminal.
 *
 * The bar stands on the last line and is gone when the object is.
 */
class Progress
{
public:
    /** @param total how many steps there will be; fewer than 10 show no bar */
    explicit Progress(int total);
    /** A step a file. Fewer than 10 files that are small show no bar; of large ones it has parts. */
    explicit Progress(QStringList const& files);
    ~Progress();

    /** Another step begins. */
    void step();
    /** To be told how much of the step is done, from 0 to 1; valid as long as this lives. */
    std::function<void(double)> ofStep();
    /** Takes the bar away, if one is shown, before other output; the next step brings it back. */
    static void clear();

private:
    Q_DISABLE_COPY(Progress)

    void show(QByteArray const& count, double share);
    void showPart(double partOfStep);

    int const m_total;
    int m_step = 0;
    bool const m_hasParts; ///< it shows percents, not steps
    bool const m_isShown;
    int m_percent = -1;
    static bool s_isOnScreen;
};

#endif // PROGRESS_H
