// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT
// The screens in the languages the kit speaks, and laid out right to left: the texts as the
// screens show them, the date in the chosen language, and which side each button is drawn
// on. (Which side a section's text starts from in a right-to-left layout, tst_rendering checks.)

#include "OffscreenTest.h"
#include "ScreenHelpers.h"
#include "Screenshot.h"
#include "TestFixture.h"
#include "TestHttpsServer.h"
#include "TestSession.h"

#include <Tovra.h>

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLabel>
#include <QToolBar>
#include <QToolButton>
#include <QtTest>

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

// The buttons shown under \a root, from the leading edge on: from the right when \a rightToLeft.
QList<QToolButton *> buttons(QWidget *root, bool rightToLeft)
{
    QList<QToolButton *> shown;
    for (QToolButton *button : root->findChildren<QToolButton *>()) {
        if (button->isVisibleTo(root))
            shown << button;
    }
    std::sort(shown.begin(), shown.end(), [root, rightToLeft](QToolButton *a, QToolButton *b) {
        return (a->mapTo(root, QPoint()).x() < b->mapTo(root, QPoint()).x()) != rightToLeft;
    });
    return shown;
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
    // Terms of Service|Privacy Policy|Close|Disagree|Agree|Back
    QTest::addColumn<QString>("texts");

    const QString english = u"Terms of Service|Privacy Policy|Close|Disagree|Agree|Back"_s;
    QTest::newRow("de_DE") << u"de_DE"_s << true
                           << u"Nutzungsbedingungen|Datenschutzerklärung|Schließen|Ablehnen|Zustimmen|Zurück"_s;
    QTest::newRow("fr_FR") << u"fr_FR"_s << true
                           << u"Conditions d'utilisation|Politique de confidentialité|Fermer|Refuser|Accepter|Retour"_s;
    QTest::newRow("es_ES") << u"es_ES"_s << true
                           << u"Términos del servicio|Política de privacidad|Cerrar|Rechazar|Aceptar|Atrás"_s;
    QTest::newRow("it_IT") << u"it_IT"_s << true
                           << u"Termini di servizio|Informativa sulla privacy|Chiudi|Non accetto|Accetto|Indietro"_s;
    QTest::newRow("pt_BR") << u"pt_BR"_s << true
                           << u"Termos de Serviço|Política de Privacidade|Fechar|Discordo|Concordo|Voltar"_s;
    QTest::newRow("ja_JP") << u"ja_JP"_s << true << u"利用規約|プライバシーポリシー|閉じる|同意しない|同意する|戻る"_s;
    QTest::newRow("zh_CN") << u"zh_CN"_s << true << u"服务条款|隐私政策|关闭|不同意|同意|返回"_s;
    QTest::newRow("ar_EG") << u"ar_EG"_s << true << u"شروط الخدمة|سياسة الخصوصية|إغلاق|لا أوافق|أوافق|رجوع"_s;
    QTest::newRow("he_IL") << u"he_IL"_s << true
                           << u"תנאי השימוש|מדיניות הפרטיות|סגירה|אני לא מסכים/ה|אני מסכים/ה|חזרה"_s;
    QTest::newRow("en_GB, the kit's own") << u"en_GB"_s << true << english;
    QTest::newRow("pt_PT, no catalogue") << u"pt_PT"_s << false << english;
    QTest::newRow("ru_RU, no catalogue") << u"ru_RU"_s << false << english;
}

void tst_Languages::catalogues()
{
    QFETCH(QString, locale);
    QFETCH(bool, found);
    QFETCH(QString, texts);
    const QStringList text = texts.split(u'|');

    // A language before it, so that a catalogue left installed would show. The layout goes
    // the language's way, as a host sets it.
    QVERIFY(TVRManager::installTranslations(QLocale(u"ja_JP"_s)));
    QCOMPARE(TVRManager::installTranslations(QLocale(locale)), found);
    const bool rightToLeft = QLocale(locale).textDirection() == Qt::RightToLeft;
    QGuiApplication::setLayoutDirection(QLocale(locale).textDirection());

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
    QTRY_VERIFY(agreement->tableView()->visibleCells().size() >= 6);

    // What the bars show, as drawn: the title, then every button from the leading edge on,
    // each marked when it sits on the trailing half.
    const auto shown = [rightToLeft](QWidget *bar) {
        QStringList texts{bar->findChild<QLabel *>() ? bar->findChild<QLabel *>()->text() : QString()};
        for (QToolButton *button : buttons(bar, rightToLeft)) {
            const bool right = button->mapTo(bar, button->rect().center()).x() > bar->width() / 2;
            texts << button->text() + (right != rightToLeft ? u" (trailing)"_s : QString());
        }
        return texts;
    };
    QCOMPARE(shown(pushed->navigationBar()), (QStringList{text[0], text[5]}));
    QCOMPARE(shown(presented->navigationBar()), (QStringList{text[1], text[2]}));
    QCOMPARE(shown(agreementWindow->navigationBar()), QStringList{text[0]});
    QCOMPARE(shown(agreement->toolbar()), (QStringList{QString(), text[3], text[4] + u" (trailing)"_s}));

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
    if (locale == u"ar_EG"_s)
        QVERIFY(saveScreenshot(agreementWindow, u"agreement-arabic"_s));
}

TOVRA_OFFSCREEN_TEST_MAIN(tst_Languages, QSize(390, 844))
#include "tst_languages.moc"
