// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT
// One of four host programs that show the Terms of Service at launch, built from this file
// with LAUNCH_HOST set to one of the kinds below and linked as such a host links:
//   1 the kit's widget screen (Tovra::Tovra), its document in the kit's kept copy;
//   2 a QTextBrowser (Qt Widgets alone), the same document read from a JSON file as HTML;
//   3 the kit's QML page (Tovra::Quick), its document in the kit's kept copy;
//   4 a ScrollView holding a read-only rich-text TextArea (Qt Quick alone), as 2.
// bench_launch runs them. Each writes "main NS" as main() starts and "frame NS" once the
// first frame with the document in it is painted, both in nanoseconds since the monotonic
// time in TOVRA_LAUNCH_T0, and ends there without tearing anything down.
//   launch_host JSON_FILE

#include "BenchDocuments.h"

#include <QFile>
#include <QTimer>
#if LAUNCH_HOST <= 2
#include <QApplication>
#else
#include <QGuiApplication>
#include <QQmlApplicationEngine>
#include <QQmlContext>
#include <QQuickWindow>
#endif
#if LAUNCH_HOST == 1
#include <Tovra.h>
#elif LAUNCH_HOST == 2
#include <QTextBrowser>
#elif LAUNCH_HOST == 3
#include <TovraCore.h>
#endif

#include <cstdio>
#include <ctime>
#include <functional>
#include <unistd.h>

namespace {

void report(const char *what)
{
    timespec time{};
    clock_gettime(CLOCK_MONOTONIC, &time);
    const qint64 since = qint64(time.tv_sec) * 1000000000 + time.tv_nsec - qgetenv("TOVRA_LAUNCH_T0").toLongLong();
    std::printf("%s %lld\n", what, static_cast<long long>(since));
    std::fflush(stdout);
}

[[noreturn]] void frameShown()
{
    report("frame");
    _exit(0);
}

#if LAUNCH_HOST == 2 || LAUNCH_HOST == 4
QString documentFromFile(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? documentAsHtml(file.readAll(), QStringLiteral("Acme")) : QString();
}
#endif

#if LAUNCH_HOST <= 2
// Ends the process once \a viewport has been painted while \a ready holds.
class FirstPaint : public QObject
{
public:
    FirstPaint(QWidget *viewport, std::function<bool()> ready)
        : m_ready(std::move(ready))
    {
        viewport->installEventFilter(this);
    }

    bool eventFilter(QObject *, QEvent *event) override
    {
        // The paint runs after the filter: the report waits for the loop's next turn.
        if (event->type() == QEvent::Paint && m_ready())
            QTimer::singleShot(0, [] { frameShown(); });
        return false;
    }

private:
    std::function<bool()> m_ready;
};
#endif

} // namespace

int main(int argc, char *argv[])
{
    report("main");
#if LAUNCH_HOST >= 3
    QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
#endif
#if LAUNCH_HOST <= 2
    QApplication app(argc, argv);
#else
    QGuiApplication app(argc, argv);
#endif
    QCoreApplication::setOrganizationName(QStringLiteral("Tovra Bench"));
    QCoreApplication::setApplicationName(QStringLiteral("launch"));
    const QString jsonPath = argc > 1 ? QString::fromLocal8Bit(argv[1]) : QString();
    Q_UNUSED(jsonPath)

#if LAUNCH_HOST == 1 || LAUNCH_HOST == 3
    // Nothing listens there: the page's own fetch fails and leaves the kept copy shown.
    TVRManager::setServiceURL(QUrl(QStringLiteral("http://127.0.0.1:9")));
    TVRManager::setAPIKey(QStringLiteral("key"), QStringLiteral("secret"));
    TVRManager::setAppName(QStringLiteral("Acme"));
#endif
#if LAUNCH_HOST == 1
    TVRTermsOfServiceViewController *screen = TVRManager::termsOfServiceViewController();
    TVRNavigationController navigation(screen);
    navigation.resize(390, 844);
    navigation.show();
    TVRTableView *table = screen->tableView();
    FirstPaint watch(table->viewport(), [table] { return !table->visibleCells().isEmpty(); });
#elif LAUNCH_HOST == 2
    QTextBrowser browser;
    browser.setHtml(documentFromFile(jsonPath));
    browser.resize(390, 844);
    browser.show();
    FirstPaint watch(browser.viewport(), [] { return true; });
#else
    QQmlApplicationEngine engine;
#if LAUNCH_HOST == 3
    engine.addImportPath(QStringLiteral(TOVRA_QML_IMPORT_PATH));
    engine.loadData("import QtQuick\nimport Tovra\n"
                    "Window { property alias page: page; width: 390; height: 844; visible: true\n"
                    "    TermsOfServicePage { id: page; anchors.fill: parent } }\n");
#else
    engine.rootContext()->setContextProperty(QStringLiteral("documentHtml"), documentFromFile(jsonPath));
    engine.loadData("import QtQuick\nimport QtQuick.Controls\n"
                    "Window { width: 390; height: 844; visible: true\n"
                    "    ScrollView { anchors.fill: parent\n"
                    "        TextArea { readOnly: true; wrapMode: TextEdit.Wrap;"
                    " textFormat: TextEdit.RichText; text: documentHtml } } }\n");
#endif
    auto *window = qobject_cast<QQuickWindow *>(engine.rootObjects().value(0));
    if (!window)
        return 1;
    QObject::connect(window, &QQuickWindow::frameSwapped, window, [window] {
#if LAUNCH_HOST == 3
        const auto *page = window->property("page").value<QObject *>();
        const auto *view = page ? page->property("view").value<QObject *>() : nullptr;
        if (!view || view->property("count").toInt() == 0)
            return;
#else
        Q_UNUSED(window)
#endif
        frameShown();
    });
#endif
    return app.exec();
}
