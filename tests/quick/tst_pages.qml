// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT

import QtQuick
import QtQuick.Controls
import QtTest
import Tovra

TestCase {
    id: testCase
    name: "Pages"
    width: 390
    height: 844
    visible: true
    when: windowShown

    Component { id: termsPage; TermsOfServicePage { width: 390; height: 844 } }
    Component { id: privacyPage; PrivacyPolicyPage { width: 390; height: 844 } }
    Component { id: agreementPage; AgreementPage { width: 390; height: 844 } }
    Component { id: spy; SignalSpy {} }
    Component { id: stackView; StackView { width: 390; height: 844; initialItem: Item {} } }
    // A host's item whose LayoutMirroring.enabled is passed down to what it holds.
    Component { id: mirroringHost; Item { width: 390; height: 844; LayoutMirroring.childrenInherit: true } }

    readonly property color white: Qt.rgba(1, 1, 1, 1)
    // A script's heading and sentence, each with a %1 for the section's number.
    readonly property var latin: ({ heading: "%2 heading %1",
                                     sentence: "Body %1: ##### keeps what you write on your device. " })

    // A document of \a sections sections in \a options.script, else Latin; every third has no
    // title. Their bodies hold the sentence \a options.repeats times (2 unless given) or, when
    // \a options.uneven, from once to twelve times, so that rows differ in height.
    function documentOf(title, sections, options) {
        const o = options || {};
        const script = o.script || latin;
        const list = [];
        for (let i = 0; i < sections; ++i) {
            const section = { body: script.sentence.arg(i + 1).repeat(o.uneven ? 1 + (i * 7) % 12 : o.repeats || 2) };
            if (i % 3 !== 2)
                section.title = script.heading.replace("%2", title).arg(i + 1);
            list.push(section);
        }
        return { title: title, updatedAt: "2017-07-04T09:00:00.000+0000", sections: list };
    }
    // The next replies: such a document, named after the one asked for (Terms or Privacy).
    function serve(sections, options) { service.setReply(documentOf("%2", sections, options)); }

    function init() { serve(30); }
    function cleanup() { service.setHost("", 0, false); }

    // A row's title and body texts, and the boxes that hold them; the editor a tap on a body
    // put in its place, or null.
    function titleOf(row) { return row.children[0].children[0]; }
    function bodyOf(row) { return row.children[1].children[0]; }
    function editorOf(row) { return row.children[1].children[1].item; }

    // A page shown in \a parent, or pushed on it when it is a StackView, as the README's example
    // opens one, once its document has arrived.
    function showPage(component, properties, parent) {
        const page = parent && parent.push ? parent.push(component, properties)
                                           : createTemporaryObject(component, parent || testCase, properties || {});
        tryVerify(() => !(parent && parent.busy) && page.view.count > 0 && !page.document.loading, 5000,
                  "the document arrived");
        // Laid out; grabImage() renders what it grabs.
        waitForItemPolished(page.view);
        return page;
    }

    // The darkest pixel of a grabbed image in a rectangle, the ink of any text there, or white.
    function darkest(image, x0, y0, w, h) {
        let best = white;
        for (let y = Math.round(y0); y < y0 + h; ++y) {
            for (let x = Math.round(x0); x < x0 + w; ++x)
                best = image.pixel(x, y).hslLightness < best.hslLightness ? image.pixel(x, y) : best;
        }
        return best;
    }

    // The pixel of a grabbed page \a x px across its list, a little below the top of where the
    // position bar stands.
    function besideBar(image, page, x) {
        const at = page.view.mapToItem(page, x, page.view.visibleArea.yPosition * page.view.height + 5);
        return image.pixel(Math.round(at.x), Math.round(at.y));
    }

    // The end of the document in view, as the next frame paints it: the list at its end, the
    // last section whole inside the list with its body's last line painted.
    function verifyEndInView(page) {
        const image = grabImage(page);
        const view = page.view;
        verify(view.atYEnd, "not at the end: " + view.contentY + " of " + (view.contentHeight + view.originY - view.height));
        const last = view.itemAtIndex(view.count - 1);
        const top = last.mapToItem(view, 0, 0).y;
        verify(top >= 0 && top + last.height <= view.height, "the last section at " + top + ".." + (top + last.height) + " in " + view.height);
        const body = bodyOf(last);
        const line = body.contentHeight / body.lineCount;
        const lastLine = body.mapToItem(page, 0, body.contentHeight - line);
        verify(darkest(image, lastLine.x, lastLine.y, 150, Math.floor(line)).hslLightness < 0.13,
               "no ink in the last line");
    }

    function test_aLongBodyIsLaidOutAsItComesIntoView() {
        // Two bodies of 100,000 characters: only the parts near the view are laid out, the
        // end is reached, a screen reader reads a body whole, and a tap edits where it lands.
        serve(2, { repeats: 2000 });
        const page = showPage(privacyPage);
        const view = page.view;
        const parts = view.itemAtIndex(0).children[1].children[2];
        const made = Array.from(parts.children).filter(part => part.children.length > 0 && part.children[0].item).length;
        const all = parts.children.length - 1; // and the repeater; none when not drawn in parts
        verify(all > 10 && made > 0 && made < all / 2, made + " of " + all + " parts laid out at the start");

        const tree = service.announced(page);
        compare(tree.slice(0, 1).concat(tree[4]), ['PageTab "Privacy Policy"', '    ListItem "Privacy heading 1"']);
        const firstBody = "Body 1: Acme keeps what you write on your device. ".repeat(2000);
        verify(tree.includes('      StaticText "' + firstBody + '"'), "the first body is not read whole");

        view.forceActiveFocus();
        keyClick(Qt.Key_End);
        tryVerify(() => view.atYEnd, 5000, "not at the end: " + view.contentY);
        waitForItemPolished(view);
        const lastParts = view.itemAtIndex(view.count - 1).children[1].children[2];
        const lastPart = lastParts.children[lastParts.children.length - 2];
        const drawn = lastPart.children[0].item;
        const bottom = drawn.mapToItem(view, 0, drawn.height).y;
        verify(bottom > view.height - 100 && bottom <= view.height, "the last line ends at " + bottom);
        const lastLine = drawn.mapToItem(page, 0, drawn.height - 20);
        verify(darkest(grabImage(page), lastLine.x, lastLine.y, 150, 18).hslLightness < 0.13,
               "no ink in the last line");

        // A tap at the start of the part's line before last puts the cursor there, near the
        // end of the body, and what is typed goes in there.
        const length = lastPart.modelData.text.length;
        mouseClick(drawn, 1, drawn.height - 30);
        const editor = lastPart.children[0].item;
        verify(editor.cursorPosition > length - 200, editor.cursorPosition + " of " + length);
        keyClick(Qt.Key_X);
        compare(editor.text.length, length + 1);
        compare(editor.text.charAt(editor.cursorPosition - 1), "x");
    }

    function test_keysScrollTheDocument_data() {
        // Where each ends: screens and 40 px steps below the top, or -1 for the end. Each key
        // is pressed with others, whose steps it must undo or add to exactly.
        return [
            { tag: "Page Down twice, Page Up", keys: [Qt.Key_PageDown, Qt.Key_PageDown, Qt.Key_PageUp], screens: 1, steps: 0 },
            { tag: "Space twice, Shift+Space", keys: [Qt.Key_Space, Qt.Key_Space, -Qt.Key_Space], screens: 1, steps: 0 },
            { tag: "Page Down, Down, Up, Up", keys: [Qt.Key_PageDown, Qt.Key_Down, Qt.Key_Up, Qt.Key_Up], screens: 1, steps: -1 },
            { tag: "Page Down, Home", keys: [Qt.Key_PageDown, Qt.Key_Home], screens: 0, steps: 0 },
            // Rows of many heights, known only once made.
            { tag: "End, uneven sections", keys: [Qt.Key_End], screens: -1, steps: 0, unevenSections: 90 },
            { tag: "Page Down, End, uneven sections", keys: [Qt.Key_PageDown, Qt.Key_End], screens: -1, steps: 0, unevenSections: 200 },
            // Held mid-drag on a body, the document follows.
            { tag: "a drag on a body", keys: [], drag: true },
        ];
    }

    function test_keysScrollTheDocument(data) {
        if (data.unevenSections)
            serve(data.unevenSections, { uneven: true });
        const page = showPage(termsPage);
        const view = page.view;
        const row = view.itemAtIndex(1);
        page.forceActiveFocus();
        const top = view.contentY;
        for (const key of data.keys)
            keyClick(Math.abs(key), key < 0 ? Qt.ShiftModifier : Qt.NoModifier);
        if (data.drag) {
            mousePress(bodyOf(row), 100, 10);
            for (let dy = 10; dy <= 150; dy += 20)
                mouseMove(bodyOf(row), 100, 10 - dy);
            verify(view.moving && view.contentY > top + 30, "content moved from " + top + " to " + view.contentY);
            // While it moves, a thin grey bar at the document's right edge shows where the
            // reader is, with the page white beside it. (The bar after a scroll by the keyboard
            // is in test_everyScriptFitsItsRowsAndThePageMirrorsAsTold.)
            const image = grabImage(page);
            verify(besideBar(image, page, view.width - 3.5).r < 0.7, "no position bar");
            compare(besideBar(image, page, view.width - 9.5), white);
            // A drag edits no body, and at rest the bar goes.
            mouseRelease(bodyOf(row), 100, -140);
            compare(editorOf(row), null);
            tryVerify(() => !view.moving && besideBar(grabImage(page), page, view.width - 3.5).r === 1, 10000,
                      "the position bar stays at rest");
        } else if (data.screens < 0) {
            verifyEndInView(page);
        } else if (data.screens === 0 && data.steps === 0) {
            compare(view.contentY, view.originY);
        } else {
            compare(view.contentY, top + data.screens * view.height + data.steps * 40);
        }
    }

    function test_aTappedBodyIsEditedAndTabGoesRoundThePage() {
        const stack = createTemporaryObject(stackView, testCase);
        const page = showPage(agreementPage, { fetchOnLoad: true, modal: true }, stack);
        const view = page.view;
        page.forceActiveFocus();
        // Opened, the document has the focus without a ring (the picture below must match what a
        // tap leaves, without one); used from the keyboard, it shows its ring: #0055CC.
        const ring = () => grabImage(page).pixel(Math.round(view.x), Math.round(view.y + view.height / 2));
        const blue = Qt.rgba(0, 0x55 / 255, 0xCC / 255, 1);
        const before = grabImage(page);
        keyClick(Qt.Key_End);
        compare(ring(), blue);
        keyClick(Qt.Key_Home);

        // A tap in the second line of a body, on a letter of its first word, edits the body
        // there.
        const row = view.itemAtIndex(0);
        const body = bodyOf(row);
        const line = body.contentHeight / body.lineCount;
        mouseClick(body, 6, line * 1.5);
        const editor = editorOf(row);
        verify(editor && editor.activeFocus && view.activeFocus, "no editor with the focus after a tap");
        compare(editor.text, body.text);
        const cursor = editor.cursorRectangle;
        verify(cursor.y >= line * 0.9 && cursor.y < line * 2 && cursor.x < 20,
               "cursor at " + cursor.x + ", " + cursor.y);
        // With the cursor hidden, and the position bar gone, the page is drawn exactly as it was
        // opened: the tap took the ring away, and the body is drawn as its text was. A screen
        // reader reads the body as editable text.
        editor.cursorVisible = false;
        tryVerify(() => grabImage(page).equals(before), 5000,
                  "the page after the tap is drawn otherwise than before it");
        compare(service.announced(row)[1], '  EditableText "Terms heading 1", focused');

        // Typing edits the body, and the row grows with what is typed.
        const rowHeight = row.height;
        for (let i = 0; i < 6; ++i)
            keyClick(Qt.Key_Return);
        keyClick("x");
        verify(editor.text.includes("\n\n\n\n\n\nx"), "typed text not in the body");
        tryVerify(() => row.height >= rowHeight + 5 * line, 5000, "row of " + row.height + " px after six new lines");
        verify(row.children[1].height >= editor.contentHeight);
        const text = editor.text;

        // Tab leaves the body as it was, goes round the page and back to the document, not to
        // the body; Shift+Tab goes the other way.
        const order = ["closeButton", "disagreeButton", "agreeButton"].map(name => findChild(page, name)).concat(view);
        for (const item of order) {
            keyClick(Qt.Key_Tab);
            verify(item.activeFocus, "Tab did not reach " + (item.objectName || "the document"));
        }
        verify(!editor.activeFocus, "Tab went back into the body");
        compare(ring(), blue);
        // Back on the document, keys scroll it and leave the body as it was.
        const top = view.contentY;
        keyClick(Qt.Key_Space);
        compare(view.contentY, top + view.height);
        compare(editor.text, text);
        for (const item of order.slice(0, 3).reverse()) {
            keyClick(Qt.Key_Backtab);
            verify(item.activeFocus, "Shift+Tab did not reach " + item.objectName);
        }
        // Away from the document, no ring.
        compare(ring(), white);

        // Escape closes a page opened modally, and takes it off its StackView.
        const closed = createTemporaryObject(spy, testCase, { target: page, signalName: "closed" });
        keyClick(Qt.Key_Escape);
        compare(closed.count, 1);
        tryCompare(stack, "depth", 1);
    }

    function test_everyScriptFitsItsRowsAndThePageMirrorsAsTold_data() {
        // rightToLeft: the script's own direction. The page is mirrored as the application
        // says (application: right to left), or an item of the host's above the page (host:
        // its LayoutMirroring.enabled), or the host's own LayoutMirroring.enabled on the page.
        return [
            { tag: "Latin" },
            { tag: "Arabic", rightToLeft: true, script: { heading: "%1 كيف نستخدم بياناتك",
                  sentence: "%1: يحتفظ ##### بما تكتبه على جهازك ولا يرسله إلى أي مكان آخر. " } },
            { tag: "Hebrew", rightToLeft: true, script: { heading: "%1 כיצד אנו משתמשים בנתונים שלך",
                  sentence: "%1: האפליקציה ##### שומרת את מה שאתה כותב במכשיר שלך ולא שולחת אותו. " } },
            { tag: "CJK", script: { heading: "%1 我们如何使用您的数据", sentence: "%1：#####将您写下的内容保存在您的设备上，不会发送到其他地方。" } },
            { tag: "long words", script: { heading: "%1 Supercalifragilisticexpialidociousnessandbeyond",
                  sentence: "%1: see https://legal.example.com/" + "n".repeat(200) + " for more. " } },
            // The host's appearance settings reach the pixels.
            { tag: "Latin, red titles, 24 px bodies", titleColor: "#C00000", bodyPixelSize: 24 },
            { tag: "right-to-left application", application: true, mirrored: true },
            { tag: "host mirrors", host: true, mirrored: true },
            { tag: "host keeps left-to-right in a right-to-left application", application: true, host: false },
            { tag: "page kept left-to-right in a right-to-left application", application: true, page: false },
        ];
    }

    function test_everyScriptFitsItsRowsAndThePageMirrorsAsTold(data) {
        serve(30, { script: data.script });
        service.setHost(data.titleColor || "", data.bodyPixelSize || 0, !!data.application);
        const host = data.host === undefined
            ? testCase : createTemporaryObject(mirroringHost, testCase, { "LayoutMirroring.enabled": data.host });
        const own = data.page === undefined ? {} : { "LayoutMirroring.enabled": data.page };
        const page = showPage(agreementPage, Object.assign({ modal: true, fetchOnLoad: true }, own), host);
        const view = page.view;
        // A titled section shows its bold title, then the body; an untitled one its body alone.
        const firstTitle = titleOf(view.itemAtIndex(0));
        compare(firstTitle.text, (data.script || latin).heading.replace("%2", "Terms").arg(1));
        verify(firstTitle.visible && firstTitle.font.bold);
        compare(view.itemAtIndex(2).children[0].height, 0);
        // A title is inset 12 px on the side it starts from, 28 on the other, whichever way the
        // page goes.
        compare(firstTitle.x, data.rightToLeft ? 28 : 12);
        let image = grabImage(page);
        if (data.titleColor) {
            // The darkest ink of the title is the host's red; a 24 px body runs to more lines
            // than a 16 px one of the same text.
            const origin = firstTitle.mapToItem(page, 0, 0);
            const reddest = darkest(image, origin.x, origin.y, 150, 30);
            verify(reddest.r > 0.6 && reddest.g < 0.2 && reddest.b < 0.2, "title ink " + reddest);
            verify(bodyOf(view.itemAtIndex(0)).lineCount >= 4, "the body font is not the host's");
        }
        for (let i = 0; i < 4; ++i) {
            const row = view.itemAtIndex(i);
            // A screen reader names a titled section by its title and reads its body as the
            // item's text; an untitled one is named by its body alone.
            const title = titleOf(row).text, body = bodyOf(row).text;
            compare(service.announced(row), title ? ['ListItem "' + title + '"', '  StaticText "' + body + '"']
                                                  : ['ListItem "' + body + '"']);
            for (const text of [titleOf(row), bodyOf(row)]) {
                if (!text.visible || text.text === "")
                    continue;
                // The whole text inside its row, a body's box no taller than its text or 40 px,
                // no line wider than the text's box.
                verify(text.parent.height >= text.contentHeight, "row " + i + " cuts its text off");
                if (text === bodyOf(row))
                    verify(text.parent.height - text.contentHeight < Math.max(40 - text.contentHeight, 0) + 1,
                           "row " + i + " leaves room under its body");
                verify(text.contentWidth <= text.width + 0.5, "row " + i + " runs " + text.contentWidth + " px wide");
                // Painted on the side its script reads from.
                const origin = text.mapToItem(page, 0, 0);
                const firstLine = text.contentHeight / text.lineCount;
                if (origin.y + firstLine > view.y + view.height)
                    continue;
                const startX = data.rightToLeft ? origin.x + text.width - 16 : origin.x;
                verify(darkest(image, startX, origin.y, 16, firstLine).hslLightness < 0.4,
                       "row " + i + " has no ink where its first line starts");
            }
        }

        page.forceActiveFocus();
        keyClick(Qt.Key_PageDown);
        image = grabImage(page);
        if (screenshotDir)
            image.save(screenshotDir + "/quick-agreement-" + data.tag.replace(/,? /g, "-").toLowerCase()
                       + "-390x844.png");
        // Close leads the bar on the side the page starts from; Disagree leads the tool bar.
        const left = name => findChild(page, name).mapToItem(page, 0, 0).x;
        const right = name => left(name) + findChild(page, name).width;
        verify(data.mirrored ? left("closeButton") > page.width / 2 : right("closeButton") < page.width / 2,
               "Close at " + left("closeButton"));
        verify(data.mirrored ? left("disagreeButton") > right("agreeButton")
                             : left("disagreeButton") < left("agreeButton"),
               "Disagree at " + left("disagreeButton") + ", Agree at " + left("agreeButton"));
        // For a moment after a scroll by the keyboard (grabbed at once: no event runs between
        // the key and the picture), the position bar shows on the side the page ends at, the
        // other side white.
        const start = 3.5, end = view.width - 3.5;
        verify(besideBar(image, page, data.mirrored ? start : end).r < 0.7, "no position bar where the page ends");
        compare(besideBar(image, page, data.mirrored ? end : start), white);

        // A screen reader finds the page by its title, then Close, which it can press, then
        // the title, the document, which has the focus, and its date.
        compare(service.announced(page).slice(0, 5),
                ['PageTab "Terms of Service", focused', '  Button "Close"', '  StaticText "Terms of Service"',
                 '  List "Terms of Service", focused', '    StaticText "Tuesday, July 4, 2017"']);
        const closed = createTemporaryObject(spy, testCase, { target: page, signalName: "closed" });
        verify(service.press(page, "Close"));
        compare(closed.count, 1);
        // So does a click on it.
        mouseClick(findChild(page, "closeButton"));
        compare(closed.count, 2);
    }

    function test_agreementButtons() {
        // Nothing shown until the reply: its sections then show from the top, and the answers
        // are open from the start, as on the widget screen.
        serve(45, { uneven: true });
        service.holdTerms({});
        const open = showPage(agreementPage, { fetchOnLoad: true });
        compare(open.view.contentY, open.view.originY);
        verify(findChild(open, "agreeButton").enabled && findChild(open, "disagreeButton").enabled);

        // Closed by the host, they open when the end of the document was shown: at once for
        // a short copy kept from an earlier launch, all in view. The host's own setting is
        // left as it set it.
        service.holdTerms(documentOf("Kept", 3));
        const page = showPage(agreementPage, { agreeEnabled: false, disagreeEnabled: false });
        const agree = findChild(page, "agreeButton");
        const disagree = findChild(page, "disagreeButton");
        tryCompare(page.view, "reachedEnd", true);
        verify(agree.enabled && disagree.enabled && !page.agreeEnabled);

        // A reply adds sections under the reader: closed, to a screen reader too, until End
        // shows the new end.
        page.document.fetch();
        tryCompare(page.view, "count", 45);
        const agreed = createTemporaryObject(spy, testCase, { target: page, signalName: "agreeClicked" });
        const disagreed = createTemporaryObject(spy, testCase, { target: page, signalName: "disagreeClicked" });
        verify(service.press(page, "Agree") && service.press(page, "Disagree"), "a screen reader finds no answers");
        compare(agreed.count + disagreed.count, 0);
        page.view.forceActiveFocus();
        keyClick(Qt.Key_End);
        verifyEndInView(page);
        mouseClick(agree);
        mouseClick(disagree);
        verify(service.press(page, "Agree"));
        compare(agreed.count, 2);
        compare(disagreed.count, 1);

        // A refresh that brings the same sections changes nothing.
        page.view.positionViewAtBeginning();
        page.document.fetch();
        tryCompare(page.document, "loading", false);
        verify(page.view.reachedEnd && agree.enabled);
    }

    function test_agreementCheckShowsThePageOverThisWindow_data() {
        return [{ tag: "this window has the focus" },
                { tag: "a window of another kind has the focus", elsewhere: true }];
    }

    function test_agreementCheckShowsThePageOverThisWindow(data) {
        const content = testCase.Window.window.contentItem;
        const pages = () => Array.from(content.children).filter(item => item.objectName === "TovraAgreementPage");
        compare(pages().length, 0);
        verify(service.answerNotCompliant(documentOf("Agreement", 3), !!data.elsewhere));
        compare(pages().length, 1);
        const page = pages()[0];
        compare(page.width, content.width);
        tryVerify(() => page.view.count === 3 && page.view.itemAtIndex(0) !== null);
        compare(titleOf(page.view.itemAtIndex(0)).text, "Agreement heading 1");
        // A second answer while the page is up shows no second page.
        service.answerNotCompliant(documentOf("Agreement", 4));
        compare(pages().length, 1);
        // The host takes it away once answered; the next row starts with no page up.
        page.visible = false;
        page.parent = null;
    }
}
