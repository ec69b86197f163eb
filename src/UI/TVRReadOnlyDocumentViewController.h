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
    /*!
        Makes \a item the close button, not owned; null brings back the kit's own at the next
        read. Set it before the view loads, when the navigation item takes the button; the
        kit does not connect \a item, so its triggered() signal should call
        onCloseBarButtonItemPressed(). Escape triggers it while the screen is presented.
    */
    void setCloseBarButtonItem(QAction *item);

    /*!
        Whether the screen is presented, directly or in a presented container. A screen in
        no navigation controller and presented by nobody counts as modal too.
    */
    bool isModal() const;
    //! Dismisses the screen (see TVRViewController::dismissViewControllerAnimated()).
    void onCloseBarButtonItemPressed();

protected:
    //! \a titleOnLoad, unless null, becomes the title when the view loads.
    explicit TVRReadOnlyDocumentViewController(const QString &titleOnLoad, QWidget *parent = nullptr);

    //! Starts the fetch of the screen's document from \a manager.
    virtual void fetchDocument(TVRDocumentManager *manager) = 0;
    //! Puts "Close" in the navigation item when isModal(), makes the screen the shared
    //! manager's delegate and starts a fetch.
    void viewDidLoad() override;
    //! Escape does what Close does while the screen is presented.
    void showEvent(QShowEvent *event) override;

private:
    std::unique_ptr<TVRReadOnlyDocumentViewControllerPrivate> const d;
};

#endif
