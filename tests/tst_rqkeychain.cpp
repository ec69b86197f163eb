// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT

#include "HelperProcess.h"
#include "KeychainProbe.h"
#include "TestHttpsServer.h"
#include "TestSession.h"

#include <RQKeychain.h>
#include <TVRNetworkManager.h>

#include <QRegularExpression>
#include <QtTest>
#include <QUrl>

using namespace Qt::StringLiterals;

namespace {
// A type QVariant can hold but not stream.
struct Unstreamable
{
    int value = 0;
};
} // namespace
Q_DECLARE_METATYPE(Unstreamable)

class tst_RQKeychain : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();

    void roundTrip_data();
    void roundTrip();
    void savingTwiceLeavesOneItem();
    void neverSavedLoadsNullSilently();
    void deleting();
    void undecodableBytes_data();
    void undecodableBytes();
    void unarchivableValueKeepsTheOldItem();
    void unavailableKeychain();
    void lockedKeyring();
};

void tst_RQKeychain::initTestCase()
{
    // Everything here must run against the private keyring of run-isolated.sh.
    QVERIFY2(qEnvironmentVariable("HOME").contains(u"tovra-test"_s), "run this test through tests/run-isolated.sh");
    QVERIFY(KeychainProbe::writeRaw(u"probe"_s, u"probe"_s, "ready"));
}

void tst_RQKeychain::roundTrip_data()
{
    QTest::addColumn<QVariant>("value");

    QTest::newRow("text") << QVariant(u"user-42"_s);
    QTest::newRow("empty text") << QVariant(u""_s);
    QTest::newRow("non-ASCII text") << QVariant(u"Zoë 李 🙂"_s);
    QTest::newRow("long text") << QVariant(QString(100000, u'x'));
    QTest::newRow("number") << QVariant(42);
    QTest::newRow("floating point") << QVariant(2.5);
    QTest::newRow("boolean") << QVariant(true);
    QTest::newRow("address") << QVariant(QUrl(u"https://example.org/p.png"_s));
    QTest::newRow("bytes with zeros") << QVariant(QByteArray("a\0b\xff", 4));
    QTest::newRow("date and time") << QVariant(QDateTime(QDate(2026, 11, 22), QTime(1, 2, 3), Qt::UTC));
    QTest::newRow("null") << QVariant();
}

void tst_RQKeychain::roundTrip()
{
    QFETCH(QVariant, value);

    const QString key = u"roundtrip."_s + QString::fromLatin1(QTest::currentDataTag());
    QVERIFY(RQKeychain::saveValue(value, key));
    const QVariant loaded = RQKeychain::loadValueForKey(key);
    QCOMPARE(loaded.metaType(), value.metaType());
    QCOMPARE(loaded, value);
}

void tst_RQKeychain::savingTwiceLeavesOneItem()
{
    const QString key = u"tovrakit.twice"_s;
    QVERIFY(RQKeychain::saveValue(u"first"_s, key));
    QVERIFY(RQKeychain::saveValue(u"second"_s, key));
    QCOMPARE(KeychainProbe::secretServiceItems(key, key), 1);
    QCOMPARE(RQKeychain::loadValueForKey(key), QVariant(u"second"_s));
}

void tst_RQKeychain::neverSavedLoadsNullSilently()
{
    QTest::failOnWarning(QRegularExpression(u".*"_s));
    const QVariant loaded = RQKeychain::loadValueForKey(u"tovrakit.never-saved"_s);
    QVERIFY(!loaded.isValid());
}

void tst_RQKeychain::deleting()
{
    const QString key = u"tovrakit.deleted"_s;
    QVERIFY(!RQKeychain::deleteValueForKey(key));
    QVERIFY(RQKeychain::saveValue(u"v"_s, key));
    QVERIFY(RQKeychain::deleteValueForKey(key));
    QVERIFY(!RQKeychain::deleteValueForKey(key));

    QVERIFY(!RQKeychain::loadValueForKey(key).isValid());
    QCOMPARE(KeychainProbe::secretServiceItems(key, key), 0);
}

void tst_RQKeychain::undecodableBytes_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("reason");

    const QByteArray header("TVRA\0\1", 6);
    QTest::newRow("plain text") << QByteArray("user-42") << u"data is not a Tovra archive"_s;
    QTest::newRow("empty") << QByteArray() << u"data is not a Tovra archive"_s;
    QTest::newRow("later format") << QByteArray("TVRA\0\2", 6) << u"archive format 2 is not supported"_s;
    QTest::newRow("header only") << header << u"archive is truncated or corrupt"_s;
    QTest::newRow("text cut short") << header + QByteArray("\0\0\0\x0a\0\0\0\0\x10\0a", 11)
                                    << u"archive is truncated or corrupt"_s;
    // A pixmap (type 4097) would need a GUI to be built, and builds one from the bytes.
    QTest::newRow("a pixmap") << header + QByteArray("\0\0\x10\x01\0", 5)
                              << u"archive holds a value of type 4097, which is not a plain value"_s;
    QTest::newRow("a type of the host's")
        << header + QByteArray("\0\1\0\0\0", 5) << u"archive holds a value of type 65536, which is not a plain value"_s;
    // A list of texts claiming four billion items would reserve room for all of them.
    QTest::newRow("a list claiming billions") << header + QByteArray("\0\0\0\x0b\0\xff\xff\xff\xff", 9)
                                              << u"archive holds a value of type 11, which is not a plain value"_s;
}

void tst_RQKeychain::undecodableBytes()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QString, reason);

    const QString key = u"tovrakit.corrupt."_s + QString::fromLatin1(QTest::currentDataTag());
    QVERIFY(KeychainProbe::writeRaw(key, key, bytes));

    QTest::ignoreMessage(QtWarningMsg, qPrintable(u"Unarchive of %1 failed: %2"_s.arg(key, reason)));
    QVERIFY(!RQKeychain::loadValueForKey(key).isValid());
    // The unreadable item is reported, not removed.
    QCOMPARE(KeychainProbe::secretServiceItems(key, key), 1);
}

void tst_RQKeychain::unarchivableValueKeepsTheOldItem()
{
    const QString key = u"tovrakit.unarchivable"_s;
    QVERIFY(RQKeychain::saveValue(u"kept"_s, key));
    QVERIFY(!RQKeychain::saveValue(QVariant::fromValue(Unstreamable{3}), key));
    QVERIFY(!RQKeychain::saveValue(QVariantMap{{u"id"_s, 7}}, key));
    QVERIFY(!RQKeychain::saveValue(QStringList{u"a"_s}, key));
    QCOMPARE(RQKeychain::loadValueForKey(key), QVariant(u"kept"_s));
}

void tst_RQKeychain::unavailableKeychain()
{
    // A launch whose session bus is gone: every call fails quietly instead of crashing.
    const QStringList noBus{u"DBUS_SESSION_BUS_ADDRESS=unix:path=/nonexistent/tovra-bus"_s};
    QCOMPARE(runHelper({u"save"_s, u"k"_s, u"v"_s}, noBus), QStringList{u"false"_s});
    QCOMPARE(runHelper({u"load"_s, u"k"_s}, noBus), QStringList{u"<null>"_s});
    QCOMPARE(runHelper({u"delete"_s, u"k"_s}, noBus), QStringList{u"false"_s});
}

void tst_RQKeychain::lockedKeyring()
{
    const QString key = u"tovrakit.locked"_s;
    QVERIFY(RQKeychain::saveValue(u"kept"_s, key));
    KeychainProbe::SecretServiceCalls watch;
    QVERIFY(watch.start());
    QVERIFY(KeychainProbe::setKeyringLocked(true));
    // Unlocked again whatever happens, so that a failure here fails no later test.
    const auto unlock = qScopeGuard([] { KeychainProbe::setKeyringLocked(false); });

    // Unlocking would take the user's answer at a prompt, which a synchronous call cannot
    // wait for: each call fails instead, and none asks the user. Each in a launch of its
    // own, as a failure keeps a process's calls away from the keychain for a while.
    QCOMPARE(runHelper({u"load"_s, key}), QStringList{u"<null>"_s});
    QCOMPARE(runHelper({u"save"_s, key, u"new"_s}), QStringList{u"false"_s});
    QCOMPARE(runHelper({u"delete"_s, key}), QStringList{u"false"_s});
    const QStringList calls = watch.calls();
    QVERIFY2(calls.contains(u"Unlock"_s) && !calls.contains(u"Prompt"_s), qPrintable(calls.join(u' ')));

    // Nothing was lost meanwhile.
    QVERIFY(KeychainProbe::setKeyringLocked(false));
    QCOMPARE(RQKeychain::loadValueForKey(key), QVariant(u"kept"_s));
}

QTEST_MAIN(tst_RQKeychain)
#include "tst_rqkeychain.moc"
