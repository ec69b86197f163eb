// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT

#ifndef HOMESCREEN_H
#define HOMESCREEN_H

#include <TVRViewController.h>

#include <QJsonObject>

class QAction;

/*
    The demo application's own first screen. Its three actions are what a host does with
    the kit: push the Terms of Service, present the Privacy Policy, run the agreement check.
*/
class HomeScreen : public TVRViewController
{
    Q_OBJECT

public:
    // \a currentTerms stands in for the document the status service would send.
    explicit HomeScreen(const QJsonObject &currentTerms, QWidget *parent = nullptr);

    QAction *termsAction() const { return m_terms; }
    QAction *privacyAction() const { return m_privacy; }
    QAction *agreementAction() const { return m_agreement; }

    void showTermsOfService();
    void showPrivacyPolicy();
    void runAgreementCheck();

protected:
    void loadView() override;

private:
    QJsonObject m_currentTerms;
    QAction *m_terms;
    QAction *m_privacy;
    QAction *m_agreement;
};

#endif
