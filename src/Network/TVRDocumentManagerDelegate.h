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
        A reply has arrived and is now the document held (and its kept copy, unless it was
        empty or not JSON); \a success is always true. The call does not say which
        document: read both from \a manager, or listen to TVRDocumentManager::documentChanged().
    */
    virtual void managerDidFinishWithSuccess(TVRDocumentManager *manager, bool success);

    /*!
        A fetch failed: in transport, or with a reply larger than
        TVRManager::maximumReplySize(). Nothing held or kept has changed.
    */
    virtual void managerFailedWithError(TVRDocumentManager *manager, const TVRError &error);
};

#endif
