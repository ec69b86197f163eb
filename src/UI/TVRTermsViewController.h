// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT

#ifndef TVRTERMSVIEWCONTROLLER_H
#define TVRTERMSVIEWCONTROLLER_H

#include "tovra_export.h"
#include "TVRDocumentViewController.h"
#include <memory>

class QAction;
class QToolBar;

class TVRTermsViewControllerPrivate;

/*!
    \brief The agreement screen: the Terms of Service over a toolbar with "Disagree" on the
    left and "Agree" on the right.

    Making the screen hands its document to the shared TVRDocumentManager as the Terms of
    Service at once, shown or not; the table then shows it as the Terms of Service screen
    would. The screen starts no fetch and does not make itself the manager's delegate.

    Both buttons do nothing yet: the agreement is not sent in this release, and the screen
    never dismisses itself. Showing a row of the last section enables both buttons, should
    the host have disabled them.
*/
class TOVRA_EXPORT TVRTermsViewController : public TVRDocumentViewController
{
    Q_OBJECT

public:
    /*!
        An agreement screen for \a document, which becomes the shared manager's Terms of
        Service at once (TVRDocumentManager::setTermsOfService()). Its title becomes "Terms of
        Service" when its view loads.
    */
    explicit TVRTermsViewController(std::shared_ptr<TVRDocument> document, QWidget *parent = nullptr);
    ~TVRTermsViewController() override;

    //! Made on first read: Disagree, a flexible space and Agree, 52 px high.
    QToolBar *toolbar();
    //! Replaces the toolbar: the new one takes its place, belongs to the screen from now on and
    //! shows under the table; the one it replaces is deleted.
    void setToolbar(QToolBar *toolbar);

    //! Made on first read: "Disagree", plain style.
    QAction *disagreeBarButtonItem();
    /*!
        Makes \a item the "Disagree" button, not owned; null brings back the kit's own at the
        next read. Only a toolbar made after this call shows it, so set it before the view
        loads. The kit does not connect \a item.
    */
    void setDisagreeBarButtonItem(QAction *item);
    //! Made on first read: "Agree", plain style.
    QAction *agreeBarButtonItem();
    /*!
        Makes \a item the "Agree" button, not owned; null brings back the kit's own at the
        next read. Only a toolbar made after this call shows it, so set it before the view
        loads. The kit does not connect \a item.
    */
    void setAgreeBarButtonItem(QAction *item);

    //! What "Agree" does: nothing in this release, on purpose.
    void onAgreeBarButtonItemPressed();
    //! What "Disagree" does: nothing in this release, on purpose.
    void onDisagreeBarButtonItemPressed();

    //! Enables both buttons when a row of the document's last section is about to show.
    void tableViewWillDisplayCell(TVRTableView *tableView, TVRTableViewCell *cell, TVRIndexPath indexPath) override;

protected:
    //! TVRDocumentManager::termsOfService() of \a manager: the document given to the
    //! constructor, unless another was set or fetched since.
    std::shared_ptr<TVRDocument> documentOf(TVRDocumentManager *manager) const override;
    //! The table from the top down to the toolbar, the toolbar on the bottom edge.
    void setupConstraints() override;

private:
    std::unique_ptr<TVRTermsViewControllerPrivate> const d;
};

#endif
