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

    //! One table section per section of the document; none without a document.
    int numberOfSectionsInTableView(TVRTableView *tableView) override;
    //! Two rows for a section whose title is not empty (title, body), else one (body).
    int tableViewNumberOfRowsInSection(TVRTableView *tableView, int section) override;
    //! The height the title or body cell measures for the row, at the width of \a tableView.
    qreal tableViewHeightForRowAtIndexPath(TVRTableView *tableView, TVRIndexPath indexPath) override;
    //! A cheap estimate from the length of the row's text, 40 at least; the row is measured
    //! before it is shown.
    qreal tableViewEstimatedHeightForRowAtIndexPath(TVRTableView *tableView, TVRIndexPath indexPath) override;
    //! A TVRSectionTitleTableViewCell or TVRSectionBodyTableViewCell for the row, dequeued
    //! from \a tableView or made anew, showing the row's section.
    TVRTableViewCell *tableViewCellForRowAtIndexPath(TVRTableView *tableView, TVRIndexPath indexPath) override;

    //! Shows what \a manager now holds: sets the header's date and reloads the table, from
    //! the event loop.
    void managerDidFinishWithSuccess(TVRDocumentManager *manager, bool success) override;
    //! Does nothing: the screen goes on showing the document it shows.
    void managerFailedWithError(TVRDocumentManager *manager, const TVRError &error) override;

protected:
    //! \a titleOnLoad, unless null, becomes the title when the view loads.
    explicit TVRDocumentViewController(const QString &titleOnLoad, QWidget *parent = nullptr);

    //! The screen's document as \a manager holds it, or null.
    virtual std::shared_ptr<TVRDocument> documentOf(TVRDocumentManager *manager) const = 0;
    //! The sections of the shared manager's document, as they are now.
    TVRSectionList sections() const;
    //! The date as the header shows it, TVRDocument::dateText(); empty for a null \a document.
    static QString dateText(const std::shared_ptr<TVRDocument> &document);

    //! A white root view with the table in it, laid out by setupConstraints().
    void loadView() override;
    //! Sets the title given to the constructor, names the table after it for screen readers
    //! and shows the date of the document the shared manager holds.
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
