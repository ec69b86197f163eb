// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT

import QtQuick
import Tovra

// The Terms of Service, as the widget screen shows them.
DocumentPage {
    //: The title of the screen that shows the application's terms of service.
    title: qsTranslate("TVRTermsOfServiceViewController", "Terms of Service")
    kind: DocumentModel.TermsOfService
}
