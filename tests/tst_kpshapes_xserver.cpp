// SPDX-License-Identifier: MIT
#include "testing.h"

#include <QFile>
#include <QGuiApplication>
#include <QImage>
#include <QProcess>
#include <QTemporaryDir>
#include <QtEndian>

#include <optional>

/** The program as its users start it, on a real X server: open, drag, save. */
class TestKpshapesXServer : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir m_folder;
    QProcess m_server;
    QProcess m_editor;
    QProcessEnvironment m_environment;

    /** One field of the header of the screen's picture. */
    static quint32 field(QByteArray const& dump, int index)
    {
        return qFromBigEndian<quint32>(dump.constData() + 4 * index);
    }

    /** What the server shows now: its frame buffer is a file in the XWD format. */
    QImage screen() const
    {
        QFile file(m_folder.filePath("Xvfb_screen0"));
        if (!file.open(QIODevice::ReadOnly))
            return {};
        QByteArray const dump = file.readAll();
        int const start = int(field(dump, 0) + 12 * field(dump, 19));
        int const bytesPerLine = int(field(dump, 12));
        QImage const shown(reinterpret_cast<uchar const*>(dump.constData()) + start,
            int(field(dump, 4)), int(field(dump, 5)), bytesPerLine, QImage::Format_RGB32);
        return shown.copy();
    }

    /** Where a mark is whose left half has one colour and whose right half another. */
    static std::optional<QPoint> markOf(QImage const& image, QRgb left, QRgb right)
    {
        for (int y = 0; y < image.height(); ++y) {
            auto const* const line = reinterpret_cast<QRgb const*>(image.constScanLine(y));
            auto const is = [line](int at, QRgb colour) {
                return (line[at] & RGB_MASK) == (colour & RGB_MASK);
            };
            // Between the halves is a pixel or two of both.
            for (int x = 0; x + 4 < image.width(); ++x) {
                if (is(x, left)
                    && (is(x + 1, right) || is(x + 2, right) || is(x + 3, right)
                        || is(x + 4, right)))
                    return QPoint(x + 1, y + 2);
            }
        }
        return std::nullopt;
    }

    /** The same once the window has painted it. */
    std::optional<QPoint> awaitMark(QRgb left, QRgb right) const
    {
        std::optional<QPoint> found;
        auto const look = [&] {
            found = markOf(screen(), left, right);
            return found.has_value();
        };
        return QTest::qWaitFor(look, 20000) ? found : std::nullopt;
    }

    bool tell(QStringList const& arguments) const
    {
        QProcess tool;
        tool.setProcessEnvironment(m_environment);
        tool.start("xdotool", arguments);
        return tool.waitForFinished() && tool.exitCode() == 0;
    }

private Q_SLOTS:
    void initTestCase()
    {
        m_server.start("Xvfb",
            {"-displayfd", "1", "-noreset", "-screen", "0", "1280x960x24", "-fbdir",
                m_folder.path(), "-nolisten", "tcp"});
        QVERIFY2(m_server.waitForStarted(), "Xvfb cannot be started");
        QTRY_VERIFY_WITH_TIMEOUT(m_server.canReadLine(), 20000);
        QByteArray const number = m_server.readLine().trimmed();
        m_environment = QProcessEnvironment::systemEnvironment();
        m_environment.insert("DISPLAY", ":" + QString::fromLatin1(number));
        m_environment.insert("QT_QPA_PLATFORM", "xcb");
        m_environment.insert("XDG_CONFIG_HOME", m_folder.filePath("config"));
        m_environment.insert("XDG_DATA_HOME", m_folder.filePath("data"));
        m_environment.insert("XDG_RUNTIME_DIR", m_folder.path());
        m_environment.remove("QT_SCALE_FACTOR");
    }

    void cleanupTestCase()
    {
        for (QProcess* const process : {&m_editor, &m_server}) {
            process->terminate();
            if (!process->waitForFinished(10000))
                process->kill();
            process->waitForFinished();
        }
    }

    void aPointIsDraggedAndSaved()
    {
        // The one point with these two rules: no other mark has their colours side by side.
        QString const path = m_folder.filePath("shapes.xml");
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write("<Shapes><Shape Name='tip' Width='240' Height='160'><Geometry Closed='1'>"
                   "<MoveTo><X V='0' B='1' P='0'/><Y V='0' B='2' P='0'/></MoveTo>"
                   "<LineTo><X V='200' B='6' P='0.25'/><Y V='120' B='7' P='0.25'/></LineTo>"
                   "<LineTo><X V='0' B='1' P='0'/><Y V='160' B='2' P='1'/></LineTo>"
                   "</Geometry></Shape></Shapes>");
        file.close();

        m_editor.setProcessEnvironment(m_environment);
        m_editor.setProcessChannelMode(QProcess::MergedChannels);
        m_editor.start(KPSHAPES_EXECUTABLE, {path});
        QVERIFY(m_editor.waitForStarted());
        auto const mark = awaitMark(0xff9467bd, 0xff8c564b);
        QVERIFY2(mark, m_editor.readAll().constData());

        QString const x = QString::number(mark->x());
        QString const y = QString::number(mark->y());
        QVERIFY(tell({"mousemove", x, y, "sleep", "0.3", "mousedown", "1", "sleep", "0.2",
            "mousemove_relative", "--", "-30", "-20", "sleep", "0.2", "mousemove_relative", "--",
            "-10", "0", "sleep", "0.2", "mouseup", "1", "sleep", "0.3", "key", "ctrl+s"}));
        auto const saved = [&path] {
            QFile now(path);
            return now.open(QIODevice::ReadOnly) ? now.readAll() : QByteArray();
        };
        QTRY_VERIFY_WITH_TIMEOUT(!saved().contains("V='200'"), 10000);
        // The rules stay, the rates follow.
        QVERIFY2(saved().contains("B='6'") && saved().contains("B='7'"), saved().constData());
        QCOMPARE(m_editor.state(), QProcess::Running);
        QCOMPARE(m_editor.readAll(), QByteArray());
    }
};

QTEST_MAIN(TestKpshapesXServer)
#include "tst_kpshapes_xserver.moc"
