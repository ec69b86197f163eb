// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT

#ifndef TVRREADONLYDOCUMENTVIEWCONTROLLER_H
#define TVRREADONLYDOCUMENTVIEWCONTROLLER_H

#include "tovra_export.h"
#include "TVRDocumentViewController.h"
#include <memory>

class QAction;

class TVRReadOnlyDocumentViewControllerPrivate;

/*!
    \brief A document screen that fetches its own document: the Terms of Service and the
    Privacy Policy screens.

    When its view loads, the screen becomes the shared manager's delegate and starts a
    fetch; the last screen to do so hears every later completion. Shown modally, or with
    no navigation controller at all, it puts "Close" on the left of its navigation item.
*/
class TOVRA_EXPORT TVRReadOnlyDocumentViewController : public TVRDocumentViewController
{
    Q_OBJECT

public:
    ~TVRReadOnlyDocumentViewController() override;

    //! Made on first read: "Close", in the bold "done" style; it dismisses the screen.
    QAction *closeBarButtonItem();
    void setCloseBarButtonItem(QAction *item);

    //! Whether the screen is presented, directly or in a presented container.
    bool isModal() const;
    void onCloseBarButtonItemPressed();

protected:
    explicit TVRReadOnlyDocumentViewController(const QString &titleOnLoad, QWidget *parent = nullptr);

    virtual void fetchDocument(TVRDocumentManager *manager) = 0;
    void viewDidLoad() override;
    //! Escape does what Close does while the screen is presented.
    void showEvent(QShowEvent *event) override;

private:
    std::unique_ptr<TVRReadOnlyDocumentViewControllerPrivate> const d;
};

#endif
