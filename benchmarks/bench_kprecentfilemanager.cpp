// SPDX-License-Identifier: MIT
// Adding to full lists and listing them, against the least that any list of recent files does.

#include "kprecentfilemanager.h"

#include <benchmark/benchmark.h>

#include <vector>

namespace {

/** More paths than a list holds: each of them is new when its turn comes. */
std::vector<QString> paths()
{
    std::vector<QString> paths;
    for (int i = 1000; i < 1128; ++i)
        paths.push_back(QStringLiteral("/home/user/Documents/project%1/drawing%1.x").arg(i));
    return paths;
}

KpRecentFileManager fullManager(std::vector<QString> const& paths)
{
    KpRecentFileManager manager;
    for (QString const& path : paths)
        manager.addOpenFileInfo(path, KpRecentFileManager::RecAuto, QString());
    return manager;
}

void addNew(benchmark::State& state)
{
    auto const files = paths();
    KpRecentFileManager manager = fullManager(files);
    std::size_t next = 0;
    for (auto _ : state) {
        manager.addOpenFileInfo(files[next], KpRecentFileManager::RecAuto, QString());
        next = (next + 1) % files.size();
    }
}

void addAgain(benchmark::State& state)
{
    auto const files = paths();
    KpRecentFileManager manager = fullManager(files);
    for (auto _ : state) {
        manager.addOpenFileInfo(
            QString(manager.m_files.last().path), KpRecentFileManager::RecAuto, QString());
    }
}

void peerAddNew(benchmark::State& state)
{
    auto const files = paths();
    QStringList list;
    std::size_t next = 0;
    for (auto _ : state) {
        list.removeAll(files[next]);
        list.prepend(files[next]);
        if (list.size() > 60)
            list.removeLast();
        next = (next + 1) % files.size();
    }
}

void listFiles(benchmark::State& state)
{
    KpRecentFileManager manager = fullManager(paths());
    for (auto _ : state) {
        QVector<KpRecentFileManager::RecFileInfo> infos;
        manager.getRecentFiles(infos);
        benchmark::DoNotOptimize(infos.constData());
    }
}

BENCHMARK(addNew)->Unit(benchmark::kMicrosecond);
BENCHMARK(addAgain)->Unit(benchmark::kMicrosecond);
BENCHMARK(peerAddNew)->Unit(benchmark::kMicrosecond);
BENCHMARK(listFiles)->Unit(benchmark::kMicrosecond);

} // namespace
