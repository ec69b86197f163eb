// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT

#include "SampleDocuments.h"

#include <TVRDocument.h>

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>

namespace {

struct Section
{
    const char *title; // null: a section without a heading
    const char *body;
};

QJsonObject document(const QString &id, const QString &title, const QString &updatedAt,
                     std::initializer_list<Section> sections)
{
    QJsonArray list;
    for (const Section &section : sections) {
        QJsonObject object{{QStringLiteral("body"), QString::fromUtf8(section.body)}};
        if (section.title)
            object.insert(QStringLiteral("title"), QString::fromUtf8(section.title));
        list.append(object);
    }
    return QJsonObject{{QStringLiteral("_id"), id},
                       {QStringLiteral("title"), title},
                       {QStringLiteral("updatedAt"), updatedAt},
                       {QStringLiteral("sections"), list}};
}

} // namespace

QJsonObject SampleDocuments::termsOfService()
{
    return document(
        QStringLiteral("5f2b9c1e7d3a4b0012a1c001"), QStringLiteral("Terms of Service"),
        QStringLiteral("2026-09-01T09:00:00.000+0000"),
        {
            {nullptr,
             "Welcome to #####. These terms are an agreement between you and Acme Inc. about your use of "
             "#####. Please read them carefully: by creating an account or using ##### you accept them."},
            {"1. Who may use the app",
             "You must be at least 16 years old, or the age of digital consent where you live, "
             "and able to enter into a binding contract. If you use ##### for an organisation, "
             "you accept these terms on its behalf."},
            {"2. Your account",
             "Keep your password safe and tell us at once if you think someone else has used your "
             "account. You are responsible for what happens under your account unless you told us "
             "it had been compromised."},
            {"3. Your content",
             "You keep every right you have in the notes, files and images you put into #####. You "
             "give us the licence we need to store them, show them to you and the people you share "
             "them with, and keep copies for backup."},
            {"4. Acceptable use",
             "Do not use ##### to break the law, to harm others, to send spam, to probe or overload "
             "our systems, or to get around limits we set. We may suspend accounts that do."},
            {"5. Sharing",
             "When you share a note, the people you share it with can read it and, if you allow them, "
             "change it. Sharing a link makes the note readable by anyone who has that link."},
            {"6. Subscriptions and payment",
             "Some features of ##### need a paid subscription. Prices are shown before "
             "you buy, include tax where the law requires it, and renew each period "
             "until you cancel."},
            {"7. Cancelling",
             "You can cancel a subscription at any time in your account settings. It ends at the close "
             "of the period you have paid for; we do not refund partial periods unless the law says so."},
            {"8. Free trials",
             "A free trial turns into a paid subscription when it ends unless you cancel before then. "
             "We will remind you at least three days before."},
            {"9. Changes to #####",
             "We keep improving #####, so features may change or be withdrawn. If a change takes "
             "away something you paid for, we will tell you in advance and offer a refund."},
            {"10. Our intellectual property",
             "The ##### app, its name, logo and design belong to Acme Inc. These terms "
             "do not give you any right to use them except to use ##### as intended."},
            {"11. Third-party services",
             "##### lets you connect services of other companies, such as calendars and "
             "cloud storage. Their own terms apply to them, and we are not responsible for them."},
            {"12. Feedback", "If you send us ideas or suggestions, we may use them without owing you anything."},
            {"13. Disclaimer",
             "We provide ##### with reasonable skill and care, but we cannot promise that it will always "
             "be available or free of errors. Keep your own copies of anything important."},
            {"14. Limitation of liability",
             "To the extent the law allows, Acme Inc. is not liable for indirect or "
             "unforeseeable losses, and our total liability is limited to what you paid "
             "us in the twelve months before the claim."},
            {"15. Ending these terms",
             "You may stop using ##### and delete your account at any time. We may end these "
             "terms if you break them seriously, after telling you why where we can."},
            {"16. Changes to these terms",
             "We may update these terms. We will tell you about important changes at least "
             "30 days before they take effect, and ask you to agree to them again."},
            {"17. Governing law",
             "These terms are governed by the law of the country where you live, and you may bring "
             "a claim in its courts."},
            {"18. Contact",
             "Questions about these terms? Write to legal@acme.example or to Acme Inc., 1 Example Street, "
             "Springfield."},
        });
}

QJsonObject SampleDocuments::privacyPolicyGerman()
{
    return document(
        QStringLiteral("5f2b9c1e7d3a4b0012a1c003"), QStringLiteral("Datenschutzerklärung"),
        QStringLiteral("2026-10-15T12:00:00.000+0200"),
        {
            {"Welche Daten wir erheben",
             "Wenn Sie ein Konto bei ##### anlegen, speichern wir Ihren Namen, Ihre E-Mail-Adresse und die "
             "Einstellungen, die Sie wählen. Inhalte, die Sie in der App erstellen, bleiben auf Ihrem Gerät, bis Sie "
             "sie selbst synchronisieren."},
            {"Wofür wir sie verwenden",
             "Wir verwenden Ihre Daten nur, um den Dienst bereitzustellen, Ihr Konto zu schützen und Sie über "
             "Änderungen dieser Erklärung zu informieren. Wir verkaufen keine personenbezogenen Daten."},
            {"Wie lange wir sie speichern",
             "Wir löschen Ihre Daten spätestens 30 Tage, nachdem Sie Ihr Konto geschlossen haben, sofern uns kein "
             "Gesetz eine längere Aufbewahrung vorschreibt."},
            {"Ihre Rechte",
             "Sie können jederzeit Auskunft über Ihre Daten verlangen, sie berichtigen oder löschen lassen und der "
             "Verarbeitung widersprechen. Schreiben Sie dazu an datenschutz@example.com."},
        });
}

QJsonObject SampleDocuments::termsOfServiceArabic()
{
    return document(QStringLiteral("5f2b9c1e7d3a4b0012a1c004"), QStringLiteral("شروط الخدمة"),
                    QStringLiteral("2026-10-15T12:00:00.000+0200"),
                    {
                        {"قبول الشروط",
                         "باستخدامك تطبيق ##### فإنك توافق على هذه الشروط. إذا كنت لا توافق عليها، فيرجى عدم "
                         "استخدام التطبيق."},
                        {"حسابك",
                         "أنت مسؤول عن الحفاظ على سرية بيانات الدخول إلى حسابك وعن كل نشاط يتم من خلاله. أبلغنا "
                         "فورًا إذا اشتبهت في أي استخدام غير مصرح به."},
                        {"المحتوى الخاص بك",
                         "يبقى المحتوى الذي تنشئه ملكًا لك، وتمنحنا ترخيصًا محدودًا لاستخدامه بالقدر اللازم لتقديم "
                         "الخدمة فقط."},
                        {"إنهاء الخدمة",
                         "يجوز لك التوقف عن استخدام التطبيق في أي وقت. ويجوز لنا تعليق حسابك إذا خالفت هذه الشروط، "
                         "وسنخطرك بذلك مسبقًا متى أمكن."},
                    });
}

QJsonObject SampleDocuments::privacyPolicy()
{
    return document(
        QStringLiteral("5f2b9c1e7d3a4b0012a1c002"), QStringLiteral("Privacy Policy"),
        QStringLiteral("2026-10-15T12:00:00.000+0200"),
        {
            {nullptr,
             "This policy explains what personal data ##### collects, why, and what choices you have. Acme Inc. "
             "is the controller of that data."},
            {"What we collect",
             "Your name, e-mail address and password when you sign up; the notes and files you store; "
             "and basic information about your device and how you use #####."},
            {"How we use it",
             "To run #####, keep your account secure, sync your notes between devices, answer your "
             "questions and, if you agree, tell you about new features."},
            {"Legal bases",
             "We rely on our contract with you to provide #####, on our legitimate interest to keep it safe "
             "and improve it, and on your consent for marketing, which you can withdraw at any time."},
            {"Your notes are yours",
             "We do not read your notes except when you ask us to help with a problem, when the law "
             "requires it, or to stop abuse. We never sell them or use them for advertising."},
            {"Sharing with others",
             "We share data only with companies that help us run ##### (hosting, e-mail, payment) "
             "under contracts that bind them to our instructions, or when the law requires it."},
            {"International transfers",
             "Our servers are in the European Union. Where a provider processes data elsewhere, "
             "we use the safeguards the law provides, such as standard contractual clauses."},
            {"How long we keep it",
             "As long as your account exists, and up to 30 days after you delete it, after which "
             "it is erased from our backups as well."},
            {"Security",
             "Data is encrypted in transit and at rest. Access within Acme Inc. is limited to the people who "
             "need it for their work."},
            {"Your rights",
             "You can see, correct, export or delete your data in the app, and object to or limit how we "
             "use it. You can also complain to your data protection authority."},
            {"Children", "##### is not meant for children under 16, and we do not knowingly collect their data."},
            {"Cookies",
             "Our website uses cookies that are needed for it to work and, with your consent, analytics "
             "cookies. The ##### app itself uses no cookies."},
            {"Analytics",
             "We count how often features of ##### are used, without the content of your notes, to decide "
             "what to improve. You can turn this off in the app's settings."},
            {"Changes to this policy", "We will tell you about important changes before they take effect."},
            {"Contact", "Our data protection officer can be reached at privacy@acme.example."},
            {"Version", "This is version 4 of the policy. Earlier versions are available on request."},
        });
}

QJsonObject SampleDocuments::load(const QString &path, QString *error)
{
    auto fail = [&](const QString &what) {
        *error = path + QStringLiteral(": ") + what;
        return QJsonObject();
    };
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return fail(file.errorString());

    QJsonParseError parse;
    const QJsonDocument json = QJsonDocument::fromJson(file.readAll(), &parse);
    if (parse.error != QJsonParseError::NoError)
        return fail(QStringLiteral("not valid JSON at byte %1: %2").arg(parse.offset).arg(parse.errorString()));
    if (!json.isObject())
        return fail(QStringLiteral("the document must be a JSON object"));

    const QJsonObject object = json.object();
    for (const char *key : {"_id", "title", "updatedAt"}) {
        const QJsonValue value = object.value(QLatin1String(key));
        if (!value.isUndefined() && !value.isString())
            return fail(QStringLiteral("\"%1\" must be text").arg(QLatin1String(key)));
    }
    if (object.contains(QStringLiteral("updatedAt")) && !TVRDocument(object).date().isValid())
        return fail(QStringLiteral("\"updatedAt\" must read like 2016-03-01T12:30:00.000+0000"));
    const QJsonValue sections = object.value(QStringLiteral("sections"));
    if (!sections.isArray())
        return fail(QStringLiteral("\"sections\" must be an array of sections"));
    const QJsonArray list = sections.toArray();
    for (qsizetype i = 0; i < list.size(); ++i) {
        if (!list[i].isObject())
            return fail(QStringLiteral("section %1 must be a JSON object").arg(i + 1));
        for (const char *key : {"title", "body"}) {
            const QJsonValue value = list[i].toObject().value(QLatin1String(key));
            if (!value.isUndefined() && !value.isString())
                return fail(QStringLiteral("section %1: \"%2\" must be text").arg(i + 1).arg(QLatin1String(key)));
        }
    }
    return object;
}
