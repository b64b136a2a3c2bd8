// Finding one of the program's open windows by its name.
#pragma once

#include <QString>

class QWidget;

namespace zorvik {

/// The shown top-level window whose objectName is `name`, or nullptr.
QWidget* findOpenForm(const QString& name);

/// True while a top-level window named `name` is shown.
inline bool formOpen(const QString& name) {
    return findOpenForm(name) != nullptr;
}

} // namespace zorvik
