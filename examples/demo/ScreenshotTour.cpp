// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT

#include "ScreenshotTour.h"

#include "Waiting.h"

#include "DemoService.h"
#include "HomeScreen.h"
#include "LoopbackSession.h"
#include "SampleDocuments.h"

#include <Tovra.h>

#include <QApplication>
#include <QDir>
#include <QKeyEvent>
#include <QLabel>
#include <QScreen>

namespace {

// Lets layouts and queued updates settle, then grabs \a widget.
bool save(QWidget *widget, const QString &path)
{
    for (int pass = 0; pass < 5; ++pass)
        QCoreApplication::processEvents();
    return widget->grab().save(path);
}

QPalette darkPalette()
{
    QPalette dark;
    dark.setColor(QPalette::Window, QColor(0x30, 0x30, 0x30));
    dark.setColor(QPalette::WindowText, Qt::white);
    dark.setColor(QPalette::Base, QColor(0x20, 0x20, 0x20));
    dark.setColor(QPalette::Text, Qt::white);
    dark.setColor(QPalette::Button, QColor(0x35, 0x35, 0x35));
    dark.setColor(QPalette::ButtonText, Qt::white);
    return dark;
}

class Counter : public QObject, public TVRDocumentManagerDelegate
{
public:
    int finished = 0;
    QString failure;
    void managerDidFinishWithSuccess(TVRDocumentManager *, bool) override { ++finished; }
    void managerFailedWithError(TVRDocumentManager *, const TVRError &error) override { failure = error.message(); }
};

} // namespace

QStringList takeScreenshots(const QString &directory, DemoService &service, LoopbackSession &session,
                            const QJsonObject &currentTerms, QString *error)
{
    if (!QDir().mkpath(directory)) {
        *error = directory + QStringLiteral(": cannot make the folder");
        return {};
    }
    QStringList written;
    auto shoot = [&](QWidget *widget, const QString &name) {
        const QString path = QDir(directory).filePath(name + QStringLiteral(".png"));
        if (save(widget, path))
            written << path;
        else
            *error = path + QStringLiteral(": cannot write the image");
    };
    TVRDocumentManager *documents = TVRDocumentManager::sharedInstance();

    // A first launch fetches both documents, which keeps a copy of each.
    Counter counter;
    documents->setDelegate(&counter);
    documents->fetchTermsOfService();
    documents->fetchPrivacyPolicy();
    if (!waitFor([&] { return counter.finished == 2; })) {
        *error = QStringLiteral("the sample service did not answer");
        return {};
    }

    auto *home = new HomeScreen(currentTerms);
    auto *navigation = new TVRNavigationController(home);
    navigation->setGeometry(QGuiApplication::primaryScreen()->geometry());
    navigation->show();
    QApplication::setActiveWindow(navigation);

    // The next launch, offline: the Terms of Service come from the copy at once.
    documents->setTermsOfService(nullptr);
    LoopbackSession offline;
    offline.routeToClosedPort(TVRNetworkManager::baseURLComponents().host());
    documents->setSession(&offline);
    home->showTermsOfService();
    auto *terms = qobject_cast<TVRTermsOfServiceViewController *>(navigation->topViewController());
    waitFor([&] { return terms->tableView()->numberOfSections() > 0; });
    shoot(navigation, QStringLiteral("terms-of-service-from-cache"));

    // Back online, the reply arrives and the screen refreshes.
    documents->setSession(&session);
    const int served = service.requestsServed();
    documents->fetchTermsOfService();
    waitFor([&] { return service.requestsServed() > served; });

    // A dark system palette, and the end of the document reached with the End key: the
    // screen keeps its white page and dark text.
    const QPalette systemPalette = QApplication::palette();
    QApplication::setPalette(darkPalette());
    QKeyEvent end(QEvent::KeyPress, Qt::Key_End, Qt::NoModifier);
    QCoreApplication::sendEvent(terms->tableView(), &end);
    shoot(navigation, QStringLiteral("terms-of-service-dark-system-palette"));
    QApplication::setPalette(systemPalette);
    navigation->popViewControllerAnimated();

    const int servedBefore = service.requestsServed();
    home->showPrivacyPolicy();
    auto *privacy = qobject_cast<TVRNavigationController *>(home->presentedViewController());
    waitFor([&] { return service.requestsServed() > servedBefore; });
    shoot(privacy, QStringLiteral("privacy-policy-presented"));
    privacy->dismissViewControllerAnimated();

    home->runAgreementCheck();
    if (auto *agreement = home->presentedViewController()) {
        shoot(agreement, QStringLiteral("agreement"));
        agreement->dismissViewControllerAnimated();
    } else {
        *error = QStringLiteral("the agreement screen was not presented");
    }

    // The kit in German: the Privacy Policy kept from a German service, shown offline.
    TVRManager::installTranslations(QLocale(QLocale::German, QLocale::Germany));
    documents->setSession(&offline);
    documents->setPrivacyPolicy(std::make_shared<TVRDocument>(SampleDocuments::privacyPolicyGerman()));
    home->showPrivacyPolicy();
    if (auto *german = home->presentedViewController()) {
        waitFor([] { return false; }, 200);
        shoot(german, QStringLiteral("privacy-policy-german"));
        german->dismissViewControllerAnimated();
    }

    // In Arabic, laid out right to left: the agreement check for Arabic terms.
    TVRManager::installTranslations(QLocale(QLocale::Arabic, QLocale::Egypt));
    QGuiApplication::setLayoutDirection(Qt::RightToLeft);
    TVRManager::sharedInstance()->userManagerDidRespondWithCompliance(
        TVRUserManager::sharedInstance(), false,
        std::make_shared<TVRDocument>(SampleDocuments::termsOfServiceArabic()));
    if (auto *arabic = home->presentedViewController()) {
        shoot(arabic, QStringLiteral("agreement-arabic"));
        arabic->dismissViewControllerAnimated();
    } else {
        *error = QStringLiteral("the Arabic agreement screen was not presented");
    }
    QGuiApplication::setLayoutDirection(Qt::LeftToRight);
    TVRManager::installTranslations(QLocale(QLocale::English));
    documents->setSession(&session);

    delete navigation;
    return error->isEmpty() ? written : QStringList();
}

QStringList takeServiceScreenshots(const QString &directory, QString *error)
{
    if (!QDir().mkpath(directory)) {
        *error = directory + QStringLiteral(": cannot make the folder");
        return {};
    }
    TVRDocumentManager *documents = TVRDocumentManager::sharedInstance();
    Counter counter;
    documents->setDelegate(&counter);
    documents->fetchTermsOfService();
    documents->fetchPrivacyPolicy();
    if (!waitFor([&] { return counter.finished == 2 || !counter.failure.isEmpty(); }, 70000)) {
        *error = TVRManager::serviceURL().toDisplayString() + QStringLiteral(" did not answer");
        return {};
    }
    if (!counter.failure.isEmpty()) {
        *error = TVRManager::serviceURL().toDisplayString() + QStringLiteral(": ") + counter.failure;
        return {};
    }

    // The screens make themselves the delegate; the manager's signals reach everyone.
    int answers = 0;
    QObject::connect(documents, &TVRDocumentManager::documentChanged, documents, [&answers] { ++answers; });
    QObject::connect(documents, &TVRDocumentManager::fetchFailed, documents, [&answers] { ++answers; });
    QStringList written;
    const std::pair<TVRViewController *, QString> screens[] = {
        {TVRManager::termsOfServiceViewController(), QStringLiteral("terms-of-service")},
        {TVRManager::privacyPolicyViewController(), QStringLiteral("privacy-policy")},
    };
    for (const auto &[screen, name] : screens) {
        TVRNavigationController navigation(screen);
        navigation.setGeometry(QGuiApplication::primaryScreen()->geometry());
        navigation.show();
        // The screen fetches again when it is shown; it is drawn once that answer is in.
        const int before = answers;
        waitFor([&] { return answers > before; }, 70000);
        const QString path = QDir(directory).filePath(name + QStringLiteral(".png"));
        if (!save(&navigation, path)) {
            *error = path + QStringLiteral(": cannot write the image");
            return {};
        }
        written << path;
    }
    return written;
}
