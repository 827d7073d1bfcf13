pragma ComponentBehavior: Bound

import QtQuick

// Adding or editing a meeting: title, day, start and end, a join link found in whatever is
// pasted, and the calendar it goes into (or Norva only). Saving failures keep every word typed.
Rectangle {
    id: form
    required property var model
    property var fields: null
    signal closed()

    readonly property bool editing: fields !== null && fields.key.length > 0
    property string chosenCalendar: fields ? fields.calendar : ""
    property string foundService: ""

    color: Theme.panel
    onFieldsChanged: {
        if (!fields)
            return
        title.text = fields.title
        day.text = fields.date
        start.text = fields.start
        end.text = fields.end
        link.text = fields.link
        chosenCalendar = fields.calendar
        foundService = model.serviceOf(fields.link)
        title.input.forceActiveFocus()
    }
    // Swallow clicks so the page beneath does not take them.
    TapHandler {}

    Column {
        anchors { fill: parent; topMargin: 4 }
        spacing: 8

        PlainText {
            text: form.editing ? "Edit meeting" : "New meeting"
            color: Theme.text
            font.family: Theme.fontFamily
            font.pixelSize: Theme.fontTitle
            font.weight: Font.DemiBold
        }
        FormField { id: title; width: parent.width; hint: "Title" }
        Row {
            spacing: 8
            FormField { id: day; width: 130; hint: "2026-11-18" }
            FormField { id: start; width: 80; hint: "09:30" }
            PlainText {
                anchors.verticalCenter: parent.verticalCenter
                text: "to"
                color: Theme.textDim
                font.family: Theme.fontFamily
                font.pixelSize: Theme.fontBody
            }
            FormField { id: end; width: 80; hint: "10:00" }
        }
        Row {
            width: parent.width
            spacing: 8
            FormField {
                id: link
                width: parent.width - found.width - 8
                hint: "Paste a Zoom, Meet or Teams link (optional)"
                // A pasted invitation is cut down to its join link.
                onEdited: {
                    const detected = form.model.detectLink(text)
                    if (detected.length > 0 && detected !== text)
                        text = detected
                    form.foundService = form.model.serviceOf(detected)
                }
            }
            PlainText {
                id: found
                anchors.verticalCenter: parent.verticalCenter
                text: form.foundService.length > 0 ? form.foundService + " link" : ""
                color: Theme.good
                font.family: Theme.fontFamily
                font.pixelSize: Theme.fontSmall
            }
        }
        Flow {
            width: parent.width
            spacing: 6
            visible: !form.editing
            Repeater {
                model: form.model.calendars
                delegate: TextButton {
                    required property var row
                    label: row.name
                    quiet: row.id !== form.chosenCalendar
                    onClicked: form.chosenCalendar = row.id
                }
            }
        }
        Row {
            spacing: 8
            TextButton {
                label: "Save"
                onClicked: {
                    const saved = form.model.save({ key: form.fields.key, title: title.text, date: day.text,
                                                    start: start.text, end: end.text, link: link.text,
                                                    calendar: form.chosenCalendar })
                    if (saved)
                        form.closed()
                }
            }
            TextButton { label: "Cancel"; quiet: true; onClicked: form.closed() }
            TextButton {
                visible: form.editing
                label: "Delete"
                quiet: true
                onClicked: {
                    if (form.model.remove(form.fields.key))
                        form.closed()
                }
            }
        }
    }
}
