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
    // Set once the end of the document has been in view; cleared when sections are added or
    // changed, which the reader has not seen yet.
    property bool reachedEnd: false
    // Set while the keyboard is on the document: the focus ring shows.
    property bool showsFocus: false
    // The number of sections last seen, to tell sections added from sections gone.
    property int countSeen: 0

    // Tab or Shift+Tab (step 1 or -1) pressed in a body being edited: the page decides where
    // the focus goes.
    signal focusMoveRequested(int step)

    readonly property int sectionSpacing: 18
    // How far Up and Down scroll.
    readonly property int lineStep: 40

    model: document
    clip: true
    reuseItems: true
    boundsBehavior: Flickable.StopAtBounds
    activeFocusOnTab: true
    // Up and Down scroll by a step, as on the widget screens, rather than moving from row to
    // row.
    keyNavigationEnabled: false
    Accessible.role: Accessible.List

    // Takes the focus for the document itself, not for a body once edited in it.
    function takeFocus(reason) {
        (currentItem || view).forceActiveFocus(reason);
        showsFocus = true;
    }

    // The end is in view once the view is laid out, scrolled to its end, and the last row
    // made and in view: rows just added under the end may be made, while the list still
    // holds its end where it was. A document without sections has no end to reach.
    function checkEnd() {
        const last = count > 0 && height > 0 && contentHeight > 0 && atYEnd ? itemAtIndex(count - 1) : null;
        if (last !== null && last.y + last.height <= contentY + height + 1)
            reachedEnd = true;
    }
    // Checked once the view has taken the change in, after the model's signal.
    function sectionsChanged() {
        reachedEnd = false;
        Qt.callLater(view.checkEndLaidOut);
    }
    function checkEndLaidOut() {
        forceLayout();
        checkEnd();
    }
    onAtYEndChanged: checkEnd()
    onContentHeightChanged: checkEnd()
    onHeightChanged: checkEnd()
    // More sections than were there: the new ones have not been read.
    onCountChanged: {
        if (count > countSeen)
            sectionsChanged();
        else
            Qt.callLater(view.checkEndLaidOut);
        countSeen = count;
    }
    // From the model itself: the view applies its changes, and tells of a new count, only
    // when it is next laid out.
    Connections {
        target: view.document
        function onDataChanged() { view.sectionsChanged(); }
        function onModelReset() { view.sectionsChanged(); }
        function onRowsInserted() { view.sectionsChanged(); }
    }

    onActiveFocusChanged: if (!activeFocus) showsFocus = false

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

    // Where the reader is in the document: a thin bar at the side, shown while the document
    // moves. A plain rectangle, cheaper to make than a Qt Quick Controls indicator.
    Rectangle {
        parent: view
        z: 1
        width: 3
        radius: 1.5
        x: view.effectiveLayoutDirection === Qt.RightToLeft ? 2 : view.width - width - 2
        y: view.visibleArea.yPosition * view.height
        height: view.visibleArea.heightRatio * view.height
        color: "#8E8E93"
        visible: (view.moving || positionShown.running) && view.visibleArea.heightRatio < 1
    }

    // Keeps the position bar up for a moment after a scroll by the keyboard.
    Timer {
        id: positionShown
        interval: 800
    }

    // Scrolls to \a y, kept between the top of the header and the end.
    function scrollTo(y) {
        contentY = Math.max(originY, Math.min(y, contentHeight + originY - height));
    }

    // Scrolls to the end: the last section and the space under it in view. The list places
    // the rows it has not made by an estimate of their height, and keeps its end where that
    // estimate put it until the rows are made; positioned again once they are, it stays.
    function scrollToEnd() {
        for (let tries = 0; tries < 20; ++tries) {
            positionViewAtEnd();
            forceLayout();
            // The parts of a long body that came into view were laid out just now: placed,
            // they may move the end down.
            for (let index = Math.max(0, count - 2); index < count; ++index) {
                const item = itemAtIndex(index);
                if (item)
                    item.placeParts();
            }
            forceLayout();
            if (atYEnd)
                return;
        }
    }


    Keys.onPressed: event => {
        view.showsFocus = true;
        const shift = event.modifiers & Qt.ShiftModifier;
        if (event.key === Qt.Key_End) {
            view.scrollToEnd();
        } else if (event.key === Qt.Key_Home) {
            view.positionViewAtBeginning();
        } else if (event.key === Qt.Key_PageUp || (event.key === Qt.Key_Space && shift)) {
            view.scrollTo(view.contentY - view.height);
        } else if (event.key === Qt.Key_PageDown || event.key === Qt.Key_Space) {
            view.scrollTo(view.contentY + view.height);
        } else if (event.key === Qt.Key_Up) {
            view.scrollTo(view.contentY - view.lineStep);
        } else if (event.key === Qt.Key_Down) {
            view.scrollTo(view.contentY + view.lineStep);
        } else {
            return;
        }
        positionShown.restart();
        event.accepted = true;
    }

    // Space under the last section, as between sections.
    footer: Item {
        width: view.width
        height: view.sectionSpacing
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

    // A row's height follows from its texts through bindings, so the list knows it as soon as
    // the row is made or reused; a Column would only take it when polished, after the list has
    // placed the rows under it.
    delegate: Item {
        id: row

        required property int index
        required property string title
        required property string body

        // The space above the title, between sections.
        readonly property int topPadding: view.sectionSpacing

        width: ListView.view.width
        height: topPadding + titleBox.height + bodyBox.height
        // A screen reader names a row by its title, or by its body when it has none; the
        // body of a titled row is read as the row's text.
        Accessible.role: Accessible.ListItem
        Accessible.name: title !== "" ? title : body

        // A row is as tall as its text, 40 px at least, as the widget screens' rows are.
        Item {
            id: titleBox
            y: row.topPadding
            visible: row.title !== ""
            width: row.width
            height: row.title !== "" ? Math.max(40, Math.ceil(titleText.implicitHeight)) : 0
            // 12 px in from the side the title starts from, 28 from the side it ends, as on
            // the widget screens: a right-to-left title is set against the right.
            Text {
                id: titleText
                x: effectiveHorizontalAlignment === Text.AlignRight ? 28 : 12
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
        // is on screen and its section does not change.
        Item {
            id: bodyBox
            y: titleBox.y + titleBox.height
            width: row.width
            height: Math.max(40, Math.ceil(editor.item ? editor.item.implicitHeight
                                           : row.parts.length > 0 ? partsColumn.height : bodyText.implicitHeight))
            Text {
                id: bodyText
                x: 12
                width: row.width - 24
                visible: !editor.item && row.parts.length === 0
                text: row.parts.length > 0 ? "" : row.body
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
                sourceComponent: BodyEditor {
                    text: row.body
                }
            }
            // A long body is drawn as parts, each laid out only once it comes near the view:
            // a Text lays its whole text out when it is made, which for a body of a
            // megabyte holds the window for longer than a frame many times over. A part not
            // yet laid out stands in with the height its characters would take. A tap makes
            // the part it lands on editable, in its place, as a short body is made editable.
            Column {
                id: partsColumn
                x: 12
                width: row.width - 24
                visible: !editor.item && row.parts.length > 0
                Accessible.role: Accessible.StaticText
                Accessible.name: row.parts.length > 0 ? row.body : ""
                Accessible.ignored: row.title === ""
                // Where each part stands is known once the column has placed them: until
                // then they all stand at its top. (A delegate is reused for other bodies.)
                property var placedParts: null
                onPositioningComplete: placedParts = row.parts
                Repeater {
                    model: row.parts
                    delegate: Item {
                        id: part
                        required property var modelData
                        property bool editing: false
                        width: partsColumn.width
                        height: partText.item ? partText.item.implicitHeight : estimatedHeight
                        readonly property real estimatedHeight: Math.ceil(modelData.text.length / charactersPerLine)
                                                                * bodyMetrics.height
                        readonly property real charactersPerLine: Math.max(1, Math.floor(width
                                                                  / bodyMetrics.averageCharacterWidth))
                        // Near the view: within a screen of it, above or below.
                        readonly property bool near: {
                            if (partsColumn.placedParts !== row.parts)
                                return false;
                            const top = row.y + bodyBox.y + part.y - view.contentY;
                            return top < 2 * view.height && top + estimatedHeight > -view.height;
                        }
                        Loader {
                            id: partText
                            width: parent.width
                            // Once made, a part stays, so that its height holds.
                            active: part.near || item !== null
                            sourceComponent: part.editing ? partEditor : partDrawn
                        }
                        Component {
                            id: partDrawn
                            Text {
                                width: part.width
                                text: part.modelData.text
                                textFormat: Text.PlainText
                                wrapMode: Text.WrapAtWordBoundaryOrAnywhere
                                font: Appearance.bodyFont
                                color: Appearance.bodyColor
                                Accessible.ignored: true
                                TapHandler {
                                    onTapped: eventPoint => {
                                        part.editing = true;
                                        const textEdit = partText.item;
                                        textEdit.cursorPosition = textEdit.positionAt(eventPoint.position.x,
                                                                                      eventPoint.position.y);
                                        textEdit.forceActiveFocus(Qt.MouseFocusReason);
                                        view.showsFocus = false;
                                    }
                                }
                            }
                        }
                        Component {
                            id: partEditor
                            BodyEditor {
                                width: part.width
                                text: part.modelData.text
                            }
                        }
                    }
                }
            }
        }

        // The parts a long body is drawn in, each {start, text}: broken at a line break where
        // there is one near each stretch's end, else after a space, else anywhere.
        readonly property var parts: {
            const stretch = 8192;
            // Read once: each read of the role hands over a copy of the text.
            const body = row.body;
            if (body.length < 4 * stretch)
                return [];
            const list = [];
            for (let start = 0; start < body.length;) {
                let end = Math.min(body.length, start + stretch);
                if (end < body.length) {
                    // Searched in the stretch's second half only: a search from the end
                    // back through the whole body would go as far as its start.
                    const from = start + stretch / 2;
                    const tail = body.substring(from, end);
                    const lineBreak = tail.lastIndexOf("\n");
                    const space = tail.lastIndexOf(" ");
                    if (lineBreak >= 0)
                        end = from + lineBreak + 1;
                    else if (space >= 0)
                        end = from + space + 1;
                }
                // A line break that ends a part is the break between two Texts.
                const text = body.substring(start, end);
                list.push({ start: start, text: text.endsWith("\n") ? text.slice(0, -1) : text });
                start = end;
            }
            return list;
        }

        // A body made editable: laid out as it was drawn. Tab moves on, as from the widget
        // screens' bodies, and types nothing.
        component BodyEditor: TextEdit {
            textFormat: TextEdit.PlainText
            wrapMode: TextEdit.WrapAtWordBoundaryOrAnywhere
            font: Appearance.bodyFont
            color: Appearance.bodyColor
            selectByMouse: true
            activeFocusOnPress: true
            Accessible.role: Accessible.EditableText
            Accessible.name: row.title
            Keys.onTabPressed: event => {
                view.focusMoveRequested(1);
                event.accepted = true;
            }
            Keys.onBacktabPressed: event => {
                view.focusMoveRequested(-1);
                event.accepted = true;
            }
        }

        FontMetrics {
            id: bodyMetrics
            font: Appearance.bodyFont
        }

        // Places the parts of a long body as they stand now, without waiting for the frame.
        function placeParts() {
            if (row.parts.length > 0)
                partsColumn.forceLayout();
        }

        // Puts the body's editor in place, its cursor at \a point of the drawn text.
        function edit(point) {
            editor.active = true;
            const textEdit = editor.item;
            textEdit.cursorPosition = textEdit.positionAt(point.x, point.y);
            textEdit.forceActiveFocus(Qt.MouseFocusReason);
            view.showsFocus = false;
        }

        ListView.onPooled: editor.active = false
    }
}
