// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT
// The QML module's document model used from C++: checked by Qt's model tester, and saying the
// date exactly as the widget screen's header does.

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
#include <QSignalSpy>
#include <QtTest>

using namespace Qt::StringLiterals;

class tst_DocumentModel : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void followsTheManager_data();
    void followsTheManager();
    void dateReadsAsTheWidgetHeader();
    void refreshChangesOnlyWhatChanged_data();
    void refreshChangesOnlyWhatChanged();

private:
    TestHttpsServer m_server;
    TestSession m_session;
    bool m_breakNextReply = false;
};

void tst_DocumentModel::initTestCase()
{
    QVERIFY(startLoopbackService(u"tst_documentmodel"_s, m_server, m_session));
    QLocale::setDefault(QLocale(QLocale::French, QLocale::France));
    TVRManager::setAppName(u"Acme"_s);
    TVRDocumentManager::sharedInstance()->setSession(&m_session);
    m_server.setHandler([this](const TestRequest &request) {
        const QString name = request.path == u"/api/terms-of-service"_s ? u"Terms"_s : u"Privacy"_s;
        const QJsonArray sections{QJsonObject{{u"title"_s, name + u" one"_s}, {u"body"_s, u"##### one"_s}},
                                  QJsonObject{{u"body"_s, u"##### two"_s}},
                                  QJsonObject{{u"title"_s, name + u" three"_s}, {u"body"_s, u"##### three"_s}}};
        TestReply reply = TestReply::json(200,
                                          QJsonDocument(QJsonObject{{u"title"_s, name},
                                                                    {u"updatedAt"_s, u"2018-02-28T23:30:00.000-0800"_s},
                                                                    {u"sections"_s, sections}})
                                              .toJson(QJsonDocument::Compact));
        // A body cut short fails for good.
        if (std::exchange(m_breakNextReply, false))
            reply.cutBodyAt = 10;
        return reply;
    });
}

void tst_DocumentModel::followsTheManager_data()
{
    QTest::addColumn<int>("kind");
    QTest::addColumn<QString>("name");
    QTest::newRow("terms of service") << int(TVRDocumentModel::TermsOfService) << u"Terms"_s;
    QTest::newRow("privacy policy") << int(TVRDocumentModel::PrivacyPolicy) << u"Privacy"_s;
}

void tst_DocumentModel::followsTheManager()
{
    QFETCH(int, kind);
    QFETCH(QString, name);

    TVRDocumentModel model;
    model.setKind(TVRDocumentModel::Kind(kind));
    QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest);

    // A second model of the kind hears the reply to the first one's request.
    TVRDocumentModel second;
    second.setKind(TVRDocumentModel::Kind(kind));
    const qsizetype requests = m_server.requests().size();

    QSignalSpy loading(&model, &TVRDocumentModel::loadingChanged);
    model.fetch();
    QVERIFY(model.isLoading());
    QTRY_VERIFY(!model.isLoading());
    QCOMPARE(loading.size(), 2);
    QCOMPARE(model.error(), QString());
    QCOMPARE(model.title(), name);
    QCOMPARE(m_server.requests().size(), requests + 1);
    QCOMPARE(second.rowCount(), 3);

    // The rows as a view gets them: the title, else the body with the app's name.
    QCOMPARE(model.rowCount(), 3);
    const QStringList shown{model.index(0).data().toString(), model.index(1).data().toString(),
                            model.index(2).data().toString()};
    QCOMPARE(shown, QStringList({name + u" one"_s, u"Acme two"_s, name + u" three"_s}));
    QCOMPARE(model.index(1).data(TVRDocumentModel::TitleRole).toString(), QString());
    QCOMPARE(model.index(2).data(TVRDocumentModel::BodyRole).toString(), u"Acme three"_s);

    // A broken reply is an error; the document held stays.
    m_breakNextReply = true;
    second.fetch();
    QTRY_VERIFY(!second.isLoading());
    QVERIFY(!second.error().isEmpty());
    QCOMPARE(second.rowCount(), 3);

    // A document set elsewhere reaches the model.
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

// A document of sections given as "title|body", or "body" alone.
static std::shared_ptr<TVRDocument> documentOf(const QStringList &sections)
{
    QJsonArray array;
    for (const QString &section : sections) {
        const QStringList parts = section.split(u'|');
        array.append(parts.size() == 2 ? QJsonObject{{u"title"_s, parts[0]}, {u"body"_s, parts[1]}}
                                       : QJsonObject{{u"body"_s, parts[0]}});
    }
    return std::make_shared<TVRDocument>(QJsonObject{{u"title"_s, u"Terms"_s}, {u"sections"_s, array}});
}

void tst_DocumentModel::refreshChangesOnlyWhatChanged_data()
{
    QTest::addColumn<QStringList>("before");
    QTest::addColumn<QStringList>("after");
    QTest::addColumn<QList<int>>("changed"); // first and last row of each run of changed rows
    QTest::addColumn<QList<int>>("inserted");
    QTest::addColumn<QList<int>>("removed");
    const QStringList before{u"A|one"_s, u"two"_s, u"C|three"_s};
    QTest::newRow("first sections") << QStringList() << before << QList<int>() << QList<int>{0, 2} << QList<int>();
    QTest::newRow("same sections") << before << before << QList<int>() << QList<int>() << QList<int>();
    QTest::newRow("a body changed") << before << QStringList{u"A|one"_s, u"2"_s, u"C|three"_s} << QList<int>{1, 1}
                                    << QList<int>() << QList<int>();
    QTest::newRow("a title given") << before << QStringList{u"A|one"_s, u"B|two"_s, u"C|three"_s} << QList<int>{1, 1}
                                   << QList<int>() << QList<int>();
    QTest::newRow("first and last changed") << before << QStringList{u"A|1"_s, u"two"_s, u"C|3"_s}
                                            << QList<int>{0, 0, 2, 2} << QList<int>() << QList<int>();
    QTest::newRow("sections added") << before << before + QStringList{u"four"_s, u"E|five"_s} << QList<int>()
                                    << QList<int>{3, 4} << QList<int>();
    QTest::newRow("sections gone, one changed")
        << before << QStringList{u"A|1"_s} << QList<int>{0, 0} << QList<int>() << QList<int>{1, 2};
    QTest::newRow("no sections") << before << QStringList() << QList<int>() << QList<int>() << QList<int>{0, 2};
}

void tst_DocumentModel::refreshChangesOnlyWhatChanged()
{
    QFETCH(QStringList, before);
    QFETCH(QStringList, after);
    QFETCH(QList<int>, changed);
    QFETCH(QList<int>, inserted);
    QFETCH(QList<int>, removed);

    TVRDocumentManager *manager = TVRDocumentManager::sharedInstance();
    manager->setTermsOfService(documentOf(before));
    TVRDocumentModel model;
    QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest);
    QSignalSpy resets(&model, &QAbstractItemModel::modelReset);
    QSignalSpy changes(&model, &QAbstractItemModel::dataChanged);
    QSignalSpy inserts(&model, &QAbstractItemModel::rowsInserted);
    QSignalSpy removals(&model, &QAbstractItemModel::rowsRemoved);
    QSignalSpy documentChanged(&model, &TVRDocumentModel::documentChanged);
    const QPersistentModelIndex first = model.index(0);

    manager->setTermsOfService(documentOf(after));

    QCOMPARE(resets.size(), 0);
    QCOMPARE(documentChanged.size(), 1);
    QCOMPARE(changes.size(), changed.size() / 2);
    for (qsizetype run = 0; run < changes.size(); ++run) {
        QCOMPARE(changes[run][0].toModelIndex().row(), changed[2 * run]);
        QCOMPARE(changes[run][1].toModelIndex().row(), changed[2 * run + 1]);
        QVERIFY(changes[run][2].value<QList<int>>().contains(TVRDocumentModel::BodyRole));
    }
    QCOMPARE(inserts.size(), inserted.isEmpty() ? 0 : 1);
    if (!inserted.isEmpty())
        QCOMPARE((QList<int>{inserts[0][1].toInt(), inserts[0][2].toInt()}), inserted);
    QCOMPARE(removals.size(), removed.isEmpty() ? 0 : 1);
    if (!removed.isEmpty())
        QCOMPARE((QList<int>{removals[0][1].toInt(), removals[0][2].toInt()}), removed);
    // Whatever the way, the rows are the new document's.
    QCOMPARE(model.rowCount(), after.size());
    for (int row = 0; row < after.size(); ++row)
        QCOMPARE(model.index(row).data().toString(), after[row].split(u'|').first());
    if (!before.isEmpty())
        QCOMPARE(first.isValid(), !after.isEmpty()); // rows kept, not reset
}

TOVRA_OFFSCREEN_TEST_MAIN(tst_DocumentModel, QSize(390, 844))
#include "tst_documentmodel.moc"
