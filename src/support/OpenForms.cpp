// Open windows by name.
#include "support/OpenForms.h"

#include <QApplication>
#include <QWidget>

namespace zorvik {

QWidget* findOpenForm(const QString& name) {
    for (QWidget* window : QApplication::topLevelWidgets()) {
        if (window->objectName() == name && window->isVisible())
            return window;
    }
    return nullptr;
}

} // namespace zorvik
