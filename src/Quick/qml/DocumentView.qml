// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT

import QtQuick
import Tovra

// A document as the widget screens show it: the date over the sections, each section a bold
// title (when it has one) and its body, on a white page. Delegates are reused as they scroll.
ListView {
    id: view

    // The DocumentModel shown.
    required property var document
    // Set once the last section has been shown.
    property bool reachedEnd: count === 0

    readonly property int sectionSpacing: 18

    // Whether the focus ring shows: once the keyboard is used on the document, or when focus
    // comes back to it (by Tab: a tap on a body gives the focus to the body), not when a
    // page gives it the focus as it opens.
    property bool showsFocus: false
    property bool focusedBefore: false

    model: document
    clip: true
    reuseItems: true
    boundsBehavior: Flickable.StopAtBounds
    activeFocusOnTab: true
    keyNavigationEnabled: true
    Accessible.role: Accessible.List

    onActiveFocusChanged: {
        showsFocus = activeFocus && focusedBefore;
        focusedBefore = focusedBefore || activeFocus;
    }

    // Drawn over the list, not in its content: it stays put as the document scrolls.
    Rectangle {
        parent: view
        anchors.fill: parent
        z: 1
        visible: view.activeFocus && view.showsFocus
        color: "transparent"
        border.width: 2
        border.color: "#0055CC"
    }

    Keys.onPressed: event => {
        view.showsFocus = true;
        if (event.key === Qt.Key_End) {
            view.positionViewAtEnd();
            event.accepted = true;
        } else if (event.key === Qt.Key_Home) {
            view.positionViewAtBeginning();
            event.accepted = true;
        } else if (event.key === Qt.Key_PageUp || (event.key === Qt.Key_Space && (event.modifiers & Qt.ShiftModifier))) {
            view.contentY = Math.max(view.originY, view.contentY - view.height);
            event.accepted = true;
        } else if (event.key === Qt.Key_PageDown || event.key === Qt.Key_Space) {
            view.contentY = Math.min(view.contentY + view.height, Math.max(view.originY, view.contentHeight + view.originY - view.height));
            event.accepted = true;
        }
    }

    header: Item {
        width: view.width
        height: 44
        Text {
            anchors.fill: parent
            text: view.document ? view.document.dateText : ""
            font: Appearance.dateFont
            color: Appearance.dateColor
            horizontalAlignment: Text.AlignHCenter
            verticalAlignment: Text.AlignVCenter
            elide: Text.ElideRight
            Accessible.role: Accessible.StaticText
            Accessible.name: text
        }
    }

    delegate: Column {
        id: row

        required property int index
        required property string title
        required property string body

        width: ListView.view.width
        topPadding: view.sectionSpacing
        // A screen reader names a row by its title, or by its body when it has none; the
        // body of a titled row is read as the row's text.
        Accessible.role: Accessible.ListItem
        Accessible.name: title !== "" ? title : body

        Component.onCompleted: if (index === view.count - 1) view.reachedEnd = true
        ListView.onReused: if (index === view.count - 1) view.reachedEnd = true

        // A row is as tall as its text, 40 px at least, as the widget screens' rows are.
        Item {
            visible: row.title !== ""
            width: row.width
            height: visible ? Math.max(40, Math.ceil(titleText.implicitHeight)) : 0
            Text {
                id: titleText
                x: 12
                width: row.width - 40
                text: row.title
                textFormat: Text.PlainText
                wrapMode: Text.WrapAtWordBoundaryOrAnywhere
                font: Appearance.titleFont
                color: Appearance.titleColor
                Accessible.ignored: true
            }
        }
        // The body is drawn as a Text, which is far cheaper to make than a TextEdit; a tap makes
        // it editable, as the widget screens' bodies are, by putting a TextEdit laid out the
        // same way in its place with the cursor where the tap was. Edits last while the row
        // is on screen.
        Item {
            width: row.width
            height: Math.max(40, Math.ceil(editor.item ? editor.item.implicitHeight : bodyText.implicitHeight))
            Text {
                id: bodyText
                x: 12
                width: row.width - 24
                visible: !editor.item
                text: row.body
                textFormat: Text.PlainText
                wrapMode: Text.WrapAtWordBoundaryOrAnywhere
                font: Appearance.bodyFont
                color: Appearance.bodyColor
                Accessible.role: Accessible.StaticText
                Accessible.name: text
                Accessible.ignored: row.title === ""
                TapHandler {
                    onTapped: eventPoint => row.edit(eventPoint.position)
                }
            }
            Loader {
                id: editor
                x: 12
                width: row.width - 24
                active: false
                sourceComponent: TextEdit {
                    text: row.body
                    textFormat: TextEdit.PlainText
                    wrapMode: TextEdit.WrapAtWordBoundaryOrAnywhere
                    font: Appearance.bodyFont
                    color: Appearance.bodyColor
                    selectByMouse: true
                    activeFocusOnPress: true
                    Accessible.role: Accessible.EditableText
                    Accessible.name: row.title
                    // Tab moves on, as from the widget screens' bodies.
                    Keys.onTabPressed: event => { event.accepted = false; }
                }
            }
        }

        // Puts the body's editor in place, its cursor at \a point of the drawn text.
        function edit(point) {
            editor.active = true;
            const textEdit = editor.item;
            textEdit.cursorPosition = textEdit.positionAt(point.x, point.y);
            textEdit.forceActiveFocus(Qt.MouseFocusReason);
        }

        ListView.onPooled: editor.active = false
    }
}
