// SPDX-License-Identifier: MIT
// Any bytes as what a user of the editor does, one decision after the other: nothing breaks, and with
// all steps undone the document is its file to the byte.

#include "../tests/usertesting.h"
#include "canvas/canvasaccessible.h"
#include "choices.h"
#include "fuzzing.h"

#include <QApplication>

namespace {

/** More than these do not fit into an input. */
constexpr int mostActions = 200;

Testing::WindowFolder& folder()
{
    static Testing::WindowFolder shared;
    return shared;
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int* /*argc*/, char*** /*argv*/)
{
    qInstallMessageHandler([](QtMsgType, QMessageLogContext const&, QString const&) {});
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qSetGlobalQHashSeed(0);
    static char name[] = "kpshapes";
    static char* arguments[] = {name, nullptr};
    static int count = 1;
    // Never destroyed: libFuzzer ends the process wherever it is.
    static auto const* const application = new QApplication(count, arguments);
    Q_UNUSED(application)
    QApplication::setStyle(QStringLiteral("Fusion"));
    installCanvasAccessibility();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size)
{
    Fuzzing::Choices choices(Fuzzing::bytes(data, size));
    Testing::Session session(folder());
    MainWindow& window = session.window();
    Testing::AnyUser user(window, [&choices](int bound) { return choices.bounded(bound); });
    for (int i = 0; i < mostActions && !choices.isAtEnd(); ++i) {
        user.act();
        if (i % 16 == 0)
            QCoreApplication::processEvents();
    }
    QUndoStack& steps = window.document().undoStack();
    QByteArray const text = window.controller().text();
    int const index = steps.index();
    steps.setIndex(0);
    Fuzzing::require(window.controller().text() == session.read(),
        "without its steps it is its file to the byte");
    steps.setIndex(index);
    Fuzzing::require(window.controller().text() == text, "with its steps it is what it was");
    return 0;
}
