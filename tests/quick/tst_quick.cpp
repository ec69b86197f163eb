// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT
// The QML pages in a QGuiApplication, against the loopback HTTPS service. The QML test cases
// are in this folder; this file starts the service and hands the pages' engine the module.

#include "AccessibleTree.h"
#include "TestFixture.h"
#include "TestHttpsServer.h"
#include "TestSession.h"

#include <Tovra.h>

#include <QAccessible>
#include <QDir>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QQmlContext>
#include <QQmlEngine>
#include <QQuickItem>
#include <QTest>
#include <QtQuickTest>
#include <QWindow>

#include <memory>

using namespace Qt::StringLiterals;

namespace {

// The texts of a script's documents: a heading and a sentence, each with a %1 for the
// section's number.
struct Script
{
    QString heading;
    QString sentence;
};

Script script(const QString &name)
{
    if (name == u"Arabic"_s)
        return {u"%1 كيف نستخدم بياناتك"_s, u"%1: يحتفظ ##### بما تكتبه على جهازك ولا يرسله إلى أي مكان آخر. "_s};
    if (name == u"Hebrew"_s)
        return {u"%1 כיצד אנו משתמשים בנתונים שלך"_s,
                u"%1: האפליקציה ##### שומרת את מה שאתה כותב במכשיר שלך ולא שולחת אותו. "_s};
    if (name == u"CJK"_s)
        return {u"%1 我们如何使用您的数据"_s, u"%1：#####将您写下的内容保存在您的设备上，不会发送到其他地方。"_s};
    if (name == u"long words"_s)
        return {u"%1 Supercalifragilisticexpialidociousnessandbeyond"_s,
                u"%1: see https://legal.example.com/"_s + QString(200, u'n') + u" for more. "_s};
    return {u"%2 heading %1"_s, u"Body %1: ##### keeps what you write on your device. "_s};
}

// A document of \a sections sections; their bodies hold the sentence \a repeats times, or,
// when \a unevenBodies, from once to twelve times, so that rows differ in height.
QJsonObject documentJson(const QString &title, int sections, const Script &text = script({}), bool unevenBodies = false,
                         int repeats = 2)
{
    QJsonArray list;
    for (int i = 0; i < sections; ++i) {
        QJsonObject section{{u"body"_s, text.sentence.arg(i + 1).repeated(unevenBodies ? 1 + (i * 7) % 12 : repeats)}};
        if (i % 3 != 2)
            section.insert(u"title"_s, QString(text.heading).replace(u"%2"_s, title).arg(i + 1));
        list.append(section);
    }
    return QJsonObject{{u"title"_s, title}, {u"updatedAt"_s, u"2017-07-04T09:00:00.000+0000"_s}, {u"sections"_s, list}};
}

} // namespace

// What the QML tests may ask of the service and the application; it also starts the service.
class Service : public QObject
{
    Q_OBJECT

public:
    //! The next replies hold \a sections sections, their bodies of different lengths when
    //! \a unevenBodies, else each their sentence \a repeats times.
    Q_INVOKABLE void setSections(int sections, bool unevenBodies = false, int repeats = 2)
    {
        m_sections = sections;
        m_unevenBodies = unevenBodies;
        m_repeats = repeats;
    }
    //! The Terms of Service held have \a sections sections, as a copy kept from an earlier
    //! launch, or are an empty document with none, as in a first launch before any reply.
    Q_INVOKABLE void holdTerms(int sections)
    {
        TVRDocumentManager::sharedInstance()->setTermsOfService(
            std::make_shared<TVRDocument>(sections > 0 ? documentJson(u"Kept"_s, sections) : QJsonObject()));
    }
    //! The next replies are written in \a name: Latin (the default), Arabic, Hebrew, CJK, or
    //! "long words".
    Q_INVOKABLE void setScript(const QString &name) { m_script = script(name); }
    //! Where a screenshot called \a name goes, or empty without TOVRA_SCREENSHOT_DIR.
    Q_INVOKABLE QString screenshotPath(const QString &name) const
    {
        const QString dir = qEnvironmentVariable("TOVRA_SCREENSHOT_DIR");
        if (dir.isEmpty() || !QDir().mkpath(dir))
            return {};
        return dir + u"/quick-"_s + name + u"-390x844.png"_s;
    }
    //! The user's status arrives: not agreed to a document of \a sections sections.
    Q_INVOKABLE void answerNotCompliant(int sections)
    {
        TVRManager::sharedInstance()->userManagerDidRespondWithCompliance(
            TVRUserManager::sharedInstance(), false,
            std::make_shared<TVRDocument>(documentJson(u"Agreement"_s, sections)));
    }
    //! The host's appearance settings: titles in \a titleColor, bodies at \a bodyPixelSize px;
    //! an empty colour and a size of 0 go back to the defaults.
    Q_INVOKABLE void setAppearance(const QString &titleColor, int bodyPixelSize)
    {
        TVRDesignClass::setSectionTitleColor(titleColor.isEmpty() ? QColor() : QColor(titleColor));
        std::optional<QFont> body;
        if (bodyPixelSize > 0) {
            body = TVRDesignClass::sectionBodyFont();
            body->setPixelSize(bodyPixelSize);
        }
        TVRDesignClass::setSectionBodyFont(body);
    }
    //! What a screen reader finds under \a item: a line "Role \"name\"" per node, indented by
    //! its depth; a node's states follow its name (", unavailable", ", focused").
    Q_INVOKABLE QStringList announced(QQuickItem *item) const
    {
        // What Qt does when a screen reader starts: items that exist then give themselves
        // accessible interfaces. (The offscreen platform has no screen reader to start.)
        QAccessible::setActive(true);
        QStringList lines;
        walk(QAccessible::queryAccessibleInterface(item), 0, lines);
        return lines;
    }
    //! Presses the accessible button called \a name under \a item, as a screen reader does.
    Q_INVOKABLE bool press(QQuickItem *item, const QString &name) const
    {
        QAccessible::setActive(true);
        QAccessibleInterface *button = find(QAccessible::queryAccessibleInterface(item), QAccessible::Button, name);
        if (!button || !button->actionInterface()
            || !button->actionInterface()->actionNames().contains(QAccessibleActionInterface::pressAction()))
            return false;
        button->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
        return true;
    }
    //! A window that is not a Qt Quick one takes the focus, or gives it back when \a focused is false.
    Q_INVOKABLE bool focusPlainWindow(bool focused)
    {
        if (!focused) {
            m_plainWindow.reset();
            return true;
        }
        m_plainWindow = std::make_unique<QWindow>();
        m_plainWindow->show();
        m_plainWindow->requestActivate();
        return QTest::qWaitForWindowActive(m_plainWindow.get())
            && QGuiApplication::focusWindow() == m_plainWindow.get();
    }
    //! The application's layout direction, as a host in a right-to-left language sets it.
    Q_INVOKABLE void setRightToLeft(bool rightToLeft)
    {
        QGuiApplication::setLayoutDirection(rightToLeft ? Qt::RightToLeft : Qt::LeftToRight);
    }

public Q_SLOTS:
    // The service lives within the application's lifetime: made once it exists, gone before
    // it ends, so that Qt's network and TLS state is released with it.
    void applicationAvailable()
    {
        m_server = std::make_unique<TestHttpsServer>();
        m_session = std::make_unique<TestSession>();
        if (!startLoopbackService(u"tst_quick"_s, *m_server, *m_session))
            qFatal("the loopback service did not start");
        QLocale::setDefault(QLocale(QLocale::English, QLocale::UnitedStates));
        TVRManager::setAppName(u"Acme"_s);
        TVRDocumentManager::sharedInstance()->setSession(m_session.get());
        m_server->setHandler([this](const TestRequest &request) { return reply(request); });
    }

    void qmlEngineAvailable(QQmlEngine *engine)
    {
        engine->addImportPath(QStringLiteral(TOVRA_QML_IMPORT_PATH));
        engine->rootContext()->setContextProperty(u"service"_s, this);
    }

    void cleanupTestCase()
    {
        TVRDocumentManager::sharedInstance()->setSession(nullptr);
        m_plainWindow.reset();
        m_session.reset();
        m_server.reset();
    }

private:
    TestReply reply(const TestRequest &request)
    {
        const bool terms = request.path == u"/api/terms-of-service"_s;
        return TestReply::json(200,
                               QJsonDocument(documentJson(terms ? u"Terms"_s : u"Privacy"_s, m_sections, m_script,
                                                          m_unevenBodies, m_repeats))
                                   .toJson(QJsonDocument::Compact));
    }

    static void walk(QAccessibleInterface *node, int depth, QStringList &lines)
    {
        if (!node || node->state().invisible)
            return;
        QString line = QString(depth * 2, u' ')
            + QString::fromLatin1(QMetaEnum::fromType<QAccessible::Role>().valueToKey(node->role())) + u" \""_s
            + node->text(QAccessible::Name) + u'"';
        if (node->state().disabled)
            line += u", unavailable"_s;
        if (node->state().focused)
            line += u", focused"_s;
        lines << line;
        for (int i = 0; i < node->childCount(); ++i)
            walk(node->child(i), depth + 1, lines);
    }
    std::unique_ptr<TestHttpsServer> m_server;
    std::unique_ptr<TestSession> m_session;
    std::unique_ptr<QWindow> m_plainWindow;
    int m_sections = 30;
    bool m_unevenBodies = false;
    int m_repeats = 2;
    Script m_script = script({});
};

QUICK_TEST_MAIN_WITH_SETUP(tst_quick, Service)

#include "tst_quick.moc"
