// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT
// The screens in the languages the kit speaks, and laid out right to left: the texts as the
// screens show them, the date in the chosen language, and which side each button is drawn
// on. (Which side a section's text starts from in a right-to-left layout, tst_rendering checks.)

#include "DocumentJson.h"
#include "OffscreenTest.h"
#include "ScreenHelpers.h"
#include "Screenshot.h"
#include "TestFixture.h"
#include "TestHttpsServer.h"
#include "TestSession.h"

#include <Tovra.h>

#include <QLabel>
#include <QToolBar>
#include <QToolButton>
#include <QtTest>

using namespace Qt::StringLiterals;

namespace {

// The policy the service sends, updated in July.
const QJsonObject policy = documentJson(u"Policy"_s, 3, u"2017-07-04T09:00:00.000+0000"_s);

// The texts of the kit's own catalogue: Terms of Service|Privacy Policy|Close|Disagree|Agree|Back.
const QString english = u"Terms of Service|Privacy Policy|Close|Disagree|Agree|Back"_s;

// What \a bar shows, as drawn: its title, then every button from the application's leading
// edge on (from the right in a right-to-left layout), each marked when it sits on the
// trailing half.
QStringList shown(QWidget *bar)
{
    QMap<int, QString> buttons; // by the distance of their centres from the leading edge
    for (QToolButton *button : bar->findChildren<QToolButton *>()) {
        const int x = button->mapTo(bar, button->rect().center()).x();
        const int lead = QGuiApplication::isRightToLeft() ? bar->width() - x : x;
        if (button->isVisibleTo(bar))
            buttons.insert(lead, button->text() + (lead > bar->width() / 2 ? u" (trailing)"_s : QString()));
    }
    return QStringList{bar->findChild<QLabel *>() ? bar->findChild<QLabel *>()->text() : QString()} + buttons.values();
}

} // namespace

class tst_Languages : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        QVERIFY(startLoopbackService(u"tst_languages"_s, m_server, m_session));
        QLocale::setDefault(QLocale(QLocale::English, QLocale::UnitedStates));
        TVRDocumentManager::sharedInstance()->setSession(&m_session);
        m_server.reply(TestReply::json(200, QJsonDocument(policy).toJson(QJsonDocument::Compact)));
    }

    void cleanup()
    {
        m_host.reset();
        QTRY_COMPARE(m_session.liveReplies(), 0);
    }

    void catalogues_data()
    {
        // A row's tag is its locale.
        QTest::addColumn<QString>("texts"); // as english has them; none without a catalogue
        QTest::newRow("de_DE") << u"Nutzungsbedingungen|Datenschutzerklärung|Schließen|Ablehnen|Zustimmen|Zurück"_s;
        QTest::newRow("fr_FR")
            << u"Conditions d'utilisation|Politique de confidentialité|Fermer|Refuser|Accepter|Retour"_s;
        QTest::newRow("es_ES") << u"Términos del servicio|Política de privacidad|Cerrar|Rechazar|Aceptar|Atrás"_s;
        QTest::newRow("it_IT")
            << u"Termini di servizio|Informativa sulla privacy|Chiudi|Non accetto|Accetto|Indietro"_s;
        QTest::newRow("pt_BR") << u"Termos de Serviço|Política de Privacidade|Fechar|Discordo|Concordo|Voltar"_s;
        QTest::newRow("ja_JP") << u"利用規約|プライバシーポリシー|閉じる|同意しない|同意する|戻る"_s;
        QTest::newRow("zh_CN") << u"服务条款|隐私政策|关闭|不同意|同意|返回"_s;
        QTest::newRow("ar_EG") << u"شروط الخدمة|سياسة الخصوصية|إغلاق|لا أوافق|أوافق|رجوع"_s;
        QTest::newRow("he_IL") << u"תנאי השימוש|מדיניות הפרטיות|סגירה|אני לא מסכים/ה|אני מסכים/ה|חזרה"_s;
        QTest::newRow("en_GB") << english; // the kit's own
        QTest::newRow("pt_PT") << QString(); // close to pt_BR, but without a catalogue
    }

    void catalogues()
    {
        const QString locale = QString::fromLatin1(QTest::currentDataTag());
        QFETCH(QString, texts);
        const bool found = !texts.isEmpty();
        const QStringList text = (found ? texts : english).split(u'|');

        // A language before it, so that a catalogue left installed would show. The layout goes
        // the language's way, as a host sets it.
        QVERIFY(TVRManager::installTranslations(QLocale(u"ja_JP"_s)));
        QCOMPARE(TVRManager::installTranslations(QLocale(locale)), found);
        QGuiApplication::setLayoutDirection(QLocale(locale).textDirection());

        // In a host's window, the terms pushed, the privacy policy presented, and an agreement.
        m_host = std::make_unique<HostScreen>();
        m_host->resize(390, 844);
        m_host->show();
        auto *terms = TVRManager::termsOfServiceViewController();
        auto *pushed = new TVRNavigationController(new HostScreen);
        m_host->embed(pushed);
        pushed->pushViewController(terms);
        auto *privacy = TVRManager::privacyPolicyViewController();
        m_host->presentViewController(new TVRNavigationController(privacy));
        auto *agreement = new TVRTermsViewController(std::make_shared<TVRDocument>(policy));
        m_host->embed(new TVRNavigationController(agreement));
        for (TVRDocumentViewController *screen :
             std::initializer_list<TVRDocumentViewController *>{terms, privacy, agreement})
            QTRY_VERIFY(!screen->tableView()->visibleCells().isEmpty());

        QCOMPARE(shown(pushed->navigationBar()), (QStringList{text[0], text[5]}));
        QCOMPARE(shown(privacy->navigationController()->navigationBar()), (QStringList{text[1], text[2]}));
        QCOMPARE(shown(agreement->navigationController()->navigationBar()), QStringList{text[0]});
        QCOMPARE(shown(agreement->toolbar()), (QStringList{QString(), text[3], text[4] + u" (trailing)"_s}));

        // The date in the same language as the texts: July as that language writes it (the
        // language the catalogue is for; the default locale without one).
        const QLocale dateLocale = found ? QLocale(locale) : QLocale();
        const QString date = privacy->headerView()->dateLabel()->text();
        QVERIFY2(date.contains(dateLocale.monthName(7)) || date.contains(dateLocale.monthName(7, QLocale::ShortFormat)),
                 qPrintable(date + u" has no "_s + dateLocale.monthName(7)));
        QVERIFY(saveScreenshot(privacy->navigationController(), u"privacy-policy-"_s + locale));
        QVERIFY(saveScreenshot(agreement->navigationController(), u"agreement-"_s + locale));
    }

private:
    TestHttpsServer m_server;
    TestSession m_session;
    std::unique_ptr<HostScreen> m_host;
};

TOVRA_OFFSCREEN_TEST_MAIN(tst_Languages, QSize(390, 844))
#include "tst_languages.moc"
