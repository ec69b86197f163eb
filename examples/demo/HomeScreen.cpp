// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT

#include "HomeScreen.h"

#include <Tovra.h>

#include <QAction>
#include <QLabel>
#include <QToolButton>
#include <QVBoxLayout>

HomeScreen::HomeScreen(const QJsonObject &currentTerms, QWidget *parent)
    : TVRViewController(parent)
    , m_currentTerms(currentTerms)
    , m_terms(new QAction(tr("Terms of Service"), this))
    , m_privacy(new QAction(tr("Privacy Policy"), this))
    , m_agreement(new QAction(tr("Agreement check"), this))
{
    setTitle(TVRManager::appName());
    connect(m_terms, &QAction::triggered, this, &HomeScreen::showTermsOfService);
    connect(m_privacy, &QAction::triggered, this, &HomeScreen::showPrivacyPolicy);
    connect(m_agreement, &QAction::triggered, this, &HomeScreen::runAgreementCheck);
}

void HomeScreen::loadView()
{
    auto *root = new QWidget;
    auto *layout = new QVBoxLayout(root);
    layout->setContentsMargins(24, 24, 24, 24);
    layout->setSpacing(12);
    auto *intro = new QLabel(tr("This app uses the Tovra kit for its legal documents. The documents come "
                                "from a sample service running inside the app."));
    intro->setWordWrap(true);
    layout->addWidget(intro);
    for (QAction *action : {m_terms, m_privacy, m_agreement}) {
        auto *button = new QToolButton;
        button->setDefaultAction(action);
        button->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
        button->setMinimumHeight(44);
        layout->addWidget(button);
    }
    layout->addStretch();
    setView(root);
}

void HomeScreen::showTermsOfService()
{
    // Pushed: the screen gets a back button, no "Close".
    if (TVRNavigationController *navigation = navigationController())
        navigation->pushViewController(TVRManager::termsOfServiceViewController());
}

void HomeScreen::showPrivacyPolicy()
{
    // Presented: the screen offers "Close".
    presentViewController(new TVRNavigationController(TVRManager::privacyPolicyViewController()));
}

void HomeScreen::runAgreementCheck()
{
    TVRManager::activateApp();
    // The status request is not part of the kit yet, so the demo answers for the service:
    // the user has not agreed to the current terms.
    TVRManager::sharedInstance()->userManagerDidRespondWithCompliance(TVRUserManager::sharedInstance(), false,
                                                                      std::make_shared<TVRDocument>(m_currentTerms));
}
