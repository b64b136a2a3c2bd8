// Finding one of the program's open windows by its name.
#pragma once

#include <QString>

class QWidget;

namespace zorvik {

/// The shown top-level window whose objectName is `name`, or nullptr.
QWidget* findOpenForm(const QString& name);

} // namespace zorvik
