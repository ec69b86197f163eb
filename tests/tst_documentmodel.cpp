// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT
// The QML module's document model used from C++: checked by Qt's model tester, following the
// document manager and telling a view only the rows that changed.

#include "OffscreenTest.h"
#include "TestFixture.h"
#include "TestHttpsServer.h"
#include "TestSession.h"

#include <Tovra.h>
#include <TVRDocumentModel.h>

#include <QtTest>

using namespace Qt::StringLiterals;

namespace {

// Sections given as "title|body", or "body" alone, separated by ";".
QJsonArray sectionsOf(const QString &sections)
{
    QJsonArray array;
    for (const QString &section : sections.split(u';', Qt::SkipEmptyParts)) {
        const QStringList parts = section.split(u'|');
        array.append(parts.size() == 2 ? QJsonObject{{u"title"_s, parts[0]}, {u"body"_s, parts[1]}}
                                       : QJsonObject{{u"body"_s, parts[0]}});
    }
    return array;
}

} // namespace

class tst_DocumentModel : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        QVERIFY(startLoopbackService(u"tst_documentmodel"_s, m_server, m_session));
        TVRDocumentManager::sharedInstance()->setSession(&m_session);
        m_server.setHandler([this](const TestRequest &request) {
            const QString name = request.path == u"/api/terms-of-service"_s ? u"Terms"_s : u"Privacy"_s;
            const QJsonObject document{{u"title"_s, name},
                                       {u"updatedAt"_s, u"2018-02-28T23:30:00.000-0800"_s},
                                       {u"sections"_s, sectionsOf(u"%1 one|one;two;%1 three|three"_s.arg(name))}};
            TestReply reply = TestReply::json(200, QJsonDocument(document).toJson(QJsonDocument::Compact));
            // A body cut short fails for good.
            if (std::exchange(m_breakNextReply, false))
                reply.cutBodyAt = 10;
            return reply;
        });
    }

    void followsTheManager_data()
    {
        QTest::addColumn<int>("kind");
        QTest::addColumn<QString>("name");
        QTest::newRow("terms of service") << int(TVRDocumentModel::TermsOfService) << u"Terms"_s;
        QTest::newRow("privacy policy") << int(TVRDocumentModel::PrivacyPolicy) << u"Privacy"_s;
    }

    void followsTheManager()
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
        // What each row shows, the refresh rows below and the QML pages' tests check; the date,
        // which the model and the widget header both take from the document, the QML pages'
        // screen reader reads and tst_languages reads in every language.
        QCOMPARE(second.rowCount(), 3);

        // A broken reply is an error; the document held stays.
        m_breakNextReply = true;
        second.fetch();
        QTRY_VERIFY(!second.isLoading());
        QVERIFY(!second.error().isEmpty());
        QCOMPARE(second.rowCount(), 3);
    }

    // A page sets its model's kind as it is made: a Privacy Policy page never reads the copy of
    // the Terms of Service, the kind its model had until then.
    void readsOnlyItsOwnCopy()
    {
        TVRDocumentManager *manager = TVRDocumentManager::sharedInstance();
        manager->setTermsOfService(nullptr);
        manager->setPrivacyPolicy(nullptr);
        keepCopy(kTVRTermsOfServiceDataPath, QJsonObject{{u"title"_s, u"Terms"_s}});
        keepCopy(kTVRPrivacyPolicyDataPath, QJsonObject{{u"title"_s, u"Privacy"_s}});
        TVRDocumentModel model;
        model.setKind(TVRDocumentModel::PrivacyPolicy);
        QCOMPARE(model.title(), u"Privacy"_s);
        removeKeptCopies();
        QVERIFY(!manager->termsOfService());
        // Set to another kind once read, it shows that one.
        model.setKind(TVRDocumentModel::TermsOfService);
        QCOMPARE(model.title(), QString());
    }

    void refreshChangesOnlyWhatChanged_data()
    {
        QTest::addColumn<QString>("before");
        QTest::addColumn<QString>("after");
        QTest::addColumn<QStringList>("expected"); // what the model tells a view, in order, before documentChanged

        const QString before = u"A|one;two;C|three"_s;
        QTest::newRow("same sections") << before << before << QStringList();
        QTest::newRow("a body changed") << before << u"A|one;2;C|three"_s << QStringList{u"changed 1-1"_s};
        QTest::newRow("a title given") << before << u"A|one;B|two;C|three"_s << QStringList{u"changed 1-1"_s};
        QTest::newRow("first and last changed")
            << before << u"A|1;two;C|3"_s << QStringList{u"changed 0-0"_s, u"changed 2-2"_s};
        QTest::newRow("sections added") << before << before + u";four;E|five"_s << QStringList{u"inserted 3-4"_s};
        QTest::newRow("sections gone, one changed")
            << before << u"A|1"_s << QStringList{u"removed 1-2"_s, u"changed 0-0"_s};
    }

    void refreshChangesOnlyWhatChanged()
    {
        QFETCH(QString, before);
        QFETCH(QString, after);
        QFETCH(QStringList, expected);

        const auto documentOf = [](const QString &sections) {
            return std::make_shared<TVRDocument>(QJsonObject{{u"sections"_s, sectionsOf(sections)}});
        };
        TVRDocumentManager::sharedInstance()->setTermsOfService(documentOf(before));
        TVRDocumentModel model;
        QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest);
        // Rows are changed, added and removed, never reset.
        QStringList told;
        const auto rows = [&told](const QString &what, int first, int last) {
            told << u"%1 %2-%3"_s.arg(what).arg(first).arg(last);
        };
        connect(&model, &QAbstractItemModel::modelReset, this, [&told] { told << u"reset"_s; });
        connect(&model, &QAbstractItemModel::dataChanged, this,
                [&](const QModelIndex &first, const QModelIndex &last, const QList<int> &roles) {
                    rows(roles.contains(TVRDocumentModel::BodyRole) ? u"changed"_s : u"changed, not the body,"_s,
                         first.row(), last.row());
                });
        connect(&model, &QAbstractItemModel::rowsInserted, this,
                [&](const QModelIndex &, int first, int last) { rows(u"inserted"_s, first, last); });
        connect(&model, &QAbstractItemModel::rowsRemoved, this,
                [&](const QModelIndex &, int first, int last) { rows(u"removed"_s, first, last); });
        connect(&model, &TVRDocumentModel::documentChanged, this, [&told] { told << u"document"_s; });

        TVRDocumentManager::sharedInstance()->setTermsOfService(documentOf(after));

        QCOMPARE(told, expected + QStringList{u"document"_s});
        // Whatever the way, the rows are the new document's.
        const QStringList sections = after.split(u';', Qt::SkipEmptyParts);
        QCOMPARE(model.rowCount(), sections.size());
        for (int row = 0; row < sections.size(); ++row)
            QCOMPARE(model.index(row).data().toString(), sections[row].split(u'|').first());
    }

private:
    TestHttpsServer m_server;
    TestSession m_session;
    bool m_breakNextReply = false;
};

TOVRA_OFFSCREEN_TEST_MAIN(tst_DocumentModel, QSize(390, 844))
#include "tst_documentmodel.moc"
