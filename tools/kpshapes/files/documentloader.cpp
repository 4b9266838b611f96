// SPDX-License-Identifier: MIT
#include "files/documentloader.h"

#include "common/filecontent.h"

#include <QElapsedTimer>

/** Hands items on, some at a time. */
class DocumentLoader::Batches
{
public:
    explicit Batches(DocumentLoader& loader)
        : m_loader(loader)
    {
        m_sinceLast.start();
    }

    void take(ItemPointer const& item)
    {
        // The first ones soon, then as many as come between two pictures on the screen, and more.
        constexpr std::size_t first = 16;
        constexpr int milliseconds = 50;
        m_items.push_back(item);
        if (m_sinceLast.elapsed() >= milliseconds || (m_isFirst && m_items.size() >= first))
            flush();
    }

    void flush()
    {
        if (m_items.empty())
            return;
        m_loader.put(m_items);
        m_items.clear();
        m_isFirst = false;
        m_sinceLast.restart();
    }

private:
    DocumentLoader& m_loader;
    Items m_items;
    QElapsedTimer m_sinceLast;
    bool m_isFirst = true;
};

DocumentLoader::DocumentLoader(QString const& path, QObject* parent)
    : QObject(parent)
    , m_path(path)
{
    connect(this, &DocumentLoader::hasRead, this, &DocumentLoader::progress, Qt::QueuedConnection);
    connect(
        this, &DocumentLoader::hasItems, this, &DocumentLoader::tellItems, Qt::QueuedConnection);
    connect(this, &DocumentLoader::hasEnded, this, &DocumentLoader::tellEnd, Qt::QueuedConnection);
}

DocumentLoader::~DocumentLoader()
{
    cancel();
    if (m_thread.joinable())
        m_thread.join();
}

void DocumentLoader::start()
{
    if (!m_thread.joinable())
        m_thread = std::thread([this] { run(); });
}

void DocumentLoader::run()
{
    m_result = load();
    Q_EMIT hasEnded({});
}

void DocumentLoader::put(Items const& items)
{
    {
        std::lock_guard<std::mutex> const lock(m_mutex);
        m_waiting.insert(m_waiting.end(), items.begin(), items.end());
    }
    Q_EMIT hasItems({});
}

void DocumentLoader::tellItems()
{
    Items items;
    {
        std::lock_guard<std::mutex> const lock(m_mutex);
        items.swap(m_waiting);
    }
    // Those of a batch that has just been told may have come along.
    if (!m_isCancelled && !items.empty())
        Q_EMIT loaded(items);
}

void DocumentLoader::tellEnd()
{
    // Cancelled at the last moment, when items may have been held back.
    m_result.reading.wasCancelled = m_result.reading.wasCancelled || m_isCancelled;
    Q_EMIT finished(m_result);
}

LoadResult DocumentLoader::load()
{
    LoadResult result;
    result.state = stateOf(m_path);
    auto const content = readPlainFile(m_path, result.diagnostics);
    if (!content)
        return result;
    Batches batches(*this);
    ReadingObserver observer;
    observer.take = [&batches](ItemPointer const& item) { batches.take(item); };
    observer.isCancelled = [this] { return m_isCancelled.load(); };
    observer.progress = [this](double done) { Q_EMIT hasRead(done, {}); };
    result.reading = readSource(*content, m_path, result.diagnostics, observer);
    batches.flush();
    result.state.digest = digestOf(*content);
    if (result.reading.kind == SourceKind::Picture)
        result.content = *content;
    return result;
}
