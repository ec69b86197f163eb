// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT

import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Tovra

// The demo's home screen in QML: the kit's pages pushed onto a stack.
ApplicationWindow {
    id: window

    // Asks the sample service for the user's status (the demo answers: not agreed).
    signal agreementCheckRequested()

    function showTermsOfService() { stack.push(termsPage); }
    function showPrivacyPolicy() { stack.push(privacyPage, { modal: true }); }
    function back() { stack.pop(null); }
    // The page on top once its document is shown.
    function currentPageReady() {
        return stack.depth > 1 && stack.currentItem.view.count > 0 && !stack.busy;
    }

    width: 390
    height: 844
    visible: true
    title: "Tovra demo (QML)"

    StackView {
        id: stack
        anchors.fill: parent
        initialItem: Page {
            background: Rectangle { color: "white" }
            ColumnLayout {
                anchors.fill: parent
                anchors.margins: 24
                spacing: 12
                Label {
                    Layout.fillWidth: true
                    wrapMode: Text.WordWrap
                    text: "This app uses the Tovra kit's QML module for its legal documents. The documents "
                          + "come from a sample service running inside the app."
                }
                Button { text: "Terms of Service"; onClicked: window.showTermsOfService() }
                Button { text: "Privacy Policy"; onClicked: window.showPrivacyPolicy() }
                Button { text: "Agreement check"; onClicked: window.agreementCheckRequested() }
                Item { Layout.fillHeight: true }
            }
        }
    }

    Component { id: termsPage; TermsOfServicePage {} }
    Component { id: privacyPage; PrivacyPolicyPage {} }
}
