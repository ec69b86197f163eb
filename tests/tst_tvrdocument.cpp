// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT

#include <TovraCore.h>

#include <QtTest>

using namespace Qt::StringLiterals;

class tst_TVRDocument : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void reads_data()
    {
        QTest::addColumn<QJsonValue>("json");
        QTest::addColumn<QString>("text"); // what the identifier and the titles read
        QTest::addColumn<QString>("body"); // what the body reads, for an app named "Acme"
        QTest::addColumn<QString>("date"); // with its offset, as ISO 8601; "now" for the time it is read
        QTest::addColumn<QStringList>("titles"); // of the sections, "-" for one with no title to read

        // Without a date, the document is dated when it is read; without sections, it has none.
        const auto row = [](const char *name, const QJsonValue &json, const QString &text, const QString &body = {}) {
            QTest::newRow(name) << json << text << (body.isNull() ? text : body) << u"now"_s << QStringList();
        };
        // The identifier, the title and the body all hold the value.
        const auto fields = [](const QJsonValue &value) {
            return QJsonValue(QJsonObject{{u"_id"_s, value}, {u"title"_s, value}, {u"body"_s, value}});
        };
        row("missing", QJsonObject(), QString());
        row("JSON null", fields(QJsonValue::Null), u""_s);
        row("text", fields(u"Terms of Service"_s), u"Terms of Service"_s);
        row("whole number", fields(42), u"42"_s);
        // Only the body names the app, for each run of five number signs.
        row("one mark", fields(u"Welcome to #####."_s), u"Welcome to #####."_s, u"Welcome to Acme."_s);
        row("two marks", fields(u"##### and #####"_s), u"##### and #####"_s, u"Acme and Acme"_s);
        row("six signs", fields(u"######"_s), u"######"_s, u"Acme#"_s);
        row("four signs", fields(u"####"_s), u"####"_s);

        const auto dated = [](const char *name, const QJsonValue &updatedAt, const QString &date) {
            QTest::newRow(name) << QJsonValue(QJsonObject{{u"updatedAt"_s, updatedAt}}) << QString() << QString()
                                << date << QStringList();
        };
        dated("west of UTC", u"2016-03-01T12:30:00.250-0800"_s, u"2016-03-01T12:30:00.250-08:00"_s);
        // The farthest offsets taken: 14 hours, and 59 minutes past an hour.
        dated("offset 14 hours", u"2016-03-01T12:30:00.000+1400"_s, u"2016-03-01T12:30:00.000+14:00"_s);
        dated("offset minutes 59", u"2016-03-01T12:30:00.000-0959"_s, u"2016-03-01T12:30:00.000-09:59"_s);

        dated("no fraction", u"2016-03-01T12:30:00+0000"_s, QString());
        dated("letter Z", u"2016-03-01T12:30:00.000Z"_s, QString());
        dated("no such day", u"2015-02-29T12:30:00.000+0000"_s, QString());
        dated("hour 24", u"2016-03-01T24:00:00.000+0000"_s, QString());
        dated("offset minutes 60", u"2016-03-01T12:30:00.000+0060"_s, QString());
        dated("offset a minute past 14 hours", u"2016-03-01T12:30:00.000+1401"_s, QString());
        dated("space before", u" 2016-03-01T12:30:00.000+0000"_s, QString());
        dated("other digits", u"٢٠١٦-03-01T12:30:00.000+0000"_s, QString());
        dated("date JSON null", QJsonValue::Null, QString());

        const auto sectioned = [](const char *name, const QJsonValue &sections, const QStringList &titles) {
            QTest::newRow(name) << QJsonValue(QJsonObject{{u"sections"_s, sections}}) << QString() << QString()
                                << u"now"_s << titles;
        };
        const auto section = [](const QString &title) { return QJsonObject{{u"title"_s, title}, {u"body"_s, u"b"_s}}; };
        sectioned("three sections in order", QJsonArray{section(u"1"_s), section(u"2"_s), section(u"3"_s)},
                  {u"1"_s, u"2"_s, u"3"_s});
        // Elements of any kind become sections; only objects have keys to read.
        sectioned("sections of mixed elements",
                  QJsonArray{section(u"1"_s), u"text"_s, QJsonArray{1}, QJsonValue::Null, 7, section(u"6"_s)},
                  {u"1"_s, u"-"_s, u"-"_s, u"-"_s, u"-"_s, u"6"_s});
    }

    void reads()
    {
        QFETCH(QJsonValue, json);
        QFETCH(QString, text);
        QFETCH(QString, body);
        QFETCH(QString, date);
        QFETCH(QStringList, titles);

        TVRManager::setAppName(u"Acme"_s);
        TVRDocument document(json);
        TVRSection section(json);
        // What the setters are given is kept apart: the JSON's texts and date are what is read.
        document.setIdentifier(u"set"_s);
        document.setTitle(u"set"_s);
        document.setDate(QDateTime(QDate(2000, 1, 1), QTime(0, 0)));
        section.setTitle(u"set"_s);
        section.setBody(u"set"_s);
        const QDateTime before = QDateTime::currentDateTime();
        const QDateTime read = document.date();
        if (date == u"now"_s)
            QVERIFY(read >= before && read <= QDateTime::currentDateTime());
        else
            QCOMPARE(read.toString(Qt::ISODateWithMs), date);
        const QStringList texts{document.identifier(), document.title(), section.title(), section.body()};
        QCOMPARE(texts, QStringList({text, text, text, body}));
        for (const QString &each : texts)
            QCOMPARE(each.isNull(), text.isNull());
        // The name is read at each read of the body.
        TVRManager::setAppName(u"Other"_s);
        QCOMPARE(section.body(), TVRSection(json).body());

        const auto titlesRead = [&document] {
            QStringList read;
            for (const auto &made : document.sections())
                read << (made->title().isNull() ? u"-"_s : made->title());
            return read;
        };
        QCOMPARE(titlesRead(), titles);
        // Made once; sections set are kept, even none, until unset: then they are made again.
        const TVRSectionList first = document.sections();
        QVERIFY(document.sections() == first);
        document.setSections(TVRSectionList());
        QVERIFY(document.sections().isEmpty());
        document.setSections(std::nullopt);
        QCOMPARE(titlesRead(), titles);
        if (!titles.isEmpty())
            QVERIFY(document.sections().constFirst() != first.constFirst());
    }
};

QTEST_GUILESS_MAIN(tst_TVRDocument)
#include "tst_tvrdocument.moc"
