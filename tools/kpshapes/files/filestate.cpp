// SPDX-License-Identifier: MIT
#include "files/filestate.h"

#include "common/filecontent.h"
#include "md5.h"

#include <QDateTime>
#include <QFileInfo>

QByteArray digestOf(QByteArray const& content)
{
    MD5 digest(content.constData(), static_cast<std::size_t>(content.size()));
    return QByteArray::fromStdString(digest.toString());
}

FileState stateOf(QString const& path)
{
    QFileInfo const file(path);
    FileState state;
    if (!file.isFile())
        return state;
    state.size = file.size();
    state.modified = file.lastModified().toMSecsSinceEpoch();
    return state;
}

bool hasChanged(QString const& path, FileState const& before)
{
    FileState const now = stateOf(path);
    if (now.size != before.size)
        return true;
    if (now.size < 0 || now.modified == before.modified)
        return false;
    Diagnostics unused;
    auto const content = readFile(path, unused);
    return !content || digestOf(*content) != before.digest;
}
