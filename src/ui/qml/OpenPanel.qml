pragma ComponentBehavior: Bound

import QtQuick
import Norva.Core

// The open notch: a row of page tabs and the current page. A page that is not built yet says
// what will be there.
Item {
    id: panel
    required property var notch
    readonly property var currentPageInfo: App.pageInfo(notch.currentPage)
    // What the panel draws around a page: the tabs above it and the margins.
    readonly property real pageChrome: tabs.anchors.topMargin + tabs.height + body.anchors.topMargin
                                       + body.anchors.bottomMargin
    // A page says how tall its content wants to be (its implicit height); the panel grows to show
    // it all, as far as the display has room, and the page scrolls beyond that.
    readonly property real pageWants: pageLoader.item ? (pageLoader.item as Item).implicitHeight : 0
    Binding {
        target: panel.notch
        property: "pageNeed"
        value: panel.notch.pageNeedFor(panel.pageWants, panel.pageChrome)
    }

    Row {
        id: tabs
        anchors { top: parent.top; topMargin: 38; horizontalCenter: parent.horizontalCenter }
        spacing: 4
        Repeater {
            model: App.pages
            delegate: PageTab {
                required property var modelData
                title: modelData.title
                selected: modelData.id === panel.notch.currentPage
                onClicked: panel.notch.openPage(modelData.id)
            }
        }
    }

    Item {
        id: body
        anchors { top: tabs.bottom; topMargin: Theme.spacing; left: parent.left; right: parent.right
                  bottom: parent.bottom; leftMargin: Theme.padding + 6; rightMargin: Theme.padding + 6
                  bottomMargin: Theme.padding }
        clip: true

        Loader {
            id: pageLoader
            anchors.fill: parent
            readonly property bool built: App.hasQml(panel.currentPageInfo.qml)
            source: built ? panel.currentPageInfo.qml : ""
            active: built && panel.visible
        }
        EmptyPage {
            anchors.fill: parent
            visible: !pageLoader.built || pageLoader.status === Loader.Error
            title: panel.currentPageInfo.title
            text: panel.currentPageInfo.emptyText
        }
        JotSheet {
            anchors.fill: parent
        }
        // The first opening's introduction (and the tour), or once after an update what is new.
        FirstRunCard {
            anchors.fill: parent
        }
        WhatsNewCard {
            anchors.fill: parent
            visible: FirstRunGuide.whatsNewShowing && !FirstRunGuide.showing
        }
    }
}
