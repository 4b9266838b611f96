// SPDX-License-Identifier: MIT
#include "files/documentfile.h"

#include "common/filecontent.h"
#include "common/text.h"

#include <QFileInfo>

DocumentFile::DocumentFile()
    : m_source(std::make_shared<SourceDocument>())
{
}

DocumentFile::DocumentFile(QString const& path, std::shared_ptr<SourceDocument const> const& source,
    FileState const& state)
    : m_path(path)
    , m_source(source)
    , m_state(state)
{
}

bool DocumentFile::save(Items const& items, QString const& path, Diagnostics& diagnostics)
{
    WrittenDocument const written = m_source->written(items);
    if (!writePlainFile(path, written.bytes, diagnostics))
        return false;
    if (written.withoutPlace > 0) {
        diagnostics.warning(path,
            QStringLiteral(
                "in this document there is no place for the name, box or fill rule of %1")
                .arg(countText(written.withoutPlace, QStringLiteral("outline"))));
    }
    m_path = path;
    m_state = stateOf(path);
    m_state.digest = digestOf(written.bytes);
    return true;
}

bool DocumentFile::hasChangedOnDisk() const
{
    return !m_path.isEmpty() && hasChanged(m_path, m_state);
}

bool DocumentFile::isReadOnly() const
{
    QFileInfo const file(m_path);
    return !m_path.isEmpty() && file.exists()
        && !(file.isWritable() && QFileInfo(file.absolutePath()).isWritable());
}
