#ifndef TVRDOCUMENTVIEWCONTROLLER_H
#define TVRDOCUMENTVIEWCONTROLLER_H

#include "tovra_export.h"
#include "TVRDocument.h"
#include "TVRDocumentManagerDelegate.h"
#include "TVRTableViewDataSource.h"
#include "TVRTableViewDelegate.h"
#include "TVRViewController.h"

#include <QPointer>

class QAction;
class TVRDocumentManager;
class TVRHeaderView;
class TVRTableView;

/*!
    \brief A read-only screen for one legal document: its date in a header over a table
    with, per section, a title row (when the title is not empty) and a body row.

    When its view loads, the screen becomes the delegate of the shared TVRDocumentManager
    and starts a fetch. The table reads the document from the shared manager at every
    callback, so it shows the document held, else the copy cached in an earlier run, at
    once; each completion sets the date and reloads the table, from the event loop. A
    failed fetch changes nothing. Shown modally, or with no navigation controller, the
    screen puts a "Close" button on the left of its navigation item.

    TVRTermsOfServiceViewController and TVRPrivacyPolicyViewController are the two
    screens; this class is what they share.
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
    void setHeaderView(TVRHeaderView *headerView);

    //! Made on first read: a grouped white table filling the view, under the header.
    TVRTableView *tableView();
    void setTableView(TVRTableView *tableView);

    //! Made on first read: "Close", in the bold "done" style; it dismisses the screen.
    QAction *closeBarButtonItem();
    void setCloseBarButtonItem(QAction *item);

    //! Whether the screen is presented, directly or in a presented container.
    bool isModal() const;
    void onCloseBarButtonItemPressed();

    int numberOfSectionsInTableView(TVRTableView *tableView) override;
    int tableViewNumberOfRowsInSection(TVRTableView *tableView, int section) override;
    qreal tableViewHeightForRowAtIndexPath(TVRTableView *tableView, TVRIndexPath indexPath) override;
    TVRTableViewCell *tableViewCellForRowAtIndexPath(TVRTableView *tableView, TVRIndexPath indexPath) override;

    void managerDidFinishWithSuccess(TVRDocumentManager *manager, bool success) override;
    void managerFailedWithError(TVRDocumentManager *manager, const TVRError &error) override;

protected:
    //! \a titleOnLoad, unless null, becomes the title when the view loads.
    explicit TVRDocumentViewController(const QString &titleOnLoad, QWidget *parent = nullptr);

    //! The screen's document as \a manager holds it, or null.
    virtual std::shared_ptr<TVRDocument> documentOf(TVRDocumentManager *manager) const = 0;
    virtual void fetchDocument(TVRDocumentManager *manager) = 0;

    void loadView() override;
    void viewDidLoad() override;
    void setupConstraints();

private:
    TVRSectionList sections() const;

    const QString m_titleOnLoad;
    QPointer<TVRHeaderView> m_headerView;
    QPointer<TVRTableView> m_tableView;
    QPointer<QAction> m_closeBarButtonItem;
};

#endif
