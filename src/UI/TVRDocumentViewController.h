// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT

#ifndef TVRDOCUMENTVIEWCONTROLLER_H
#define TVRDOCUMENTVIEWCONTROLLER_H

#include "tovra_export.h"
#include "TVRDocument.h"
#include "TVRDocumentManagerDelegate.h"
#include "TVRTableViewDataSource.h"
#include "TVRTableViewDelegate.h"
#include "TVRViewController.h"

#include <memory>

class TVRDocumentManager;
class TVRHeaderView;
class TVRTableView;

class TVRDocumentViewControllerPrivate;

/*!
    \brief A screen showing one legal document: its date in a header over a table with, per
    section, a title row (when the title is not empty) and a body row.

    The table reads the document from the shared TVRDocumentManager at every callback, so
    it shows the document held there, else the copy cached in an earlier run. A completion
    of the manager, when the screen is its delegate, sets the date and reloads the table
    from the event loop; a failed fetch changes nothing. Until then the header shows the
    date of the document the screen found when its view loaded.

    This is what the document screens share: TVRReadOnlyDocumentViewController (the Terms
    of Service and Privacy Policy screens) and TVRTermsViewController (the agreement).
*/
class TOVRA_EXPORT TVRDocumentViewController : public TVRViewController,
                                               public TVRTableViewDataSource,
                                               public TVRTableViewDelegate,
                                               public TVRDocumentManagerDelegate
{
    Q_OBJECT

public:
    ~TVRDocumentViewController() override;

    //! Made on first read: at (0, 0), the primary screen's width, 44 high.
    TVRHeaderView *headerView();
    //! Replaces the header: the new one takes its place, belongs to the screen from now on and
    //! shows above the rows; the one it replaces is deleted.
    void setHeaderView(TVRHeaderView *headerView);

    //! Made on first read: a grouped white table filling the view, under the header.
    TVRTableView *tableView();
    //! Replaces the table: the new one takes its place, belongs to the screen from now on and
    //! shows the document under the header; the one it replaces is deleted.
    void setTableView(TVRTableView *tableView);

    int numberOfSectionsInTableView(TVRTableView *tableView) override;
    int tableViewNumberOfRowsInSection(TVRTableView *tableView, int section) override;
    qreal tableViewHeightForRowAtIndexPath(TVRTableView *tableView, TVRIndexPath indexPath) override;
    qreal tableViewEstimatedHeightForRowAtIndexPath(TVRTableView *tableView, TVRIndexPath indexPath) override;
    TVRTableViewCell *tableViewCellForRowAtIndexPath(TVRTableView *tableView, TVRIndexPath indexPath) override;

    void managerDidFinishWithSuccess(TVRDocumentManager *manager, bool success) override;
    void managerFailedWithError(TVRDocumentManager *manager, const TVRError &error) override;

protected:
    //! \a titleOnLoad, unless null, becomes the title when the view loads.
    explicit TVRDocumentViewController(const QString &titleOnLoad, QWidget *parent = nullptr);

    //! The screen's document as \a manager holds it, or null.
    virtual std::shared_ptr<TVRDocument> documentOf(TVRDocumentManager *manager) const = 0;
    //! The sections of the shared manager's document, as they are now.
    TVRSectionList sections() const;
    static QString dateText(const std::shared_ptr<TVRDocument> &document);

    //! A white root view with the table in it, laid out by setupConstraints().
    void loadView() override;
    void viewDidLoad() override;
    //! The table fills the root view.
    virtual void setupConstraints();
    //! A screen that is shown takes keyboard focus on its table, unless focus is in it already.
    void showEvent(QShowEvent *event) override;

private:
    void showDocumentIn(TVRTableView *table);

    std::unique_ptr<TVRDocumentViewControllerPrivate> const d;
};

#endif
