import QtQuick

// A part that is made when what it shows comes, and goes with it.
Loader {
    id: root

    property var shown: null
    required property string look
    required property var parameters  // what is shown -> the part's own properties

    function show() {
        if (shown) {
            setSource(look, parameters(shown));
        } else {
            source = "";
        }
    }

    onShownChanged: show()
}
