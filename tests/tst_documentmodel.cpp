// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT
// The QML module's document model used from C++: checked by Qt's model tester, shown in a
// QListView, and saying the date exactly as the widget screen's header does.

#include "OffscreenTest.h"
#include "TestFixture.h"
#include "TestHttpsServer.h"
#include "TestSession.h"

#include <Tovra.h>
#include <TVRDocumentModel.h>

#include <QAbstractItemModelTester>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLabel>
#include <QListView>
#include <QSignalSpy>
#include <QtTest>

using namespace Qt::StringLiterals;

class tst_DocumentModel : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void followsTheManagerInAnItemView_data();
    void followsTheManagerInAnItemView();
    void dateReadsAsTheWidgetHeader();

private:
    TestHttpsServer m_server;
    TestSession m_session;
};

void tst_DocumentModel::initTestCase()
{
    QVERIFY(startLoopbackService(u"tst_documentmodel"_s, m_server, m_session));
    QLocale::setDefault(QLocale(QLocale::French, QLocale::France));
    TVRManager::setAppName(u"Acme"_s);
    TVRDocumentManager::sharedInstance()->setSession(&m_session);
    m_server.setHandler([](const TestRequest &request) {
        const QString name = request.path == u"/api/terms-of-service"_s ? u"Terms"_s : u"Privacy"_s;
        const QJsonArray sections{QJsonObject{{u"title"_s, name + u" one"_s}, {u"body"_s, u"##### one"_s}},
                                  QJsonObject{{u"body"_s, u"##### two"_s}},
                                  QJsonObject{{u"title"_s, name + u" three"_s}, {u"body"_s, u"##### three"_s}}};
        return TestReply::json(200,
                               QJsonDocument(QJsonObject{{u"title"_s, name},
                                                         {u"updatedAt"_s, u"2018-02-28T23:30:00.000-0800"_s},
                                                         {u"sections"_s, sections}})
                                   .toJson(QJsonDocument::Compact));
    });
}

void tst_DocumentModel::followsTheManagerInAnItemView_data()
{
    QTest::addColumn<int>("kind");
    QTest::addColumn<QString>("name");
    QTest::newRow("terms of service") << int(TVRDocumentModel::TermsOfService) << u"Terms"_s;
    QTest::newRow("privacy policy") << int(TVRDocumentModel::PrivacyPolicy) << u"Privacy"_s;
}

void tst_DocumentModel::followsTheManagerInAnItemView()
{
    QFETCH(int, kind);
    QFETCH(QString, name);

    TVRDocumentModel model;
    model.setKind(TVRDocumentModel::Kind(kind));
    QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest);
    QListView view;
    view.setModel(&model);
    view.resize(390, 400);
    view.show();

    QSignalSpy loading(&model, &TVRDocumentModel::loadingChanged);
    model.fetch();
    QVERIFY(model.isLoading());
    QTRY_VERIFY(!model.isLoading());
    QCOMPARE(loading.size(), 2);
    QCOMPARE(model.error(), QString());
    QCOMPARE(model.title(), name);

    // The rows as the view gets them: the title, else the body with the app's name.
    QCOMPARE(model.rowCount(), 3);
    const QStringList shown{model.index(0).data().toString(), model.index(1).data().toString(),
                            model.index(2).data().toString()};
    QCOMPARE(shown, QStringList({name + u" one"_s, u"Acme two"_s, name + u" three"_s}));
    QCOMPARE(model.index(1).data(TVRDocumentModel::TitleRole).toString(), QString());
    QCOMPARE(model.index(2).data(TVRDocumentModel::BodyRole).toString(), u"Acme three"_s);
    QVERIFY(view.visualRect(model.index(2)).isValid());

    // A document set elsewhere reaches the model, and the view, too.
    const auto set = std::make_shared<TVRDocument>(
        QJsonObject{{u"title"_s, u"Set"_s}, {u"sections"_s, QJsonArray{QJsonObject{{u"body"_s, u"only"_s}}}}});
    if (kind == TVRDocumentModel::TermsOfService)
        TVRDocumentManager::sharedInstance()->setTermsOfService(set);
    else
        TVRDocumentManager::sharedInstance()->setPrivacyPolicy(set);
    QCOMPARE(model.rowCount(), 1);
    QCOMPARE(model.title(), u"Set"_s);
}

void tst_DocumentModel::dateReadsAsTheWidgetHeader()
{
    TVRDocumentModel model;
    model.fetch();
    QTRY_VERIFY(!model.isLoading());
    TVRTermsOfServiceViewController screen;
    screen.resize(390, 844);
    screen.show();
    QTRY_VERIFY(screen.tableView()->numberOfSections() > 0);
    const QString header = screen.headerView()->dateLabel()->text();
    QVERIFY(!header.isEmpty());
    QVERIFY2(header.contains(u"2018"_s), qPrintable(header));
    QCOMPARE(model.dateText(), header);
}

TOVRA_OFFSCREEN_TEST_MAIN(tst_DocumentModel, QSize(390, 844))
#include "tst_documentmodel.moc"
