// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT

#include "QuickDemo.h"

#include "Waiting.h"

#include <TovraCore.h>

#include <QDir>
#include <QGuiApplication>
#include <QImage>
#include <QQmlApplicationEngine>
#include <QQuickItem>
#include <QQuickWindow>

namespace {

void answerNotAgreed(const QJsonObject &currentTerms);

// Answers the QML home screen's agreement check for the sample service.
class AgreementCheck : public QObject
{
    Q_OBJECT

public:
    AgreementCheck(const QJsonObject &currentTerms, QObject *parent)
        : QObject(parent)
        , m_terms(currentTerms)
    {
    }

public Q_SLOTS:
    void run() { answerNotAgreed(m_terms); }

private:
    QJsonObject m_terms;
};

QQuickWindow *load(QQmlApplicationEngine &engine, const QJsonObject &currentTerms)
{
    engine.addImportPath(QStringLiteral(TOVRA_QML_IMPORT_PATH));
    engine.load(QUrl(QStringLiteral("qrc:/demo/qml/Main.qml")));
    auto *window =
        engine.rootObjects().isEmpty() ? nullptr : qobject_cast<QQuickWindow *>(engine.rootObjects().first());
    if (window)
        QObject::connect(window, SIGNAL(agreementCheckRequested()), new AgreementCheck(currentTerms, window),
                         SLOT(run()));
    return window;
}

void answerNotAgreed(const QJsonObject &currentTerms)
{
    // The status request is not part of the kit yet, so the demo answers for the service:
    // the user has not agreed to the current terms.
    TVRManager::activateApp();
    TVRManager::sharedInstance()->userManagerDidRespondWithCompliance(TVRUserManager::sharedInstance(), false,
                                                                      std::make_shared<TVRDocument>(currentTerms));
}

bool call(QObject *window, const char *function)
{
    QVariant result;
    return QMetaObject::invokeMethod(window, function, Q_RETURN_ARG(QVariant, result));
}

bool pageReady(QObject *window)
{
    QVariant ready;
    QMetaObject::invokeMethod(window, "currentPageReady", Q_RETURN_ARG(QVariant, ready));
    return ready.toBool();
}

} // namespace

int runQuickDemo(const QJsonObject &currentTerms)
{
    QQmlApplicationEngine engine;
    if (!load(engine, currentTerms))
        return 1;
    return QGuiApplication::exec();
}

QStringList takeQuickScreenshots(const QString &directory, const QJsonObject &currentTerms, QString *error)
{
    if (!QDir().mkpath(directory)) {
        *error = directory + QStringLiteral(": cannot make the folder");
        return {};
    }
    QQmlApplicationEngine engine;
    QQuickWindow *window = load(engine, currentTerms);
    if (!window) {
        *error = QStringLiteral("the QML demo did not load");
        return {};
    }
    QStringList written;
    const auto shoot = [&](const QString &name) {
        for (int pass = 0; pass < 5; ++pass)
            QCoreApplication::processEvents();
        const QString path = QDir(directory).filePath(name + QStringLiteral(".png"));
        if (window->grabWindow().save(path))
            written << path;
        else
            *error = path + QStringLiteral(": cannot write the image");
    };
    waitFor([window] { return window->isExposed(); });

    call(window, "showTermsOfService");
    if (!waitFor([window] { return pageReady(window); }))
        *error = QStringLiteral("the Terms of Service page showed no document");
    shoot(QStringLiteral("quick-terms-of-service"));
    call(window, "back");

    call(window, "showPrivacyPolicy");
    if (!waitFor([window] { return pageReady(window); }))
        *error = QStringLiteral("the Privacy Policy page showed no document");
    shoot(QStringLiteral("quick-privacy-policy-presented"));
    call(window, "back");

    answerNotAgreed(currentTerms);
    QQuickItem *agreement = nullptr;
    waitFor([&] {
        agreement = window->contentItem()->findChild<QQuickItem *>(QStringLiteral("TovraAgreementPage"));
        return agreement != nullptr;
    });
    if (agreement)
        shoot(QStringLiteral("quick-agreement"));
    else
        *error = QStringLiteral("the agreement page was not shown");
    return error->isEmpty() ? written : QStringList();
}

#include "QuickDemo.moc"

QStringList takeQuickServiceScreenshots(const QString &directory, QString *error)
{
    if (!QDir().mkpath(directory)) {
        *error = directory + QStringLiteral(": cannot make the folder");
        return {};
    }
    QQmlApplicationEngine engine;
    QQuickWindow *window = load(engine, QJsonObject());
    if (!window) {
        *error = QStringLiteral("the QML demo did not load");
        return {};
    }
    waitFor([window] { return window->isExposed(); });
    QStringList written;
    for (const char *page : {"TermsOfService", "PrivacyPolicy"}) {
        call(window, (QByteArray("show") + page).constData());
        if (!waitFor([window] { return pageReady(window); }, 70000)) {
            *error = QString::fromLatin1(page) + QStringLiteral(": no document from ")
                + TVRManager::serviceURL().toDisplayString();
            return {};
        }
        for (int pass = 0; pass < 5; ++pass)
            QCoreApplication::processEvents();
        const QString path = QDir(directory).filePath(QStringLiteral("quick-") + QString::fromLatin1(page).toLower()
                                                      + QStringLiteral(".png"));
        if (!window->grabWindow().save(path)) {
            *error = path + QStringLiteral(": cannot write the image");
            return {};
        }
        written << path;
        call(window, "back");
    }
    return written;
}
