// SPDX-License-Identifier: MIT
#include "console.h"
#include "manualpage.h"
#include "shellcompletion.h"

#include <QFile>

namespace {

struct Kind
{
    char const* name;
    void (*fill)(Form& form, Diagnostics& diagnostics);
};

constexpr Kind kinds[] = {
    {"bash", fillBashCompletion},
    {"zsh", fillZshCompletion},
    {"fish", fillFishCompletion},
    {"manual", fillManual},
};

/** False, after a message, if the form cannot be read or filled, or the file cannot be written. */
bool write(Kind const& kind, QString const& formFile, QString const& file)
{
    Diagnostics diagnostics;
    auto const text = readInput(formFile, diagnostics);
    Form form {formFile, QString::fromUtf8(text.value_or(QByteArray()))};
    if (text)
        kind.fill(form, diagnostics);
    report(diagnostics);
    return diagnostics.isEmpty() && writeOutput(file, form.text.toUtf8());
}

} // namespace

/** Writes what reads the tables of the commands without running the tool: KIND FORM FILE */
int main(int argc, char** argv)
{
    for (Kind const& kind : kinds) {
        if (argc == 4 && qstrcmp(kind.name, argv[1]) == 0)
            return write(kind, QFile::decodeName(argv[2]), QFile::decodeName(argv[3])) ? 0 : 1;
    }
    report({Diagnostic::Severity::Error, QString(), 0, 0,
        QStringLiteral("usage: kpgeomtables bash|zsh|fish|manual FORM FILE")});
    return 2;
}
