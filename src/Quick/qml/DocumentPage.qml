// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT

import QtQuick
import Tovra

// What the Terms of Service and Privacy Policy pages share: a light bar with the title and,
// when the page was opened modally, "Close"; the document under it. The model shows the kept
// copy at once and fetches the document when the page is made.
//
// Made of Qt Quick items alone: Qt Quick Controls would load its library and style when a
// page first opens, which takes longer than everything else a page does then.
FocusScope {
    id: page

    // The text in the bar, and the page's name for screen readers.
    property string title
    // An item laid out along the bottom of the page, under the document, such as a bar of
    // buttons; its height is its own.
    property Item footer: null

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
        // A StackView holds its pages as its children.
        const stack = page.parent;
        if (stack && typeof stack.pop === "function" && stack.depth !== undefined && stack.currentItem === page)
            stack.pop();
    }

    // Whether the page is laid out right to left.
    readonly property bool mirrored: LayoutMirroring.enabled

    Rectangle {
        anchors.fill: parent
        color: "white"
    }

    onFooterChanged: {
        if (!footer)
            return;
        footer.parent = page;
        footer.width = Qt.binding(() => page.width);
        footer.y = Qt.binding(() => page.height - footer.height);
    }

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
    // Read as a page named by its title, as a Qt Quick Controls Page is.
    Accessible.role: Accessible.PageTab
    Accessible.name: page.title
    Keys.onEscapePressed: if (page.modal) page.close()

    // A plain bar: the title, and "Close" only when the page was opened modally.
    Rectangle {
        id: bar
        width: page.width
        height: 44
        color: "#F7F7F7"
        Loader {
            id: closeButton
            active: page.modal
            anchors.verticalCenter: parent.verticalCenter
            x: page.mirrored ? parent.width - width - 10 : 10
            sourceComponent: Text {
                id: close
                objectName: "closeButton"
                //: Closes a terms of service or privacy policy screen that was opened over the application.
                text: qsTranslate("TVRReadOnlyDocumentViewController", "Close")
                font.bold: true
                color: tap.pressed ? "#4D88DB" : "#0055CC"
                padding: 6
                activeFocusOnTab: false
                Accessible.role: Accessible.Button
                Accessible.name: text
                Accessible.focusable: true
                Accessible.onPressAction: page.close()
                Keys.onTabPressed: event => event.accepted = page.moveFocus(1)
                Keys.onBacktabPressed: event => event.accepted = page.moveFocus(-1)
                Keys.onSpacePressed: page.close()
                Keys.onReturnPressed: page.close()
                Keys.onEnterPressed: page.close()
                TapHandler {
                    id: tap
                    onTapped: page.close()
                }
                // Keyboard focus shows as a ring, as on the document.
                Rectangle {
                    anchors.fill: parent
                    visible: close.activeFocus
                    color: "transparent"
                    border.width: 2
                    border.color: "#0055CC"
                    radius: 3
                }
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
        y: bar.height
        width: page.width
        height: page.height - bar.height - (page.footer ? page.footer.height : 0)
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
