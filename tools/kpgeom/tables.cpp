// SPDX-License-Identifier: MIT
#include "shellcompletion.h"

#include <QFile>
#include <QStringList>

#include <cstdio>

namespace {

struct Text
{
    char const* name;
    QString (*make)(QString const& form);
};

constexpr Text texts[] = {
    {"bash", bashCompletion},
    {"zsh", zshCompletion},
    {"fish", fishCompletion},
};

int failed(QString const& what)
{
    std::fprintf(stderr, "%s\n", qPrintable(what));
    return 1;
}

/** Makes a text of the form in a file. */
int write(Text const& text, QString const& formFile, QString const& file)
{
    QFile form(formFile);
    QFile output(file);
    if (!form.open(QIODevice::ReadOnly))
        return failed(formFile + QStringLiteral(": ") + form.errorString());
    QByteArray const bytes = text.make(QString::fromUtf8(form.readAll())).toUtf8();
    bool const isWritten = output.open(QIODevice::WriteOnly | QIODevice::Truncate)
        && output.write(bytes) == bytes.size() && output.flush();
    return isWritten ? 0 : failed(file + QStringLiteral(": ") + output.errorString());
}

} // namespace

/** Writes what the tables of the commands are used for beside running them: KIND FORM FILE */
int main(int argc, char** argv)
{
    for (Text const& text : texts) {
        if (argc == 4 && qstrcmp(text.name, argv[1]) == 0)
            return write(text, QFile::decodeName(argv[2]), QFile::decodeName(argv[3]));
    }
    return failed(QStringLiteral("usage: kpgeomtables bash|zsh|fish FORM FILE"));
}
