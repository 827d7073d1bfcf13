import QtQuick

// Every text Norva draws. Much of it comes from outside Norva (commands, paths, titles, clip texts,
// song names, rule patterns), and a QML Text left to guess would read "<b>" or "<!-- ... -->" in it
// as markup and hide or restyle part of it. Drawn through this item, a text is never interpreted; the
// tests refuse a bare Text anywhere else.
Text {
    textFormat: Text.PlainText
}
