// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT

import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Tovra

// The agreement screen: the Terms of Service with "Disagree" and "Agree" under them. As on
// the widget screen, both answers are open from the start, and the end of the document in
// view opens them: a host that wants the whole document seen first closes them
// (agreeEnabled: false), and they are open while view.reachedEnd holds. The page only
// reports which one was pressed; what follows is the host's. It shows the Terms of Service the
// shared document manager holds, the ones the user is asked to agree to, without fetching
// others.
DocumentPage {
    id: page

    fetchOnLoad: false

    signal agreeClicked()
    signal disagreeClicked()

    // The host's wish; the end of the document in view opens the answers whatever it is.
    property bool agreeEnabled: true
    property bool disagreeEnabled: true

    //: The title of the screen on which the user accepts or refuses the terms of service.
    title: qsTranslate("TVRTermsViewController", "Terms of Service")
    kind: DocumentModel.TermsOfService
    footerFocusItems: [disagreeButton, agreeButton]

    footer: ToolBar {
        height: 52
        background: Rectangle { color: "#F7F7F7" }
        // The buttons' texts 12 px from the edges, as on the widget screen.
        RowLayout {
            anchors.fill: parent
            ToolButton {
                id: disagreeButton
                objectName: "disagreeButton"
                //: The button that refuses the terms of service shown above it.
                text: qsTranslate("TVRTermsViewController", "Disagree")
                enabled: page.disagreeEnabled || page.view.reachedEnd
                palette.buttonText: "#0055CC"
                palette.disabled.buttonText: "#6E6E73"
                Accessible.name: text
                // A screen reader's press, which Qt Quick Controls 6.4 does not turn into a click.
                Accessible.onPressAction: if (enabled) page.disagreeClicked()
                Keys.onTabPressed: event => event.accepted = page.moveFocus(1)
                Keys.onBacktabPressed: event => event.accepted = page.moveFocus(-1)
                onClicked: page.disagreeClicked()
            }
            Item { Layout.fillWidth: true }
            ToolButton {
                id: agreeButton
                objectName: "agreeButton"
                //: The button that accepts the terms of service shown above it.
                text: qsTranslate("TVRTermsViewController", "Agree")
                enabled: page.agreeEnabled || page.view.reachedEnd
                palette.buttonText: "#0055CC"
                palette.disabled.buttonText: "#6E6E73"
                Accessible.name: text
                Accessible.onPressAction: if (enabled) page.agreeClicked()
                Keys.onTabPressed: event => event.accepted = page.moveFocus(1)
                Keys.onBacktabPressed: event => event.accepted = page.moveFocus(-1)
                onClicked: page.agreeClicked()
            }
        }
    }
}
