// SPDX-License-Identifier: MIT
// Any text in any font file: outlines that fill as painted, or one reason. The first two bytes tell
// the size of an em and the length of the text that follows; the rest is the font.

#include "choices.h"
#include "diagnosticproperties.h"
#include "import/textimport.h"
#include "pictureproperties.h"

#include <QFile>

#include <array>

#include <sys/mman.h>
#include <unistd.h>

namespace {

/** A file in memory, that has a name as long as it lives. */
class MemoryFile
{
public:
    explicit MemoryFile(QByteArray const& content)
        : m_descriptor(memfd_create("font", MFD_CLOEXEC))
    {
        QFile file;
        Fuzzing::require(file.open(m_descriptor, QIODevice::WriteOnly)
                && file.write(content) == content.size() && file.flush(),
            "memory can be written");
    }
    ~MemoryFile() { close(m_descriptor); }
    MemoryFile(MemoryFile const&) = delete;
    MemoryFile& operator=(MemoryFile const&) = delete;

    QString name() const { return QStringLiteral("/proc/self/fd/%1").arg(m_descriptor); }

private:
    int const m_descriptor;
};

} // namespace

extern "C" int LLVMFuzzerInitialize(int* /*argc*/, char*** /*argv*/)
{
    Fuzzing::prepareForImports();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size)
{
    constexpr std::array<double, 6> emSizes {defaultEmSize, 1.0, 1000.0, 1e-3, 1e5, 1e300};
    Fuzzing::Choices choices(Fuzzing::bytes(data, size));
    double const emSize =
        emSizes[static_cast<std::size_t>(choices.bounded(static_cast<int>(emSizes.size())))];
    int const length = choices.byte();
    QByteArray const rest = choices.rest();
    QString const text = QString::fromUtf8(rest.left(length));
    MemoryFile const font(rest.mid(length));
    Fuzzing::requireImport([&](Diagnostics& diagnostics) -> std::optional<ImportedPictures> {
        auto picture = importText(text,
            {font.name(), emSize, QStringLiteral("em"), Fuzzing::noMessages(), true}, diagnostics);
        if (!picture)
            return std::nullopt;
        ImportedPictures pictures;
        pictures.push_back(std::move(*picture));
        return pictures;
    });
    return 0;
}
