// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT
// The QML pages in a QGuiApplication, against the loopback HTTPS service. The QML test cases
// are in this folder, with the documents they have served; this file starts the service and
// hands the pages' engine the module.

#include "AccessibleTree.h"
#include "TestFixture.h"
#include "TestHttpsServer.h"
#include "TestSession.h"

#include <Tovra.h>

#include <QAccessible>
#include <QDir>
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

// What the QML tests may ask of the service and the application; it also starts the service.
class Service : public QObject
{
    Q_OBJECT

public:
    //! The next replies hold \a document, in which "%2" stands for the name of the one asked
    //! for: Terms or Privacy.
    Q_INVOKABLE void setReply(const QJsonObject &document) { m_reply = QJsonDocument(document).toJson(); }
    //! The Terms of Service held are \a document, as a copy kept from an earlier launch, or an
    //! empty document, as in a first launch before any reply.
    Q_INVOKABLE void holdTerms(const QJsonObject &document)
    {
        TVRDocumentManager::sharedInstance()->setTermsOfService(std::make_shared<TVRDocument>(document));
    }
    //! The user's status arrives: not agreed to \a document. When \a elsewhere, a window that
    //! is not a Qt Quick one has the focus meanwhile; false when it could not take it.
    Q_INVOKABLE bool answerNotCompliant(const QJsonObject &document, bool elsewhere = false)
    {
        QWindow plain;
        if (elsewhere) {
            plain.show();
            plain.requestActivate();
            if (!QTest::qWaitForWindowActive(&plain) || QGuiApplication::focusWindow() != &plain)
                return false;
        }
        TVRManager::sharedInstance()->userManagerDidRespondWithCompliance(TVRUserManager::sharedInstance(), false,
                                                                          std::make_shared<TVRDocument>(document));
        return true;
    }
    //! How the host sets the application up: titles in \a titleColor, bodies at \a bodyPixelSize
    //! px (an empty colour and a size of 0 are the defaults), and the layout direction right to
    //! left when \a rightToLeft, as a host in a right-to-left language sets it.
    Q_INVOKABLE void setHost(const QString &titleColor, int bodyPixelSize, bool rightToLeft)
    {
        QGuiApplication::setLayoutDirection(rightToLeft ? Qt::RightToLeft : Qt::LeftToRight);
        TVRDesignClass::setSectionTitleColor(QColor::fromString(titleColor));
        QFont body = TVRDesignClass::sectionBodyFont();
        if (bodyPixelSize > 0)
            body.setPixelSize(bodyPixelSize);
        TVRDesignClass::setSectionBodyFont(bodyPixelSize > 0 ? std::optional(body) : std::nullopt);
    }
    //! What a screen reader finds under \a item: a line "Role \"name\"" per node, indented by
    //! its depth, with ", focused" after the name of the focused one.
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
        QAccessibleActionInterface *actions = button ? button->actionInterface() : nullptr;
        if (actions)
            actions->doAction(QAccessibleActionInterface::pressAction());
        return actions != nullptr;
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
        m_server->setHandler([this](const TestRequest &request) {
            const QString name = request.path == u"/api/terms-of-service"_s ? u"Terms"_s : u"Privacy"_s;
            return TestReply::json(200, QString::fromUtf8(m_reply).replace(u"%2"_s, name).toUtf8());
        });
    }

    void qmlEngineAvailable(QQmlEngine *engine)
    {
        engine->addImportPath(QStringLiteral(TOVRA_QML_IMPORT_PATH));
        engine->rootContext()->setContextProperty(u"service"_s, this);
        // The folder the pages' screenshots go to, for people to look at; empty without one.
        const QString shots = qEnvironmentVariable("TOVRA_SCREENSHOT_DIR");
        engine->rootContext()->setContextProperty(u"screenshotDir"_s,
                                                  shots.isEmpty() || !QDir().mkpath(shots) ? QString() : shots);
    }

    void cleanupTestCase()
    {
        TVRDocumentManager::sharedInstance()->setSession(nullptr);
        m_session.reset();
        m_server.reset();
    }

private:
    static void walk(QAccessibleInterface *node, int depth, QStringList &lines)
    {
        if (!node || node->state().invisible)
            return;
        lines << u"%1%2 \"%3\"%4"_s.arg(
            QString(depth * 2, u' '),
            QLatin1StringView(QMetaEnum::fromType<QAccessible::Role>().valueToKey(node->role())),
            node->text(QAccessible::Name), node->state().focused ? u", focused"_s : QString());
        for (int i = 0; i < node->childCount(); ++i)
            walk(node->child(i), depth + 1, lines);
    }
    std::unique_ptr<TestHttpsServer> m_server;
    std::unique_ptr<TestSession> m_session;
    QByteArray m_reply;
};

QUICK_TEST_MAIN_WITH_SETUP(tst_quick, Service)

#include "tst_quick.moc"
