// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT

#ifndef TVRDOCUMENTMANAGERDELEGATE_H
#define TVRDOCUMENTMANAGERDELEGATE_H

#include "tovra_export.h"
#include "TVRError.h"

class TVRDocumentManager;

/*!
    \brief Told when a document fetch of TVRDocumentManager ends. Both methods are optional.

    The delegate object must also derive from QObject: the manager holds it weakly and
    stops calling it once it is destroyed. The calls come on the thread of the manager's
    session, from its event loop.
*/
class TOVRA_EXPORT TVRDocumentManagerDelegate
{
public:
    virtual ~TVRDocumentManagerDelegate();

    /*!
        A document has arrived and been kept; \a success is always true. The call does not
        say which document: read both from \a manager.
    */
    virtual void managerDidFinishWithSuccess(TVRDocumentManager *manager, bool success);

    //! A fetch failed in transport; nothing held or cached has changed.
    virtual void managerFailedWithError(TVRDocumentManager *manager, const TVRError &error);
};

#endif
