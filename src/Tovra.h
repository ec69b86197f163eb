// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT

#ifndef TOVRA_H
#define TOVRA_H

//! \file
//! \brief Everything a host application needs from the kit, in one include.

#include "RQKeychain.h"
#include "TovraVersion.h"
#include "TVRAgreementManager.h"
#include "TVRAgreementManagerDelegate.h"
#include "TVRDesignClass.h"
#include "TVRDocument.h"
#include "TVRDocumentManager.h"
#include "TVRDocumentManagerDelegate.h"
#include "TVRError.h"
#include "TVRHeaderView.h"
#include "TVRHTTPResponse.h"
#include "TVRManager.h"
#include "TVRNavigationController.h"
#include "TVRNavigationItem.h"
#include "TVRNetworkManager.h"
#include "TVRPrivacyPolicyViewController.h"
#include "TVRSection.h"
#include "TVRSectionBodyTableViewCell.h"
#include "TVRSectionTitleTableViewCell.h"
#include "TVRSecureItemStore.h"
#include "TVRTabBarController.h"
#include "TVRTableView.h"
#include "TVRTableViewCell.h"
#include "TVRTableViewDataSource.h"
#include "TVRTableViewDelegate.h"
#include "TVRTermsOfServiceViewController.h"
#include "TVRTermsViewController.h"
#include "TVRUserManager.h"
#include "TVRUserManagerDelegate.h"
#include "TVRViewController.h"

#endif
