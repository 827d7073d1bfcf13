import QtQuick

Window {
    width: 200; height: 32; visible: true; color: "black"
}
