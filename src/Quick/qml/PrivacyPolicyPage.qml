// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT

import QtQuick
import Tovra

// The Privacy Policy, as the widget screen shows it.
DocumentPage {
    //: The title of the screen that shows the application's privacy policy.
    title: qsTranslate("TVRPrivacyPolicyViewController", "Privacy Policy")
    kind: DocumentModel.PrivacyPolicy
}
