import QtQuick
import QtQuick.Window

Window {
    width: 320
    height: 200
    title: "Navro"
}
