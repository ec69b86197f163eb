// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT
// Tovra demo: a host application that shows its legal documents with the kit.
//
//   tovra-demo                       open the window (renders screenshots without a display)
//   tovra-demo --screenshots DIR     render each screen to DIR as PNG at phone size, then exit
//   tovra-demo --documents DIR       serve DIR/terms-of-service.json and DIR/privacy-policy.json
//   tovra-demo --service URL [--key KEY --secret SECRET]
//                                    show the documents of the service at URL instead
//   tovra-demo --quick [...]         the same in QML, with the kit's QML module: runs
//                                    tovra-demo-quick, which links no widget
//   tovra-demo --screenshots DIR --libraries
//                                    then list the shared libraries the process maps (Linux)
//
// The file makes both programs: tovra-demo, over the widget screens (Tovra::Tovra), and,
// built with TOVRA_DEMO_QUICK, tovra-demo-quick, over the QML module alone (Tovra::Quick), as
// a QML host links the kit.

#include "DemoService.h"
#include "LoopbackSession.h"
#include "OffscreenScreen.h"
#include "SampleDocuments.h"

#include <QCommandLineParser>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTextStream>

#if defined(TOVRA_DEMO_QUICK)
#include "QuickDemo.h"

#include <TovraCore.h>

#include <QGuiApplication>
#include <QQuickWindow>
#else
#include "HomeScreen.h"
#include "ScreenshotTour.h"

#include <Tovra.h>

#include <QApplication>
#include <QMainWindow>
#include <QMenuBar>
#include <QProcess>
#endif

namespace {

const QByteArray demoKey = "demo-key";
const QByteArray demoSecret = "demo-secret";

// The offscreen platform warns that it cannot pass size hints on; that is expected here.
QtMessageHandler defaultHandler = nullptr;
void quietOffscreen(QtMsgType type, const QMessageLogContext &context, const QString &message)
{
    if (message != QLatin1String("This plugin does not support propagateSizeHints()"))
        defaultHandler(type, context, message);
}

bool hasDisplay()
{
#if defined(Q_OS_LINUX)
    return !qEnvironmentVariableIsEmpty("DISPLAY") || !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY")
        || !qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM");
#else
    return true;
#endif
}

bool hasOption(int argc, char *argv[], const char *option)
{
    for (int i = 1; i < argc; ++i) {
        if (qstrcmp(argv[i], option) == 0)
            return true;
    }
    return false;
}

// The shared libraries this process maps, as /proc/self/maps lists them (Linux only): what a
// host of this front loads.
QStringList mappedLibraries()
{
    QFile maps(QStringLiteral("/proc/self/maps"));
    QStringList libraries;
    if (!maps.open(QIODevice::ReadOnly))
        return libraries;
    const QList<QByteArray> lines = maps.readAll().split('\n');
    for (const QByteArray &line : lines) {
        const qsizetype path = line.indexOf('/');
        const QString library = path < 0 ? QString() : QString::fromLocal8Bit(line.mid(path));
        if (library.contains(QLatin1String(".so")) && !libraries.contains(library))
            libraries << library;
    }
    return libraries;
}

#if !defined(TOVRA_DEMO_QUICK)
// The QML demo is a program of its own, so that it links no widget: runs it with this one's
// arguments, in this one's place.
int runQuickProgram(int argc, char *argv[])
{
#if defined(TOVRA_DEMO_QUICK_PROGRAM)
    QCoreApplication app(argc, argv);
    QProcess quick;
    quick.setProcessChannelMode(QProcess::ForwardedChannels);
    quick.setInputChannelMode(QProcess::ForwardedInputChannel);
    quick.start(QStringLiteral(TOVRA_DEMO_QUICK_PROGRAM), QCoreApplication::arguments().mid(1));
    if (!quick.waitForFinished(-1) || quick.exitStatus() != QProcess::NormalExit) {
        QTextStream(stderr) << "tovra-demo: " << TOVRA_DEMO_QUICK_PROGRAM << ": " << quick.errorString() << Qt::endl;
        return 1;
    }
    return quick.exitCode();
#else
    Q_UNUSED(argc)
    Q_UNUSED(argv)
    QTextStream(stderr) << "tovra-demo: built without the QML module" << Qt::endl;
    return 2;
#endif
}
#endif

} // namespace

int main(int argc, char *argv[])
{
#if !defined(TOVRA_DEMO_QUICK)
    if (hasOption(argc, argv, "--quick"))
        return runQuickProgram(argc, argv);
#endif
    QTemporaryDir scratch;
    const bool headless = hasOption(argc, argv, "--screenshots") || !hasDisplay();
    // Screenshots are taken offscreen on a phone-sized screen.
    if (headless) {
        if (!useOffscreenScreen(scratch.path(), QSize(390, 844)))
            return 1;
        defaultHandler = qInstallMessageHandler(quietOffscreen);
    }

#if defined(TOVRA_DEMO_QUICK)
    // Offscreen, Qt Quick draws with its software renderer. The QML demo runs without
    // QApplication: no widget can be made in it.
    if (headless)
        QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
    QGuiApplication app(argc, argv);
#else
    QApplication app(argc, argv);
#endif
    QCoreApplication::setOrganizationName(QStringLiteral("Tovra"));
    QCoreApplication::setApplicationName(QStringLiteral("Tovra Demo"));
    QTextStream out(stdout);
    QTextStream err(stderr);

    QCommandLineParser options;
    options.setApplicationDescription(QStringLiteral("Shows the Tovra kit's screens against a sample service."));
    options.addHelpOption();
    const QCommandLineOption screenshots(QStringLiteral("screenshots"),
                                         QStringLiteral("Render each screen to <dir> as PNG, then exit."),
                                         QStringLiteral("dir"));
    const QCommandLineOption documents(
        QStringLiteral("documents"), QStringLiteral("Serve terms-of-service.json and privacy-policy.json from <dir>."),
        QStringLiteral("dir"));
    const QCommandLineOption serviceOption(
        QStringLiteral("service"),
        QStringLiteral("Show the documents of the service at <url> (https, or http on loopback) instead of the "
                       "samples."),
        QStringLiteral("url"));
    const QCommandLineOption keyOption(QStringLiteral("key"), QStringLiteral("The service's API key."),
                                       QStringLiteral("key"));
    const QCommandLineOption secretOption(QStringLiteral("secret"), QStringLiteral("The service's API secret."),
                                          QStringLiteral("secret"));
    const QCommandLineOption quickOption(QStringLiteral("quick"), QStringLiteral("Show the kit's QML pages instead."));
    const QCommandLineOption librariesOption(
        QStringLiteral("libraries"),
        QStringLiteral("After the screenshots, list the shared libraries the process maps (Linux)."));
    options.addOption(screenshots);
    options.addOption(documents);
    options.addOption(quickOption);
    options.addOption(librariesOption);
    options.addOptions({serviceOption, keyOption, secretOption});
    options.process(app);

    if (options.isSet(serviceOption)) {
        // The host's own service: the kit's default session, the system's certificates.
        if (!TVRManager::setServiceURL(QUrl(options.value(serviceOption)))) {
            err << "tovra-demo: not a service address the kit takes: " << options.value(serviceOption) << Qt::endl;
            return 2;
        }
        TVRManager::setAPIKey(options.value(keyOption), options.value(secretOption));
        TVRManager::setAppName(QStringLiteral("Acme Notes"));
        if (headless) {
            QString problem;
#if defined(TOVRA_DEMO_QUICK)
            const QStringList written = takeQuickServiceScreenshots(options.value(screenshots), &problem);
#else
            const QStringList written = takeServiceScreenshots(options.value(screenshots), &problem);
#endif
            for (const QString &path : written)
                out << QDir::current().absoluteFilePath(path) << Qt::endl;
            if (written.isEmpty())
                err << "tovra-demo: " << problem << Qt::endl;
            return written.isEmpty() ? 1 : 0;
        }
        out << "Documents of " << TVRManager::serviceURL().toDisplayString() << Qt::endl;
#if defined(TOVRA_DEMO_QUICK)
        return runQuickDemo(SampleDocuments::termsOfService());
#else
        QMainWindow window;
        auto *home = new HomeScreen(SampleDocuments::termsOfService());
        window.setCentralWidget(new TVRNavigationController(home));
        QMenu *menu = window.menuBar()->addMenu(QStringLiteral("&Documents"));
        menu->addActions({home->termsAction(), home->privacyAction()});
        window.setWindowTitle(QStringLiteral("Tovra demo: ") + TVRManager::serviceURL().toDisplayString());
        window.resize(420, 800);
        window.show();
        return QApplication::exec();
#endif
    }

    // The documents to serve: the samples, or the user's own, checked first.
    QJsonObject terms = SampleDocuments::termsOfService();
    QJsonObject privacy = SampleDocuments::privacyPolicy();
    if (options.isSet(documents)) {
        const QDir dir(options.value(documents));
        QString problem;
        terms = SampleDocuments::load(dir.filePath(QStringLiteral("terms-of-service.json")), &problem);
        if (problem.isEmpty())
            privacy = SampleDocuments::load(dir.filePath(QStringLiteral("privacy-policy.json")), &problem);
        if (!problem.isEmpty()) {
            err << "tovra-demo: " << problem << Qt::endl;
            return 2;
        }
    }

    DemoService service(terms, privacy, demoKey, demoSecret);
    if (!service.start()) {
        err << "tovra-demo: the sample service could not listen on 127.0.0.1" << Qt::endl;
        return 1;
    }

    // What a host sets up at each launch.
    TVRManager::setAPIKey(QString::fromLatin1(demoKey), QString::fromLatin1(demoSecret));
    TVRManager::setAppName(QStringLiteral("Acme Notes"));
    TVRManager::setUserIdentifier(QStringLiteral("demo-user-1"));
    TVRDesignClass::setSectionTitleColor(QColor(0x2B, 0x57, 0x9A)); // one appearance setting

    // The kit reaches the sample service as it would the real one, through its session.
    LoopbackSession session;
    session.route(TVRNetworkManager::baseURLComponents().host(), service.port());
    TVRDocumentManager::sharedInstance()->setSession(&session);

    if (headless) {
        const QString directory =
            options.isSet(screenshots) ? options.value(screenshots) : QStringLiteral("tovra-demo-screenshots");
        QString problem;
#if defined(TOVRA_DEMO_QUICK)
        const QStringList written = takeQuickScreenshots(directory, terms, &problem);
#else
        const QStringList written = takeScreenshots(directory, service, session, terms, &problem);
#endif
        if (written.isEmpty()) {
            err << "tovra-demo: " << problem << Qt::endl;
            return 1;
        }
        for (const QString &path : written)
            out << QDir::current().absoluteFilePath(path) << Qt::endl;
        if (options.isSet(librariesOption)) {
            const QStringList libraries = mappedLibraries();
            for (const QString &library : libraries)
                out << "library: " << library << Qt::endl;
        }
        return 0;
    }

    out << "Sample service on https://127.0.0.1:" << service.port() << " as "
        << TVRNetworkManager::baseURLComponents().host() << Qt::endl;
#if defined(TOVRA_DEMO_QUICK)
    return runQuickDemo(terms);
#else
    QMainWindow window;
    auto *home = new HomeScreen(terms);
    window.setCentralWidget(new TVRNavigationController(home));
    QMenu *menu = window.menuBar()->addMenu(QStringLiteral("&Documents"));
    menu->addActions({home->termsAction(), home->privacyAction(), home->agreementAction()});
    window.setWindowTitle(QStringLiteral("Tovra demo"));
    window.resize(420, 800);
    window.show();
    return QApplication::exec();
#endif
}
