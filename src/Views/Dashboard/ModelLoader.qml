import QtQuick
import Kestrova.Dashboard

// One of several documents that show the model, made when it is needed. A document, not a component:
// this version of Qt lets no loader make components that are bound to their place.
Loader {
    id: loader

    required property DashboardModel model
    required property string document

    Component.onCompleted: load()
    onDocumentChanged: {
        if (item)
            load();
    }

    function load(): void {
        setSource(document, { model: model });
    }
}
