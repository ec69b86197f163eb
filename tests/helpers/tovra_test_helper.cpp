// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT
// A second launch of a host application, for the tests that need a fresh process.
//   tovra_test_helper save KEY VALUE | load KEY | delete KEY
//   tovra_test_helper set-identifier VALUE | identifier
//   tovra_test_helper appname-without-application
//   tovra_test_helper fetch-terms-and-die PORT
//                                         fetch, then die by SIGKILL as the delegate hears of it
//   tovra_test_helper read-terms          show the Terms of Service the kit has at launch
//   tovra_test_helper fetch-terms-forever PORT   fetch again after every answer, until killed
//   tovra_test_helper identifier-reads N  N reads of the user identifier: the last result, the
//                                         first read's ms and the other reads' ms
//   tovra_test_helper own-secrets-name    take the Secret Service's bus name, answer nothing
//   tovra_test_helper host-and-kit host-first|kit-first|host-on-thread|kit-on-thread N
//                                         N host QtKeychain writes and reads, and N saves and
//                                         reads of the identifier: one side before the other,
//                                         or one on a thread of the host's and the other on
//                                         the main thread at the same time; how many of each
//                                         came back
// Prints one line per result; "<null>" stands for a null value. Run with QDBUS_DEBUG=1, a
// launch ends with one more line: "calls:" and the Secret Service methods it called.

#include "HostKeychain.h"
#include "TestSession.h"

#include <RQKeychain.h>
#include <TVRDocumentManager.h>
#include <TVRDocumentManagerDelegate.h>
#include <TVRManager.h>

#include <QCoreApplication>
#include <QDBusConnection>
#include <QElapsedTimer>
#include <QMutex>
#include <QRegularExpression>
#include <QSemaphore>
#include <QTextStream>
#include <QThread>

#include <memory>

#include <csignal>

namespace {

// The text of a value, "<null>" for none: a null variant or text.
QString show(const QVariant &value)
{
    const QString text = value.toString();
    return text.isNull() ? QStringLiteral("<null>") : text;
}

// Fetches the Terms of Service and, as the command's name ends, dies by SIGKILL as it hears
// of the answer ("die") or fetches again after every answer ("forever").
class Fetcher : public QObject, public TVRDocumentManagerDelegate
{
public:
    bool die = false;
    void managerDidFinishWithSuccess(TVRDocumentManager *manager, bool) override { answered(manager); }
    void managerFailedWithError(TVRDocumentManager *manager, const TVRError &) override { answered(manager); }

private:
    void answered(TVRDocumentManager *manager)
    {
        if (die)
            std::raise(SIGKILL);
        manager->fetchTermsOfService();
    }
};

// Qt's D-Bus module logs every message it sends where QDBUS_DEBUG is set: the methods of the
// Secret Service among them are kept, and every message but a debug one is passed on.
QMutex secretCallsLock;
QStringList secretCalls;
QtMessageHandler otherMessages = nullptr;

void keepSecretCalls(QtMsgType type, const QMessageLogContext &context, const QString &message)
{
    static const QRegularExpression call(
        QStringLiteral(R"re(sending message.*interface="org\.freedesktop\.Secret\.\w+", member="(\w+)")re"));
    const QRegularExpressionMatch match = call.match(message);
    const QMutexLocker locker(&secretCallsLock);
    if (match.hasMatch())
        secretCalls << match.captured(1);
    else if (type != QtDebugMsg)
        otherMessages(type, context, message);
}

} // namespace

int main(int argc, char *argv[])
{
    const QString command = argc > 1 ? QString::fromLocal8Bit(argv[1]) : QString();
    QTextStream out(stdout);

    // appName() must also answer where the host made no application object.
    if (command == QLatin1String("appname-without-application")) {
        out << show(TVRManager::appName()) << Qt::endl;
        return 0;
    }

    QCoreApplication app(argc, argv);
    const bool listSecretCalls = qEnvironmentVariableIntValue("QDBUS_DEBUG") != 0;
    if (listSecretCalls)
        otherMessages = qInstallMessageHandler(keepSecretCalls);
    // Every launch of this "host" shares one settings file, as launches of one app do.
    QCoreApplication::setOrganizationName(QStringLiteral("Tovra Tests"));
    QCoreApplication::setApplicationName(QStringLiteral("tovra-host"));
    const QStringList args = app.arguments().mid(2);
    if (command == QLatin1String("save") && args.size() == 2) {
        out << show(RQKeychain::saveValue(args[1], args[0])) << Qt::endl;
    } else if (command == QLatin1String("load") && args.size() == 1) {
        out << show(RQKeychain::loadValueForKey(args[0])) << Qt::endl;
    } else if (command == QLatin1String("delete") && args.size() == 1) {
        out << show(RQKeychain::deleteValueForKey(args[0])) << Qt::endl;
    } else if (command == QLatin1String("set-identifier") && args.size() == 1) {
        TVRManager::setUserIdentifier(args[0]);
        out << show(TVRManager::userIdentifier()) << Qt::endl;
    } else if (command == QLatin1String("identifier")) {
        // The first read loads from the keychain; once the item is gone behind the
        // manager's back, the second read shows whether it asked the keychain again.
        out << show(TVRManager::userIdentifier()) << Qt::endl;
        RQKeychain::deleteValueForKey(kTVRUserIdentifier);
        out << show(TVRManager::userIdentifier()) << Qt::endl;
    } else if (command == QLatin1String("identifier-reads") && args.size() == 1) {
        // Only the reads are timed, inside this process: not its start or its end.
        QElapsedTimer timer;
        timer.start();
        QVariant value = TVRManager::userIdentifier();
        const qint64 first = timer.restart();
        for (int i = 1; i < args[0].toInt(); ++i)
            value = TVRManager::userIdentifier();
        out << show(value) << ' ' << first << ' ' << timer.elapsed() << Qt::endl;
    } else if (command == QLatin1String("host-and-kit") && args.size() == 2) {
        const int rounds = args[1].toInt();
        int right[2] = {}; // how many of the kit's and of the host's values came back
        // The host's own item with QtKeychain, or the kit's identifier: written, then read back.
        const QString hostService = QStringLiteral("tovra.test.host");
        const auto side = [&](bool host) {
            for (int i = 0; i < rounds; ++i) {
                const QString value = (host ? QStringLiteral("host-") : QStringLiteral("user-")) + QString::number(i);
                if (host)
                    HostKeychain::write(hostService, hostService, value.toUtf8());
                else
                    TVRManager::setUserIdentifier(value);
                right[host] += (host ? QString::fromUtf8(HostKeychain::read(hostService, hostService))
                                     : show(RQKeychain::loadValueForKey(kTVRUserIdentifier)))
                    == value;
            }
        };
        // The side that goes first, or on the thread.
        const bool host = args[0].startsWith(QLatin1String("host"));
        if (args[0].endsWith(QLatin1String("first"))) {
            side(host);
            side(!host);
        } else {
            QSemaphore started;
            std::unique_ptr<QThread> worker(QThread::create([&] {
                started.release();
                side(host);
            }));
            worker->start();
            started.acquire();
            side(!host);
            worker->wait();
        }
        out << "kit " << right[0] << '/' << rounds << Qt::endl << "host " << right[1] << '/' << rounds << Qt::endl;
    } else if (command == QLatin1String("own-secrets-name")) {
        if (!QDBusConnection::sessionBus().registerService(QStringLiteral("org.freedesktop.secrets")))
            return 1;
        out << "owned" << Qt::endl;
        return app.exec();
    } else if (command.startsWith(QLatin1String("fetch-terms-")) && args.size() == 1) {
        TestSession session;
        session.route(TVRNetworkManager::baseURLComponents().host(), args[0].toUShort());
        TVRDocumentManager *manager = TVRDocumentManager::sharedInstance();
        manager->setSession(&session);
        Fetcher delegate;
        delegate.die = command.endsWith(QLatin1String("die"));
        manager->setDelegate(&delegate);
        manager->fetchTermsOfService();
        app.exec();
    } else if (command == QLatin1String("read-terms")) {
        const std::shared_ptr<TVRDocument> terms = TVRDocumentManager::sharedInstance()->termsOfService();
        out << show(terms ? terms->identifier() : QString()) << Qt::endl;
        if (terms) {
            out << show(terms->title()) << Qt::endl << terms->date().toString(Qt::ISODateWithMs) << Qt::endl;
            for (const auto &section : terms->sections())
                out << show(section->title()) << " | " << show(section->body()) << Qt::endl;
        }
    } else {
        QTextStream(stderr) << "unknown command" << Qt::endl;
        return 2;
    }
    if (listSecretCalls) {
        qInstallMessageHandler(otherMessages);
        out << (QStringList{QStringLiteral("calls:")} + secretCalls).join(QLatin1Char(' ')) << Qt::endl;
    }
    return 0;
}
