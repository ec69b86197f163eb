// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT
// The screens in the languages the kit speaks, and laid out right to left: the texts as the
// screens show them, the date in the chosen language, and which side each part is drawn on.

#include "OffscreenTest.h"
#include "ScreenHelpers.h"
#include "Screenshot.h"
#include "TestFixture.h"
#include "TestHttpsServer.h"
#include "TestSession.h"

#include <Tovra.h>

#include <QApplication>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLabel>
#include <QToolBar>
#include <QToolButton>
#include <QtTest>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace {

QJsonObject documentJson()
{
    const QJsonArray sections{
        QJsonObject{{u"title"_s, u"البيانات التي نجمعها"_s},
                    {u"body"_s, u"نجمع البيانات التي تقدمها عند إنشاء حسابك في ##### ونستخدمها لتقديم الخدمة."_s}},
        QJsonObject{{u"title"_s, u"Your rights"_s},
                    {u"body"_s, u"You may ask ##### for a copy of your data at any time, and have it deleted."_s}},
        QJsonObject{{u"title"_s, u"Datenschutz bei #####"_s},
                    {u"body"_s, u"Wir speichern Ihre Daten nur so lange, wie es für den Dienst nötig ist."_s}},
    };
    return QJsonObject{
        {u"title"_s, u"Policy"_s}, {u"updatedAt"_s, u"2017-07-04T09:00:00.000+0000"_s}, {u"sections"_s, sections}};
}

QStringList buttonTexts(QWidget *root)
{
    QStringList texts;
    for (QToolButton *button : root->findChildren<QToolButton *>()) {
        if (button->isVisibleTo(root))
            texts << button->text();
    }
    texts.sort();
    return texts;
}

// The first and last columns of \a widget that hold any ink: anything not white.
QPair<int, int> inkColumns(QWidget *widget)
{
    const QImage image = widget->grab().toImage();
    int first = image.width();
    int last = -1;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (image.pixelColor(x, y).lightness() < 200) {
                first = qMin(first, x);
                last = qMax(last, x);
            }
        }
    }
    return {first, last};
}

} // namespace

class tst_Languages : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanup();

    void catalogues_data();
    void catalogues();
    void rightToLeft();

private:
    TestHttpsServer m_server;
    TestSession m_session;
    HostScreen *m_host = nullptr;
};

void tst_Languages::initTestCase()
{
    QVERIFY(startLoopbackService(u"tst_languages"_s, m_server, m_session));
    QLocale::setDefault(QLocale(QLocale::English, QLocale::UnitedStates));
    TVRManager::setAppName(u"Acme"_s);
    TVRDocumentManager::sharedInstance()->setSession(&m_session);
    m_server.setHandler([](const TestRequest &) {
        return TestReply::json(200, QJsonDocument(documentJson()).toJson(QJsonDocument::Compact));
    });
}

void tst_Languages::cleanup()
{
    delete m_host;
    m_host = nullptr;
    QGuiApplication::setLayoutDirection(Qt::LeftToRight);
    TVRManager::installTranslations(QLocale(QLocale::English));
    QTRY_COMPARE(m_session.liveReplies(), 0);
}

void tst_Languages::catalogues_data()
{
    QTest::addColumn<QString>("locale");
    QTest::addColumn<bool>("found");
    // Terms of Service, Privacy Policy, Close, Disagree, Agree, Back
    QTest::addColumn<QStringList>("texts");

    const QStringList english{u"Terms of Service"_s, u"Privacy Policy"_s, u"Close"_s,
                              u"Disagree"_s,         u"Agree"_s,          u"Back"_s};
    QTest::newRow("de_DE") << u"de_DE"_s << true << QStringList{u"Nutzungsbedingungen"_s, u"Datenschutzerklärung"_s,
                                                                u"Schließen"_s,           u"Ablehnen"_s,
                                                                u"Zustimmen"_s,           u"Zurück"_s};
    QTest::newRow("fr_FR") << u"fr_FR"_s << true
                           << QStringList{u"Conditions d'utilisation"_s,
                                          u"Politique de confidentialité"_s,
                                          u"Fermer"_s,
                                          u"Refuser"_s,
                                          u"Accepter"_s,
                                          u"Retour"_s};
    QTest::newRow("es_ES") << u"es_ES"_s << true << QStringList{u"Términos del servicio"_s,
                                                                u"Política de privacidad"_s,
                                                                u"Cerrar"_s,
                                                                u"Rechazar"_s,
                                                                u"Aceptar"_s,
                                                                u"Atrás"_s};
    QTest::newRow("it_IT") << u"it_IT"_s << true << QStringList{u"Termini di servizio"_s,
                                                                u"Informativa sulla privacy"_s,
                                                                u"Chiudi"_s,
                                                                u"Non accetto"_s,
                                                                u"Accetto"_s,
                                                                u"Indietro"_s};
    QTest::newRow("pt_BR") << u"pt_BR"_s << true << QStringList{u"Termos de Serviço"_s,
                                                                u"Política de Privacidade"_s,
                                                                u"Fechar"_s,
                                                                u"Discordo"_s,
                                                                u"Concordo"_s,
                                                                u"Voltar"_s};
    QTest::newRow("ja_JP") << u"ja_JP"_s << true << QStringList{u"利用規約"_s, u"プライバシーポリシー"_s,
                                                                u"閉じる"_s,   u"同意しない"_s,
                                                                u"同意する"_s, u"戻る"_s};
    QTest::newRow("zh_CN") << u"zh_CN"_s << true
                           << QStringList{u"服务条款"_s, u"隐私政策"_s, u"关闭"_s, u"不同意"_s, u"同意"_s, u"返回"_s};
    QTest::newRow("ar_EG") << u"ar_EG"_s << true << QStringList{u"شروط الخدمة"_s, u"سياسة الخصوصية"_s, u"إغلاق"_s,
                                                                u"لا أوافق"_s,    u"أوافق"_s,          u"رجوع"_s};
    QTest::newRow("he_IL") << u"he_IL"_s << true << QStringList{u"תנאי השימוש"_s,    u"מדיניות הפרטיות"_s, u"סגירה"_s,
                                                                u"אני לא מסכים/ה"_s, u"אני מסכים/ה"_s,     u"חזרה"_s};
    QTest::newRow("en_GB, the kit's own") << u"en_GB"_s << true << english;
    QTest::newRow("pt_PT, no catalogue") << u"pt_PT"_s << false << english;
    QTest::newRow("ru_RU, no catalogue") << u"ru_RU"_s << false << english;
}

void tst_Languages::catalogues()
{
    QFETCH(QString, locale);
    QFETCH(bool, found);
    QFETCH(QStringList, texts);

    // A language before it, so that a catalogue left installed would show.
    QVERIFY(TVRManager::installTranslations(QLocale(u"ja_JP"_s)));
    QCOMPARE(TVRManager::installTranslations(QLocale(locale)), found);

    m_host = new HostScreen;
    m_host->resize(390, 844);
    m_host->show();
    auto *terms = TVRManager::termsOfServiceViewController();
    auto *pushed = new TVRNavigationController(new HostScreen);
    m_host->view()->layout()->addWidget(pushed);
    pushed->pushViewController(terms);
    QTRY_VERIFY(!terms->tableView()->visibleCells().isEmpty());
    auto *privacy = TVRManager::privacyPolicyViewController();
    auto *presented = new TVRNavigationController(privacy);
    m_host->presentViewController(presented);
    QTRY_VERIFY(!privacy->tableView()->visibleCells().isEmpty());
    auto *agreement = new TVRTermsViewController(std::make_shared<TVRDocument>(documentJson()));
    auto *agreementWindow = new TVRNavigationController(agreement);
    agreementWindow->setParent(m_host, Qt::Window);
    agreementWindow->resize(390, 844);
    agreementWindow->show();
    QVERIFY(QTest::qWaitForWindowExposed(agreementWindow));

    // What the bars show, as drawn: the titles and every button.
    QCOMPARE(static_cast<QLabel *>(pushed->navigationBar()->findChild<QLabel *>())->text(), texts[0]);
    QCOMPARE(static_cast<QLabel *>(presented->navigationBar()->findChild<QLabel *>())->text(), texts[1]);
    QCOMPARE(static_cast<QLabel *>(agreementWindow->navigationBar()->findChild<QLabel *>())->text(), texts[0]);
    QCOMPARE(buttonTexts(pushed->navigationBar()), QStringList{texts[5]});
    QCOMPARE(buttonTexts(presented->navigationBar()), QStringList{texts[2]});
    QStringList answers{texts[3], texts[4]};
    answers.sort();
    QCOMPARE(buttonTexts(agreement->toolbar()), answers);

    // The date in the same language as the texts: July as that language writes it (the
    // language the catalogue is for; the default locale without one).
    const QLocale dateLocale = found ? QLocale(locale) : QLocale();
    const QString date = privacy->headerView()->dateLabel()->text();
    QVERIFY2(date.contains(dateLocale.monthName(7)) || date.contains(dateLocale.monthName(7, QLocale::ShortFormat)),
             qPrintable(date + u" has no "_s + dateLocale.monthName(7)));
    if (dateLocale.language() != QLocale::English)
        QVERIFY2(!date.contains(u"July"_s), qPrintable(date));

    if (locale == u"de_DE"_s)
        QVERIFY(saveScreenshot(presented, u"privacy-policy-german"_s));
}

void tst_Languages::rightToLeft()
{
    QVERIFY(TVRManager::installTranslations(QLocale(u"ar_EG"_s)));
    QGuiApplication::setLayoutDirection(Qt::RightToLeft);

    m_host = new HostScreen;
    m_host->resize(390, 844);
    m_host->show();
    auto *agreement = new TVRTermsViewController(std::make_shared<TVRDocument>(documentJson()));
    auto *navigation = new TVRNavigationController(agreement);
    m_host->presentViewController(navigation);
    auto *privacy = TVRManager::privacyPolicyViewController();
    auto *presentedPrivacy = new TVRNavigationController(privacy);
    agreement->presentViewController(presentedPrivacy);
    QTRY_VERIFY(agreement->tableView()->visibleCells().size() >= 6);
    QTRY_VERIFY(!privacy->tableView()->visibleCells().isEmpty());
    QVERIFY(QTest::qWaitForWindowExposed(navigation));

    // The bars mirror: "Close" leads on the right, "Disagree" leads the tool bar on the right.
    QToolButton *close = nullptr;
    for (QToolButton *button : presentedPrivacy->navigationBar()->findChildren<QToolButton *>()) {
        if (button->isVisibleTo(presentedPrivacy))
            close = button;
    }
    QVERIFY(close);
    QCOMPARE(close->text(), u"إغلاق"_s);
    QVERIFY2(close->geometry().left() > presentedPrivacy->width() / 2, "Close is not on the leading, right side");
    QWidget *disagree = agreement->toolbar()->widgetForAction(agreement->disagreeBarButtonItem());
    QWidget *agree = agreement->toolbar()->widgetForAction(agreement->agreeBarButtonItem());
    QVERIFY2(disagree->geometry().left() > agree->geometry().right(), "the tool bar is not mirrored");

    // Each text aligns by its own direction: Arabic from the right edge, English and German
    // from the left, whatever the layout's direction.
    const int width = agreement->tableView()->viewport()->width();
    for (TVRTableViewCell *cell : agreement->tableView()->visibleCells()) {
        const QString text = cell->accessibleName();
        if (text.isEmpty())
            continue;
        const auto [first, last] = inkColumns(cell);
        QVERIFY2(last > first, qPrintable(text));
        if (text.isRightToLeft())
            QVERIFY2(width - 1 - last < 24 && first > 0,
                     qPrintable(u"%1: ink %2..%3"_s.arg(text).arg(first).arg(last)));
        else
            QVERIFY2(first < 24, qPrintable(u"%1: ink %2..%3"_s.arg(text).arg(first).arg(last)));
    }
    QVERIFY(saveScreenshot(navigation, u"agreement-arabic"_s));
}

TOVRA_OFFSCREEN_TEST_MAIN(tst_Languages, QSize(390, 844))
#include "tst_languages.moc"
