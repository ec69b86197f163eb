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
    // What Tab goes through after the document and the bar's Close, such as a footer's buttons.
    property list<Item> footerFocusItems

    // "Close" was pressed; a page in a StackView is also popped.
    signal closed()

    function close() {
        page.closed();
        if (page.StackView.view)
            page.StackView.view.pop();
    }

    background: Rectangle { color: "white" }

    // Mirrored as an item of the host's above the page passes its mirroring down
    // (LayoutMirroring.childrenInherit), else when the application's layout direction is
    // right-to-left, as the widget screens are: Close, the agreement's buttons and the position
    // bar change sides, while texts align by their own direction. A host's own
    // LayoutMirroring.enabled on the page replaces this. Reading an item's LayoutMirroring
    // makes one for it when it had none, which changes nothing.
    LayoutMirroring.enabled: {
        for (let item = page.parent; item; item = item.parent) {
            // A window's LayoutMirroring is its content item's, kept on the window: read there
            // rather than make a second one for the item, which would take its notifications.
            const window = item.parent ? null : item.Window.window;
            const mirroring = window && window.contentItem === item ? window.LayoutMirroring : item.LayoutMirroring;
            if (mirroring.childrenInherit)
                return mirroring.enabled;
        }
        return Qt.application.layoutDirection === Qt.RightToLeft;
    }
    LayoutMirroring.childrenInherit: true

    // Tab goes from the document to Close, then through the footer, and back to the document,
    // as on the widget screens; Shift+Tab the other way. Unavailable items are passed over.
    // Each item of the order hands Tab and Shift+Tab to this: Qt Quick moves the focus from
    // the first item that takes Tab, before the page would see the key.
    function moveFocus(step) {
        const order = [documentView, closeButton.item].concat(Array.from(page.footerFocusItems))
            .filter(item => item && item.visible && item.enabled);
        const now = order.findIndex(item => item.activeFocus);
        if (order.length === 0 || now < 0)
            return false;
        const next = order[(now + step + order.length) % order.length];
        const reason = step > 0 ? Qt.TabFocusReason : Qt.BacktabFocusReason;
        if (next === documentView)
            documentView.takeFocus(reason);
        else
            next.forceActiveFocus(reason);
        return true;
    }
    Accessible.name: page.title
    Keys.onEscapePressed: if (page.modal) page.close()

    // A plain bar: the title, and "Close" only when the page was opened modally.
    header: Rectangle {
        implicitHeight: 44
        color: "#F7F7F7"
        Loader {
            id: closeButton
            active: page.modal
            anchors.verticalCenter: parent.verticalCenter
            x: page.mirrored ? parent.width - width - 10 : 10
            sourceComponent: ToolButton {
                objectName: "closeButton"
                //: Closes a terms of service or privacy policy screen that was opened over the application.
                text: qsTranslate("TVRReadOnlyDocumentViewController", "Close")
                font.bold: true
                palette.buttonText: "#0055CC"
                Accessible.name: text
                // A screen reader's press, which Qt Quick Controls 6.4 does not turn into a click.
                Accessible.onPressAction: page.close()
                Keys.onTabPressed: event => event.accepted = page.moveFocus(1)
                Keys.onBacktabPressed: event => event.accepted = page.moveFocus(-1)
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
            Accessible.role: Accessible.StaticText
            Accessible.name: text
        }
    }

    DocumentView {
        id: documentView
        anchors.fill: parent
        document: documentModel
        focus: true
        Accessible.name: page.title
        Keys.onTabPressed: event => event.accepted = page.moveFocus(1)
        Keys.onBacktabPressed: event => event.accepted = page.moveFocus(-1)
        onFocusMoveRequested: step => page.moveFocus(step)
    }

    DocumentModel {
        id: documentModel
        Component.onCompleted: if (page.fetchOnLoad) fetch()
    }
}
