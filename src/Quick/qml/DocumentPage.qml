// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT

import QtQuick
import QtQuick.Controls
import Tovra

// What the Terms of Service and Privacy Policy pages share: a light bar with the title and,
// when the page was opened modally, "Close"; the document under it. The model shows the kept
// copy at once and fetches the document when the page is made.
Page {
    id: page

    // Set when the page is opened modally: the bar then offers "Close".
    property bool modal: false
    // Whether the page asks the service for its document when it is made; the kept or held
    // copy shows either way.
    property bool fetchOnLoad: true
    property alias document: documentModel
    property alias kind: documentModel.kind
    readonly property alias view: documentView

    // "Close" was pressed; a page in a StackView is also popped.
    signal closed()

    function close() {
        page.closed();
        if (page.StackView.view)
            page.StackView.view.pop();
    }

    background: Rectangle { color: "white" }
    Keys.onEscapePressed: if (page.modal) page.close()

    // A plain bar: the title, and "Close" only when the page was opened modally.
    header: Rectangle {
        implicitHeight: 44
        color: "#F7F7F7"
        Loader {
            id: closeButton
            active: page.modal
            anchors.verticalCenter: parent.verticalCenter
            x: page.mirrored ? parent.width - width - 8 : 8
            sourceComponent: ToolButton {
                objectName: "closeButton"
                //: Closes a terms of service or privacy policy screen that was opened over the application.
                text: qsTranslate("TVRReadOnlyDocumentViewController", "Close")
                font.bold: true
                palette.buttonText: "#0055CC"
                onClicked: page.close()
            }
        }
        Text {
            anchors.centerIn: parent
            width: Math.min(implicitWidth, parent.width - 2 * (closeButton.item ? closeButton.width + 16 : 8))
            text: page.title
            font.bold: true
            color: "black"
            elide: Text.ElideRight
            horizontalAlignment: Text.AlignHCenter
        }
    }

    DocumentView {
        id: documentView
        anchors.fill: parent
        document: documentModel
        focus: true
    }

    DocumentModel {
        id: documentModel
        Component.onCompleted: if (page.fetchOnLoad) fetch()
    }
}
