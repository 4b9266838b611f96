// SPDX-License-Identifier: MIT
#ifndef WEBDRIVER_H
#define WEBDRIVER_H

#include <QElapsedTimer>
#include <QEventLoop>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QNetworkAccessManager>
#include <QNetworkProxy>
#include <QNetworkReply>
#include <QProcess>
#include <QTemporaryDir>
#include <QTimer>

#include <unistd.h>

/**
 * A browser without a window that is driven as its user would: WebDriver (a W3C recommendation), with
 * chromedriver on a port of this machine that the system chooses.
 */
class Browser
{
public:
    /** What a call returns, and whether it went well. */
    struct Answer
    {
        bool isGood;
        QJsonValue value; ///< or what went wrong
    };

    Browser() { m_network.setProxy(QNetworkProxy::NoProxy); }
    ~Browser()
    {
        if (!m_session.isEmpty())
            send("DELETE", m_session, {});
        m_driver.terminate();
        if (!m_driver.waitForFinished(5000)) {
            m_driver.kill();
            m_driver.waitForFinished();
        }
    }
    Browser(Browser const&) = delete;
    Browser& operator=(Browser const&) = delete;

    /** Starts driver and browser; what went wrong, or empty. */
    QString start()
    {
        if (!startDriver())
            return "chromedriver does not start: " + m_driver.errorString();
        QJsonArray arguments {"--headless", "--disable-gpu", "--disable-dev-shm-usage",
            "--no-first-run", "--disable-background-networking", "--disable-component-update",
            "--force-device-scale-factor=1", "--window-size=1000,700",
            "--user-data-dir=" + m_profile.path()};
        if (geteuid() == 0) // for whom the browser has no sandbox
            arguments.append("--no-sandbox");
        QJsonObject const wanted {{"browserName", "chrome"},
            {"goog:loggingPrefs", QJsonObject {{"browser", "ALL"}}},
            {"goog:chromeOptions", QJsonObject {{"args", arguments}}}};
        Answer const answer =
            send("POST", "/session", {{"capabilities", QJsonObject {{"alwaysMatch", wanted}}}});
        QString const id = answer.value.toObject().value("sessionId").toString();
        if (id.isEmpty())
            return "there is no browser: " + text(answer.value);
        m_session = "/session/" + id;
        return QString();
    }

    /** A command of the session, its path without it ("/url"). */
    Answer post(QString const& command, QJsonObject const& content)
    {
        return send("POST", m_session + command, content);
    }

    Answer get(QString const& command) { return send("GET", m_session + command, {}); }

    /** What a function body in JavaScript returns. */
    QJsonValue run(QString const& script)
    {
        return post("/execute/sync", {{"script", script}, {"args", QJsonArray()}}).value;
    }

    /** What the browser has complained about since the last call: a text each. */
    QStringList complaints()
    {
        QStringList texts;
        QJsonArray const entries = post("/se/log", {{"type", "browser"}}).value.toArray();
        for (QJsonValue const& entry : entries)
            texts << entry.toObject().value("message").toString();
        return texts;
    }

    /** The reference to the element with this id, as commands take it. */
    QJsonObject element(QString const& id)
    {
        return post("/element", {{"using", "css selector"}, {"value", "#" + id}}).value.toObject();
    }

    /** The path of commands about this element. */
    QString pathTo(QString const& id)
    {
        QJsonObject const reference = element(id);
        return reference.isEmpty() ? QString() : "/element/" + reference.begin().value().toString();
    }

    static QString text(QJsonValue const& value)
    {
        return QJsonDocument(QJsonArray {value}).toJson(QJsonDocument::Compact);
    }

private:
    bool startDriver()
    {
        m_driver.setProcessChannelMode(QProcess::MergedChannels);
        m_driver.start("chromedriver", {"--port=0"});
        QByteArray said;
        QByteArray const announcement = "started successfully on port ";
        QElapsedTimer timer;
        timer.start();
        while (timer.elapsed() < 30000 && m_driver.state() != QProcess::NotRunning) {
            m_driver.waitForReadyRead(1000);
            said += m_driver.readAll();
            int const at = said.indexOf(announcement);
            int const end = said.indexOf('.', at);
            if (at >= 0 && end >= 0) {
                int const from = at + announcement.size();
                m_address = "http://127.0.0.1:" + said.mid(from, end - from);
                return true;
            }
        }
        return false;
    }

    Answer send(QByteArray const& verb, QString const& path, QJsonObject const& content)
    {
        QNetworkRequest request(QUrl(m_address + path));
        request.setHeader(QNetworkRequest::ContentTypeHeader, "application/json");
        QByteArray const body = verb == "POST" ? QJsonDocument(content).toJson() : QByteArray();
        QNetworkReply* const reply = m_network.sendCustomRequest(request, verb, body);
        QEventLoop loop;
        QObject::connect(reply, &QNetworkReply::finished, &loop, &QEventLoop::quit);
        QTimer::singleShot(30000, reply, &QNetworkReply::abort);
        loop.exec();
        QByteArray const answer = reply->readAll();
        bool const isGood = reply->error() == QNetworkReply::NoError;
        QString const fault = reply->errorString();
        reply->deleteLater();
        QJsonValue const value = QJsonDocument::fromJson(answer).object().value("value");
        return {isGood, value.isUndefined() ? QJsonValue(fault) : value};
    }

    QProcess m_driver;
    QTemporaryDir m_profile;
    QNetworkAccessManager m_network;
    QString m_address;
    QString m_session;
};

#endif // WEBDRIVER_H
