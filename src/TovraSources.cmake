# SPDX-FileCopyrightText: 2026 The Tovra authors
# SPDX-License-Identifier: MIT
# Which files make which library, relative to src/. Read by src/CMakeLists.txt and by
# cmake/check_layers.cmake, which fails when a file of the core includes a widget header.
# Headers a host includes are listed as public; everything ending in _p.h stays inside the kit.

# TovraCore (Tovra::Core): the service, the kept copies, the model, the keychain and the
# settings, appearance included. Qt Core, Gui and Network only: no widget anywhere, so that a
# QML host carries no Qt Widgets.
set(TOVRA_CORE_PUBLIC_HEADERS
    TovraCore.h
    Core/TovraVersion.h
    Core/TVRManager.h
    Core/RQKeychain.h
    Model/TVRDocument.h
    Model/TVRSection.h
    Network/TVRAgreementManager.h
    Network/TVRAgreementManagerDelegate.h
    Network/TVRDocumentManager.h
    Network/TVRDocumentManagerDelegate.h
    Network/TVRNetworkManager.h
    Network/TVRUserManager.h
    Network/TVRUserManagerDelegate.h
    Network/TVRError.h
    Network/TVRHTTPResponse.h
    Platform/TVRSecureItemStore.h
    UI/TVRDesignClass.h
)
set(TOVRA_CORE_SOURCES
    Core/TovraVersion.cpp
    Core/TVRManager.cpp
    Core/TVRManager_p.h
    Core/RQKeychain.cpp
    Model/TVRDateFormatter.cpp
    Model/TVRDateFormatter_p.h
    Model/TVRDocument.cpp
    Model/TVRDocument_p.h
    Model/TVRJSONIndex.cpp
    Model/TVRJSONIndex_p.h
    Model/TVRJSONText.cpp
    Model/TVRJSONText_p.h
    Model/TVRSection.cpp
    Model/TVRSection_p.h
    Network/TVRAgreementManager.cpp
    Network/TVRAgreementManagerDelegate.cpp
    Network/TVRDocumentManager.cpp
    Network/TVRDocumentManagerDelegate.cpp
    Network/TVRError.cpp
    Network/TVRHTTPResponse.cpp
    Network/TVRHTTPResponse_p.h
    Network/TVRNetworkManager.cpp
    Network/TVRNetworkManager_p.h
    Network/TVRUserManager.cpp
    Network/TVRUserManagerDelegate.cpp
    Settings/TVRJSONStore.cpp
    Settings/TVRJSONStore_p.h
    Settings/TVRSettings.cpp
    Settings/TVRSettings_p.h
    Platform/TVRArchiver.cpp
    Platform/TVRArchiver_p.h
    Platform/TVRKeychainLimits_p.h
    Platform/TVRLogging.cpp
    Platform/TVRLogging_p.h
    Platform/TVRSecureItemStore.cpp
    Platform/TVRWeakDelegate_p.h
    UI/TVRDesignClass.cpp
)
# The network library (Tovra::Network): the one part of the kit that uses Qt Network, loaded
# by the core with its first request where the kit is shared on Linux, part of the core
# elsewhere.
set(TOVRA_NETWORK_SOURCES
    Network/TVRTransport.cpp)
# The keychain store of each platform: the Secret Service over D-Bus on Linux, QtKeychain
# elsewhere.
set(TOVRA_CORE_LINUX_SOURCES
    Platform/TVRSecretServiceStore.cpp
    Platform/TVRSecretServiceStore_p.h)
set(TOVRA_CORE_OTHER_SOURCES
    Platform/TVRQtKeychainStore.cpp
    Platform/TVRQtKeychainStore_p.h)

# TovraWidgets (Tovra::Widgets): the screens in Qt Widgets over the core, the view controllers
# and table view they are made of, and TVRManager's screen factories and agreement screen.
set(TOVRA_WIDGETS_PUBLIC_HEADERS
    Tovra.h
    Platform/TVRIndexPath.h
    Platform/TVRNavigationController.h
    Platform/TVRNavigationItem.h
    Platform/TVRTabBarController.h
    Platform/TVRTableView.h
    Platform/TVRTableViewCell.h
    Platform/TVRTableViewDataSource.h
    Platform/TVRTableViewDelegate.h
    Platform/TVRViewController.h
    UI/TVRDocumentViewController.h
    UI/TVRHeaderView.h
    UI/TVRPrivacyPolicyViewController.h
    UI/TVRReadOnlyDocumentViewController.h
    UI/TVRSectionBodyTableViewCell.h
    UI/TVRSectionTableViewCell.h
    UI/TVRSectionTitleTableViewCell.h
    UI/TVRTermsOfServiceViewController.h
    UI/TVRTermsViewController.h
)
set(TOVRA_WIDGETS_SOURCES
    Core/TVRManagerScreens.cpp
    Platform/TVRAccessible.cpp
    Platform/TVRAccessible_p.h
    Platform/TVRFocusRing.cpp
    Platform/TVRFocusRing_p.h
    Platform/TVRNavigationBar.cpp
    Platform/TVRNavigationBar_p.h
    Platform/TVRNavigationController.cpp
    Platform/TVRNavigationItem.cpp
    Platform/TVRPalette.cpp
    Platform/TVRPalette_p.h
    Platform/TVRSubview.cpp
    Platform/TVRSubview_p.h
    Platform/TVRTabBarController.cpp
    Platform/TVRTableView.cpp
    Platform/TVRTableViewCell.cpp
    Platform/TVRTableViewDataSource.cpp
    Platform/TVRTableViewDelegate.cpp
    Platform/TVRTextLayout.cpp
    Platform/TVRTextLayout_p.h
    Platform/TVRViewController.cpp
    Platform/TVRWrappingLabel.cpp
    Platform/TVRWrappingLabel_p.h
    UI/TVRDocumentViewController.cpp
    UI/TVRHeaderView.cpp
    UI/TVRPrivacyPolicyViewController.cpp
    UI/TVRReadOnlyDocumentViewController.cpp
    UI/TVRSectionBodyTableViewCell.cpp
    UI/TVRSectionTableViewCell.cpp
    UI/TVRSectionTitleTableViewCell.cpp
    UI/TVRTermsOfServiceViewController.cpp
    UI/TVRTermsViewController.cpp
)
# Not in the library: compiled into every program that links it (see src/CMakeLists.txt).
set(TOVRA_WIDGETS_ENTRY Core/TovraWidgetsEntry.cpp)
