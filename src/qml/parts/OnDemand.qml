import QtQuick

// A part that is made when what it shows comes, and goes with it.
Loader {
    id: root

    property QtObject shown: null
    required property string look  // its file, seen from this one
    required property var parameters  // what is shown -> the part's own properties

    signal gone

    function show() {
        if (shown) {
            const propertiesOf = parameters;
            setSource(look, propertiesOf(shown));
        } else if (source.toString() !== "") {
            source = "";
            gone();
        }
    }

    onShownChanged: show()
}
