// SPDX-License-Identifier: MIT
#ifndef SAVEDFILE_P_H
#define SAVEDFILE_P_H

#include <QByteArray>
#include <QFile>

/**
 * A file that takes the place of another one in a single step: whoever reads that finds the old one or
 * the new one, whole, whatever ends the process meanwhile.
 *
 * Where the file system can, the new file has no name until it is safe on the disk. The name that it
 * has from then on, for a moment, or from the beginning, is of a form that nothing else has, and the
 * file is locked (flock) as long as this lives. So a process that ends before its time may leave such
 * a file, and any other one can tell it from a file that is being written: see removeStale().
 *
 * It is written from its start to its end. Failures leave their reason in errno and errorString().
 */
class SavedFile : public QFile
{
public:
    /** What becomes of a folder in which no file may be made. */
    enum class Unwritable { IsFailure, IsBypassed };

    /** @param name the file to be replaced; a link to it stays, and the file need not exist */
    explicit SavedFile(QString const& name);
    /** Unless it was committed, what was there before stays. */
    ~SavedFile() override;

    /**
     * Opens the new file for writing, with the permissions of the present one if there is one. Fails
     * if that may not be written, and if more than 128 links lead to it.
     *
     * @param unwritable IsBypassed: where the folder cannot be written to, the present file itself is
     * opened, and its content lost at once
     */
    bool begin(Unwritable unwritable = Unwritable::IsFailure);
    /** Whether it would stay behind if the process ended now. */
    bool isNamed() const { return !m_temporary.isEmpty(); }

    /** Puts it in its place when it is safe on the disk; false, and all as before, on failure. */
    bool commit();
    /** Gives it up. */
    void cancel();

    /**
     * Removes from the folder of `name` the files that processes of this user, or for root of any,
     * have left when they ended during a save, on whatever file. One that may still be written is left
     * alone, and so is every file of another form of name.
     */
    static void removeStale(QString const& name);

    /**
     * Opens `file` for writing and reading as one in the folder for temporary files that has no name,
     * and is gone when it is closed.
     */
    static bool openTemporary(QFile& file);

private:
    bool fail();
    bool beginDirectly();
    bool takePermissions(unsigned int present);
    bool giveName();

    QByteArray const m_place; ///< that is taken in the end: no link
    int m_folder = -1; ///< of it, open as a path
    QByteArray m_temporary; ///< the name that it has meanwhile; empty for none
    bool m_isDirect = false; ///< it is the present file itself
};

#endif // SAVEDFILE_P_H
