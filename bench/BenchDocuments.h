// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT
// The benchmarks' documents, and what a Qt developer would show instead of the kit.
#ifndef TOVRA_BENCH_DOCUMENTS_H
#define TOVRA_BENCH_DOCUMENTS_H

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QString>

struct Size
{
    const char *name;
    int sections;
    int sentences; // per body
    bool mixed; // sections in Latin, Arabic, Hebrew and CJK in turn
};

inline const Size sizes[] = {
    {"small", 10, 4, false}, {"typical", 40, 8, false}, {"large", 400, 10, false}, {"mixed", 40, 8, true}};

inline const char *const sentences[] = {
    "You keep every right you have in the content you put into #####.",
    "We may change these terms, and we will tell you before the changes take effect.",
    "Do not use ##### to break the law, to harm others or to overload our systems.",
    "A subscription renews each period until you cancel it in your account settings.",
    "To the extent the law allows, our liability is limited to what you paid us.",
};

// A sentence and a heading in each of the other scripts of the mixed document.
inline const char *const otherScripts[][2] = {
    {"توضح هذه الشروط كيف يتعامل ##### مع بياناتك وما يمكنك أن تتوقعه من الخدمة.", "كيف نستخدم بياناتك"},
    {"תנאים אלה מסבירים כיצד ##### מטפלת בנתונים שלך ומה אתה יכול לצפות מהשירות.", "כיצד אנו משתמשים בנתונים"},
    {"本条款说明#####如何处理您的数据，以及您可以从服务中期待什么。", "我们如何使用您的数据"},
};

inline QByteArray makeDocument(const Size &size)
{
    QJsonArray sections;
    for (int i = 0; i < size.sections; ++i) {
        const int script = size.mixed ? i % 4 : 0; // 0 is Latin
        // Every body a text of its own, as in a real document: none is measured for another.
        QString body = QStringLiteral("%1. ").arg(i + 1);
        for (int s = 0; s < size.sentences; ++s) {
            body += script == 0 ? QString::fromLatin1(sentences[(i + s) % 5])
                                : QString::fromUtf8(otherScripts[script - 1][0]);
            body += QLatin1Char(' ');
        }
        QJsonObject section{{QStringLiteral("body"), body.trimmed()}};
        if (i % 4 != 3) {
            section.insert(QStringLiteral("title"),
                           script == 0 ? QStringLiteral("%1. Section heading number %1").arg(i + 1)
                                       : QString::fromUtf8(otherScripts[script - 1][1]));
        }
        sections.append(section);
    }
    return QJsonDocument(QJsonObject{{QStringLiteral("_id"), QString::fromLatin1(size.name)},
                                     {QStringLiteral("title"), QStringLiteral("Terms of Service")},
                                     {QStringLiteral("updatedAt"), QStringLiteral("2026-09-01T09:00:00.000+0000")},
                                     {QStringLiteral("sections"), sections}})
        .toJson(QJsonDocument::Compact);
}

// A document of \a sections sections, each with a body of \a bodyBytes characters: the
// documents at the reply size limit, and the steps of a size ladder.
inline QByteArray documentOfBodies(int sections, int bodyBytes)
{
    QJsonArray list;
    const QString sentence = QStringLiteral("The service keeps what you write for as long as you keep it. ");
    const QString body = sentence.repeated(bodyBytes / int(sentence.size()) + 1).left(bodyBytes);
    for (int i = 0; i < sections; ++i)
        list.append(QJsonObject{{QStringLiteral("title"), QStringLiteral("%1. Section").arg(i + 1)},
                                {QStringLiteral("body"), body}});
    return QJsonDocument(QJsonObject{{QStringLiteral("title"), QStringLiteral("Terms of Service")},
                                     {QStringLiteral("updatedAt"), QStringLiteral("2017-07-04T10:00:00.000+0000")},
                                     {QStringLiteral("sections"), list}})
        .toJson(QJsonDocument::Compact);
}

// The two documents at the default reply size limit, named for the benchmarks' tables.
struct LimitDocument
{
    const char *name;
    int sections;
    int bodyBytes;
};
inline const LimitDocument limitDocuments[] = {{"2000x2.5K", 2000, 2500}, {"1x1MB", 1, 1024 * 1024}};

// The document's JSON as HTML: the date centred, a heading per section title and a
// paragraph per body, the application's name put in for "#####" as the kit does.
inline QString documentAsHtml(const QByteArray &json, const QString &appName)
{
    const QJsonObject document = QJsonDocument::fromJson(json).object();
    QString html = QStringLiteral("<html><body><p align=\"center\">%1</p>")
                       .arg(document.value(QStringLiteral("updatedAt")).toString());
    for (const QJsonValue &value : document.value(QStringLiteral("sections")).toArray()) {
        const QJsonObject section = value.toObject();
        if (section.contains(QStringLiteral("title")))
            html +=
                QStringLiteral("<h2>%1</h2>").arg(section.value(QStringLiteral("title")).toString().toHtmlEscaped());
        html += QStringLiteral("<p>%1</p>")
                    .arg(section.value(QStringLiteral("body"))
                             .toString()
                             .replace(QStringLiteral("#####"), appName)
                             .toHtmlEscaped());
    }
    return html + QStringLiteral("</body></html>");
}

// Adds \a rows to the JSON object in the file at \a path, made if there is none.
inline void addToReport(const QString &path, const QJsonObject &rows)
{
    QFile file(path);
    QJsonObject all;
    if (file.open(QIODevice::ReadOnly))
        all = QJsonDocument::fromJson(file.readAll()).object();
    file.close();
    for (auto it = rows.constBegin(); it != rows.constEnd(); ++it)
        all.insert(it.key(), it.value());
    if (file.open(QIODevice::WriteOnly | QIODevice::Truncate))
        file.write(QJsonDocument(all).toJson());
}

#endif
