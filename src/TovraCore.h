// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT

#ifndef TOVRACORE_H
#define TOVRACORE_H

// Everything of the kit that needs no widget: what a QML host, or any host without Qt
// Widgets, includes. Tovra.h adds the widget screens.

#include "RQKeychain.h"
#include "TovraVersion.h"
#include "TVRAgreementManager.h"
#include "TVRAgreementManagerDelegate.h"
#include "TVRDesignClass.h"
#include "TVRDocument.h"
#include "TVRDocumentManager.h"
#include "TVRDocumentManagerDelegate.h"
#include "TVRError.h"
#include "TVRHTTPResponse.h"
#include "TVRManager.h"
#include "TVRNetworkManager.h"
#include "TVRSection.h"
#include "TVRSecureItemStore.h"
#include "TVRUserManager.h"
#include "TVRUserManagerDelegate.h"

#endif
